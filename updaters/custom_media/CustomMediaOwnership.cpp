#include "updaters/custom_media/CustomMediaOwnership.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "ppd/PPDConstants.h"
#include "ppd/StringsFileFormat.h"
#include "text/ASCII.h"
#include "text/UnicodeWhiteSpace.h"
#include "updaters/custom_media/CustomMediaKeywords.h"

namespace TkPPDUpdating {

namespace {

using Names = std::set<std::string, std::less<>>;

/// The last part of an option keyword behind a prefix; nothing when it has not that prefix.
std::optional<std::string_view> partBehind(std::string_view prefix, std::string_view keyword) {
    return keyword.starts_with(prefix) ? std::optional(keyword.substr(prefix.size()))
                                       : std::nullopt;
}

/// A block of custom media types in a PPD, by the names that its category line has.
struct Block {
    Names choices;
    /// The qualifiers that properties of those choices name and a profile's line has.
    Names qualifiers;
    /// The languages of the PPD's translation lines.
    Names languages;
};

void readCategory(const PPDStatement& statement, Block& block) {
    for (const std::string_view name : piecesBetweenWhiteSpace(statement.value)) {
        if (!name.empty()) {
            block.choices.emplace(name);
        }
    }
}

void readLanguages(const PPDStatement& statement, Block& block) {
    for (const std::string_view language : piecesBetweenWhiteSpace(statement.value)) {
        block.languages.emplace(language);
    }
}

std::optional<std::string> qualifierInProperties(const PPDStatement& statement) {
    const auto properties = propertyListFromStringsFileFormat(statement.value);
    const auto qualifier =
        properties ? properties->find(kZrICCProfileId2) : StringsDictionary::const_iterator();
    return properties && qualifier != properties->end() ? std::optional(qualifier->second)
                                                        : std::nullopt;
}

/// Looks through the statements twice: first for the category, then for what it names.
Block blockInStatements(std::span<const PPDStatement> statements) {
    Block block{{}, {}, {"en"}};
    bool hasCategory = false;
    for (const PPDStatement& each : statements) {
        if (each.keyword == kZrMediaTypeCategory && each.optionKeyword == kCategory &&
            !hasCategory) {
            hasCategory = true;
            readCategory(each, block);
        } else if (each.keyword == kTkPPDCUPSLanguagesAttributeName) {
            readLanguages(each, block);
        }
    }
    Names named;
    Names profiles;
    for (const PPDStatement& each : statements) {
        if (each.keyword == kCUPSICCProfile) {
            profiles.emplace(partBehind(kEmptyQualifiers, each.optionKeyword).value_or(""));
        }
        const auto choice = each.keyword == kZrChoiceProperties
                                ? partBehind(kMediaTypePrefix, each.optionKeyword)
                                : std::nullopt;
        if (choice && block.choices.contains(*choice)) {
            named.insert(qualifierInProperties(each).value_or(std::string()));
        }
    }
    std::set_intersection(named.begin(), named.end(), profiles.begin(), profiles.end(),
                          std::inserter(block.qualifiers, block.qualifiers.end()));
    block.qualifiers.erase(std::string());
    return block;
}

/// The keyword without the language of a translation line.
struct PlainKeyword {
    std::string_view keyword;
    bool isTranslation = false;
};

PlainKeyword plainKeyword(std::string_view keyword, const Names& languages) {
    const std::size_t stop = keyword.find('.');
    const bool isTranslation =
        stop != std::string_view::npos && languages.contains(keyword.substr(0, stop));
    return {isTranslation ? keyword.substr(stop + 1) : keyword, isTranslation};
}

/// Whether the statement is of the block, whatever its text and value.
bool isNamedBy(const Block& block, std::string_view keyword, std::string_view optionKeyword) {
    const auto isIn = [](const Names& names, std::optional<std::string_view> name) {
        return name && names.contains(*name);
    };
    if (keyword == kMediaType) {
        return isIn(block.choices, optionKeyword);
    }
    if (keyword == kZrChoiceProperties) {
        return isIn(block.choices, partBehind(kMediaTypePrefix, optionKeyword));
    }
    if (keyword == kCUPSICCProfile) {
        return isIn(block.qualifiers, partBehind(kEmptyQualifiers, optionKeyword));
    }
    if (keyword == kZrICCProfileId2) {
        return isIn(block.qualifiers, optionKeyword);
    }
    return keyword == kZrMediaTypeCategory && optionKeyword == kCategory;
}

/// "custom" and a number from 1 on, without zeros before it.
bool isGivenName(std::string_view name) {
    const auto number = partBehind(kChoiceNamePrefix, name);
    return number && !number->empty() && number->front() != '0' &&
           std::all_of(number->begin(), number->end(), isASCIIDigit);
}

/// Whether the properties are nothing but what a run writes.
bool areOwnProperties(std::string_view value) {
    const auto properties = propertyListFromStringsFileFormat(value);
    return properties && zrlumen_keysAndValuesInPPDStringsFileFormat(*properties) == value &&
           std::all_of(properties->begin(), properties->end(), [](const auto& property) {
               return property.first == kMediaIDKey || property.first == kParentMediaIDKey ||
                      property.first == kZrICCProfileId2;
           });
}

/// Whether the value is one that a run writes, and stands where it writes it. Only the category
/// goes on over lines.
bool isOwnValue(std::string_view keyword, const PPDStatement& statement) {
    if (keyword != kZrMediaTypeCategory &&
        statement.value.find_first_of("\r\n") != std::string_view::npos) {
        return false;
    }
    if (keyword == kMediaType) {
        return statement.option == kMediaType && isGivenName(statement.optionKeyword) &&
               statement.value == PPDFormatted(kChoiceValueFormat, {statement.optionKeyword});
    }
    if (keyword == kZrICCProfileId2) {
        return statement.option == kZrICCProfileId2 && statement.value.empty();
    }
    if (keyword == kCUPSICCProfile) {
        return statement.value.starts_with('/');
    }
    if (keyword == kZrChoiceProperties) {
        return statement.text.empty() && areOwnProperties(statement.value);
    }
    return statement.text == kCategoryText;
}

}  // namespace

OrbPPDOwnedLines ownedCustomMediaLines(std::span<const PPDStatement> before,
                                       std::span<const PPDStatement> after) {
    OrbPPDOwnedLines owned;
    owned.defaultsOfOptions = {std::string(kMediaType), std::string(kZrICCProfileId2)};
    owned.mayTakeAway = [block = std::make_shared<const Block>(blockInStatements(before))](
                            const PPDStatement& statement) {
        const auto plain = plainKeyword(statement.keyword, block->languages);
        return isNamedBy(*block, plain.keyword, statement.optionKeyword);
    };
    owned.mayAdd = [block = std::make_shared<const Block>(blockInStatements(after))](
                       const PPDStatement& statement) {
        const auto plain = plainKeyword(statement.keyword, block->languages);
        return statement.isQuoted && isNamedBy(*block, plain.keyword, statement.optionKeyword) &&
               (plain.isTranslation ? statement.value.empty()
                                    : isOwnValue(plain.keyword, statement));
    };
    return owned;
}

}  // namespace TkPPDUpdating
