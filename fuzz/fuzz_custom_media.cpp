// Custom media types: list B after list A gives the same as list B alone, no list takes back what
// list A wrote, and what was written reads back as the same. The input is a recording with list A,
// one with list B, and a PPD, with lines "====" between them.
#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "core_interface/TkCSKeys.h"
#include "fuzz/UpdateInput.h"
#include "ppd/PPDTextIndex.h"
#include "sync/UpdateGuard.h"
#include "updaters/custom_media/OrbPPDCustomMediaUpdater.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

OrbCustomMediaTypes typesOf(const Status& status) {
    const auto* const types =
        status ? status->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey) : nullptr;
    return types ? *types : OrbCustomMediaTypes();
}

PPDText updated(const PPDText& text, const OrbCustomMediaTypes& types) {
    OrbPPDCustomMediaUpdater updater;
    return updater.contentsForContents_updatedWithCustomMediaTypes(text, types);
}

/// Whether the guard lets the result pass. What the updater makes of a PPD that has a choice of
/// the same name already, it refuses.
bool passes(const PPDText& before, const PPDText& after) {
    std::vector<std::unique_ptr<ITkPPDUpdater>> updaters;
    updaters.push_back(std::make_unique<OrbPPDCustomMediaUpdater>());
    return after && !UpdateGuard::reasonNotToWrite(*before, *after, updaters);
}

/// As a look-up reads it: it ignores case, and spaces may be many.
std::string asLookedUp(std::string_view text) {
    std::string result;
    for (const char each : text) {
        if (each != ' ' || !result.ends_with(' ')) {
            result += each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each;
        }
    }
    return result;
}

/// Whether the text has lines that look like those of the block already: of a second category, as a
/// run takes what the first one names; of a name that types get ("custom1"), though no category has
/// it; or of a profile of the types. A run takes back the first line of a name, which may be such a
/// one.
bool hasLinesOfBlock(const PPDText& text, const std::vector<OrbCustomMediaTypes>& lists) {
    const std::string all = asLookedUp(*text);
    const auto has = [&all](const std::string& part) {
        return all.find(part) != std::string::npos;
    };
    const auto hasProfileOf = [&has](const auto& type) {
        const auto qualifier =
            OrbPPDCustomMediaUpdater::PPDProfileQualifierForProfile(type->ICCProfile().get());
        return qualifier && (has("zriccprofileid2 " + asLookedUp(*qualifier)) ||
                             has("cupsiccprofile .." + asLookedUp(*qualifier)));
    };
    return has("mediatype custom") || has("mediatype.custom") ||
           has("*zrmediatypecategory custom") ||
           std::any_of(lists.begin(), lists.end(), [&hasProfileOf](const auto& types) {
               return std::any_of(types.begin(), types.end(), hasProfileOf);
           });
}

/// Whether each type has what a reading back needs, and each profile a qualifier of its own.
bool isComplete(const OrbCustomMediaTypes& types) {
    std::map<std::string, const OrbICCProfile*> profiles;
    return std::all_of(types.begin(), types.end(), [&](const auto& type) {
        const auto profile = type->ICCProfile();
        const auto qualifier =
            OrbPPDCustomMediaUpdater::PPDProfileQualifierForProfile(profile.get());
        const bool isOwn =
            !qualifier ||
            profile->isEqual(*profiles.emplace(*qualifier, profile.get()).first->second);
        return isOwn && !type->name().value_or("").empty() &&
               !type->mediaID().value_or("").empty() && !type->parentMediaID().value_or("").empty();
    });
}

/// Whether a value goes on to the end of the text, as the parsed model reads it: lines that are
/// added belong to it up to their first quote.
bool leavesValueOpen(const PPDText& text) {
    return PPDTextIndex(std::make_shared<const std::string>(*text)).endsInLongValue();
}

void requireReadBack(const PPDText& start, const PPDText& written,
                     const OrbCustomMediaTypes& types) {
    const auto parsed = PPDModelFile::fileWithText(written);
    require(parsed != nullptr, "the result is a PPD");
    // Without the option (what opens it may be no statement) there is no choice to be read.
    if (!isComplete(types) || !parsed->optionForName("MediaType") || leavesValueOpen(start)) {
        return;
    }
    OrbPPDCustomMediaUpdater updater;
    const PPDText again =
        updater.updatedPPDContentsForContents_PPDFile_context(written, parsed.get(), nullptr);
    require(again && *again == *written, "what was written reads back as the same");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input = textOfInput(data, size);
    const auto first = takenStatus(input);
    const auto second = takenStatus(input);
    const ParsedPPD PPD = takenPPD(input);
    const auto types = second ? typesOf(*second) : OrbCustomMediaTypes();
    if (!first || types.empty() || !PPD) {
        return 0;
    }
    setTheSameWorld(std::make_shared<const PPDModelCore>());
    try {
        // Without what an earlier run left, which need not be what a run writes.
        const PPDText start = makePPDText(*updated(PPD->text(), {}));
        const PPDText afterFirst = updated(start, typesOf(*first));
        const PPDText alone = updated(start, types);
        if (hasLinesOfBlock(start, {typesOf(*first), types}) || !passes(start, afterFirst) ||
            !passes(start, alone)) {
            return 0;
        }
        const PPDText both = updated(afterFirst, types);
        require(both && *both == *alone, "list B after list A is list B");
        const PPDText taken = updated(alone, {});
        const std::string whole = *start + (start->ends_with('\n') ? "" : "\n");
        require(taken && *taken == whole, "no list takes back what was written");
        requireReadBack(start, alone, types);
    } catch (const std::out_of_range&) {
        // How a look-up ends at an attribute that has nothing after its colon.
    }
    return 0;
}
