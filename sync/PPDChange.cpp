#include "sync/PPDChange.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string_view>
#include <unordered_map>

#include "text/ASCII.h"
#include "text/SeededTextHash.h"

namespace TkPPDUpdating {

namespace {

using Attributes = std::vector<const PPDModelAttribute*>;

/// "ll.Keyword" or "ll_CC.Keyword", with a language of two or three letters.
bool isTranslation(std::string_view keyword) {
    std::string_view language = keyword.substr(0, keyword.find('.'));
    if (language.size() == keyword.size()) {
        return false;
    }
    const std::size_t end = std::min(language.find_first_of("_-"), language.size());
    const std::string_view territory = language.substr(end);
    language = language.substr(0, end);
    return (language.size() == 2 || language.size() == 3) &&
           std::all_of(language.begin(), language.end(), isASCIILowerCaseLetter) &&
           territory.size() != 1 &&
           (territory.empty() ||
            std::all_of(territory.begin() + 1, territory.end(), isASCIILetter));
}

Attributes comparedAttributes(const PPDModelFile& PPD) {
    Attributes compared;
    compared.reserve(PPD.attributes().size());
    for (const PPDModelAttribute& attribute : PPD.attributes()) {
        if (!isTranslation(attribute.keyword())) {
            compared.push_back(&attribute);
        }
    }
    return compared;
}

/// A line by all that it says.
struct LineHash {
    std::size_t operator()(const PPDModelAttribute* line) const {
        std::uint64_t hash = SeededTextHash::of(line->keyword());
        hash = SeededTextHash::of(line->spec(), hash);
        hash = SeededTextHash::of(line->text().value_or(""), hash);
        return SeededTextHash::of(line->value().value_or(""), hash);
    }
};

struct LineEquality {
    bool operator()(const PPDModelAttribute* left, const PPDModelAttribute* right) const {
        return left->keyword() == right->keyword() && left->spec() == right->spec() &&
               left->text() == right->text() &&
               left->value().value_or("") == right->value().value_or("");
    }
};

/// A line by its keywords.
struct NameHash {
    std::size_t operator()(const PPDModelAttribute* line) const {
        return SeededTextHash::of(line->spec(), SeededTextHash::of(line->keyword()));
    }
};

struct NameEquality {
    bool operator()(const PPDModelAttribute* left, const PPDModelAttribute* right) const {
        return left->keyword() == right->keyword() && left->spec() == right->spec();
    }
};

/// The lines of `lines` that `others` does not have, or not as often.
Attributes linesWithout(const Attributes& lines, const Attributes& others) {
    std::unordered_map<const PPDModelAttribute*, std::size_t, LineHash, LineEquality> known;
    known.reserve(others.size());
    for (const PPDModelAttribute* line : others) {
        ++known[line];
    }
    Attributes rest;
    for (const PPDModelAttribute* line : lines) {
        const auto same = known.find(line);
        if (same == known.end() || same->second == 0) {
            rest.push_back(line);
        } else {
            --same->second;
        }
    }
    return rest;
}

/// What is known of the lines of one name that differ.
struct Name {
    std::size_t countBefore = 0;
    std::size_t countAfter = 0;
    /// Of the change that holds the line that went, where it is the only one.
    std::size_t change = 0;

    bool isSingle() const { return countBefore == 1 && countAfter == 1; }
};

using Names = std::unordered_map<const PPDModelAttribute*, Name, NameHash, NameEquality>;

/// The names of the lines that went, each with its count.
Names namesOf(const Attributes& went, const Attributes& before, const Attributes& after) {
    Names names;
    for (const PPDModelAttribute* line : went) {
        names.try_emplace(line);
    }
    const auto count = [&names](const Attributes& lines, std::size_t Name::*counter) {
        for (const PPDModelAttribute* line : lines) {
            const auto name = names.find(line);
            if (name != names.end()) {
                ++(name->second.*counter);
            }
        }
    };
    count(before, &Name::countBefore);
    count(after, &Name::countAfter);
    return names;
}

PPDChange::State stateOf(const PPDModelAttribute& line) {
    const auto text = line.text();
    return {text ? std::optional<std::string>(*text) : std::nullopt,
            std::string(line.value().value_or(""))};
}

PPDChange changeOf(const PPDModelAttribute& line) {
    return {std::string(line.keyword()), std::string(line.spec()), std::nullopt, std::nullopt};
}

}  // namespace

std::vector<PPDChange> PPDChangesBetween(const PPDModelFile& before, const PPDModelFile& after) {
    const Attributes linesBefore = comparedAttributes(before);
    const Attributes linesAfter = comparedAttributes(after);
    const Attributes went = linesWithout(linesBefore, linesAfter);
    const Attributes came = linesWithout(linesAfter, linesBefore);
    Names names = namesOf(went, linesBefore, linesAfter);
    std::vector<PPDChange> changes;
    changes.reserve(went.size() + came.size());
    for (const PPDModelAttribute* line : went) {
        names.find(line)->second.change = changes.size();
        changes.push_back(changeOf(*line));
        changes.back().before = stateOf(*line);
    }
    for (const PPDModelAttribute* line : came) {
        const auto name = names.find(line);
        if (name != names.end() && name->second.isSingle()) {
            changes[name->second.change].after = stateOf(*line);
        } else {
            changes.push_back(changeOf(*line));
            changes.back().after = stateOf(*line);
        }
    }
    return changes;
}

std::vector<std::string> keywordsOfPPDChanges(const std::vector<PPDChange>& changes) {
    std::set<std::string> keywords;
    for (const PPDChange& change : changes) {
        keywords.insert(change.keyword);
    }
    return {keywords.begin(), keywords.end()};
}

}  // namespace TkPPDUpdating
