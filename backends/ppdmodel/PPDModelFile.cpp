#include "backends/ppdmodel/PPDModelFile.h"

#include <algorithm>
#include <array>
#include <deque>
#include <functional>
#include <unordered_map>
#include <utility>

#include "backends/ppdmodel/PPDModelIndex.h"
#include "backends/ppdmodel/PPDModelOption.h"
#include "backends/ppdmodel/PPDModelReader.h"
#include "ppd/PPDTextFile.h"
#include "ppd/SeededTextHash.h"
#include "ppd/UTF8.h"

namespace TkPPDUpdating {

namespace {

constexpr std::array<std::string_view, 2> kOpeningKeywords{"OpenUI", "JCLOpenUI"};
constexpr std::array<std::string_view, 3> kPageSizeKeywords{"PageSize", "ImageableArea",
                                                            "PaperDimension"};
constexpr std::string_view kDefaultPrefix = "Default";

/// Every attribute that opens an option, in file order.
std::vector<const PPDModelAttribute*> openingAttributes(const PPDModelIndex& index) {
    std::vector<const PPDModelAttribute*> opening;
    for (const std::string_view keyword : kOpeningKeywords) {
        for (const auto* attribute = index.first(keyword); attribute;
             attribute = attribute->nextWithKeyword()) {
            if (attribute->spec().size() > 1 && attribute->spec().starts_with('*')) {
                opening.push_back(attribute);
            }
        }
    }
    // All stand in one vector, so their addresses are in file order.
    std::sort(opening.begin(), opening.end(), std::less<>());
    return opening;
}

}  // namespace

struct PPDModelFile::Contents {
    Contents(PPDText parsedText, PPDModelReader& reader)
        : text(std::move(parsedText)),
          joinedValues(std::move(reader.joinedValues)),
          attributes(std::move(reader.attributes)),
          index(attributes) {
        std::string defaultKeyword(kDefaultPrefix);
        for (const PPDModelAttribute* attribute : openingAttributes(index)) {
            const std::string_view name = attribute->spec().substr(1);
            defaultKeyword.resize(kDefaultPrefix.size());
            defaultKeyword += name;
            const PPDModelAttribute* defaultLine = index.first(defaultKeyword);
            if (options
                    .try_emplace(name, name, defaultLine ? defaultLine->value() : std::nullopt,
                                 index)
                    .second) {
                optionNames.push_back(name);
            }
        }
    }

    PPDText text;
    std::deque<std::string> joinedValues;
    std::vector<PPDModelAttribute> attributes;
    PPDModelIndex index;
    std::unordered_map<std::string_view, PPDModelOption, SeededTextHash> options;
    std::vector<std::string_view> optionNames;
    OrbPPDPageSize pageSize;
};

PPDModelFile::PPDModelFile(std::unique_ptr<const Contents> contents)
    : contents_(std::move(contents)) {}

PPDModelFile::~PPDModelFile() = default;

std::shared_ptr<const PPDModelFile> PPDModelFile::fileWithValidText(PPDText text,
                                                                    std::string& reason) {
    PPDModelReader reader(*text);
    if (!reader.read(reason)) {
        return nullptr;
    }
    return std::shared_ptr<const PPDModelFile>(
        new PPDModelFile(std::make_unique<const Contents>(std::move(text), reader)));
}

std::shared_ptr<const PPDModelFile> PPDModelFile::fileWithText(PPDText text, std::string* reason) {
    std::string ignored;
    std::string& cause = reason ? *reason : ignored;
    if (!text) {
        cause = "there is no text";
        return nullptr;
    }
    if (const auto invalid = firstInvalidUTF8Byte(*text)) {
        cause = "is not valid UTF-8 at byte " + std::to_string(*invalid);
        return nullptr;
    }
    return fileWithValidText(std::move(text), cause);
}

std::shared_ptr<const PPDModelFile> PPDModelFile::fileWithContentsOfFile(const std::string& path,
                                                                         std::string* reason) {
    std::string ignored;
    std::string& cause = reason ? *reason : ignored;
    PPDText text = PPDTextWithContentsOfFile(path, &cause);
    return text ? fileWithValidText(std::move(text), cause) : nullptr;
}

const OrbPPDOption* PPDModelFile::optionForName(std::string_view optionName) const {
    const auto option = contents_->options.find(optionName);
    return option == contents_->options.end() ? nullptr : &option->second;
}

std::vector<const OrbPPDAttribute*> PPDModelFile::attributesForName(std::string_view name) const {
    std::vector<const OrbPPDAttribute*> attributes;
    for (const auto* attribute = contents_->index.first(name); attribute;
         attribute = attribute->nextWithKeyword()) {
        attributes.push_back(attribute);
    }
    return attributes;
}

std::vector<const OrbPPDAttribute*> PPDModelFile::attributesForName_spec(
    std::string_view name, std::string_view spec) const {
    std::vector<const OrbPPDAttribute*> attributes;
    for (const auto* attribute = contents_->index.first(name, spec); attribute;
         attribute = attribute->nextWithSpec()) {
        attributes.push_back(attribute);
    }
    return attributes;
}

const OrbPPDPageSize* PPDModelFile::pageSizeForName(std::string_view name) const {
    const bool exists = std::any_of(
        kPageSizeKeywords.begin(), kPageSizeKeywords.end(),
        [&](std::string_view keyword) { return contents_->index.first(keyword, name); });
    return exists ? &contents_->pageSize : nullptr;
}

const PPDText& PPDModelFile::text() const {
    return contents_->text;
}

std::span<const PPDModelAttribute> PPDModelFile::attributes() const {
    return contents_->attributes;
}

std::vector<std::string_view> PPDModelFile::optionNames() const {
    return contents_->optionNames;
}

std::vector<std::string_view> PPDModelFile::mainKeywords() const {
    std::vector<std::string_view> keywords = contents_->index.keywords();
    std::sort(keywords.begin(), keywords.end());
    return keywords;
}

}  // namespace TkPPDUpdating
