#include "sync/CustomMediaTypes.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <vector>

#include "ppd/StringsFileFormat.h"
#include "ppd/UnicodeWhiteSpace.h"
#include "sync/PPDLocalizedTexts.h"

namespace TkPPDUpdating {

namespace {

/// The value of the last line of that name, which counts; empty when there is none.
std::string_view lastValue(const PPDModelFile& PPD, std::string_view keyword,
                           std::string_view spec) {
    const auto lines = PPD.attributesForName_spec(keyword, spec);
    return lines.empty() ? std::string_view() : lines.back()->value().value_or("");
}

std::string identityOf(std::string_view properties, const std::string& text) {
    const auto members = propertyListFromStringsFileFormat(properties);
    const auto mediaID = members ? members->find("MediaID") : StringsDictionary::const_iterator();
    // No text begins with the character that keeps the two kinds apart: PPDs hold none.
    return members && mediaID != members->end() ? mediaID->second : '\0' + text;
}

std::size_t countOfCommon(const std::multiset<std::string>& left,
                          const std::multiset<std::string>& right) {
    std::vector<std::string> common;
    std::set_intersection(left.begin(), left.end(), right.begin(), right.end(),
                          std::back_inserter(common));
    return common.size();
}

}  // namespace

CustomMediaTypes::CustomMediaTypes(const PPDModelFile& PPD) {
    const PPDLocalizedTexts texts(PPD, {});
    for (const std::string_view choice :
         piecesBetweenWhiteSpace(lastValue(PPD, "ZrMediaTypeCategory", "custom"))) {
        if (choice.empty() || !choices_.emplace(choice).second) {
            continue;
        }
        const std::string text = texts.textOfChoice("MediaType", choice);
        const std::string_view properties =
            lastValue(PPD, "ZrChoiceProperties", "MediaType." + std::string(choice));
        types_[identityOf(properties, text)].insert(text + '\0' + std::string(properties));
    }
}

CustomMediaTypes::Difference CustomMediaTypes::between(const CustomMediaTypes& before,
                                                       const CustomMediaTypes& after) {
    Difference difference;
    for (const auto& [identity, types] : after.types_) {
        if (!before.types_.contains(identity)) {
            difference.added += types.size();
        }
    }
    for (const auto& [identity, types] : before.types_) {
        const auto same = after.types_.find(identity);
        const std::size_t now = same == after.types_.end() ? 0 : same->second.size();
        const std::size_t stayed = std::min(types.size(), now);
        difference.added += now - stayed;
        difference.removed += types.size() - stayed;
        if (stayed > 0) {
            difference.changed += stayed - std::min(stayed, countOfCommon(types, same->second));
        }
    }
    return difference;
}

}  // namespace TkPPDUpdating
