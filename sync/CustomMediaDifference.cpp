#include "sync/CustomMediaDifference.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace TkPPDUpdating {

namespace {

std::vector<MediaTypeIdentity> identitiesOf(const std::vector<CustomMediaEntry>& block) {
    std::vector<MediaTypeIdentity> identities;
    std::transform(block.begin(), block.end(), std::back_inserter(identities),
                   [](const CustomMediaEntry& entry) { return entry.identity; });
    return identities;
}

auto factsOf(const CustomMediaEntry& entry) {
    return std::tie(entry.identity.mediaID, entry.identity.name, entry.parentMediaID,
                    entry.profileQualifier, entry.profilePath);
}

}  // namespace

DifferenceCounts differenceOfMediaTypes(const std::vector<CustomMediaEntry>& before,
                                        const std::vector<CustomMediaEntry>& after) {
    const auto places = sameMediaTypes(identitiesOf(before), identitiesOf(after));
    DifferenceCounts counts{after.size(), 0, 0};
    for (std::size_t index = 0; index < before.size(); ++index) {
        const auto& place = places[index];
        counts.added -= place ? 1 : 0;
        counts.removed += place ? 0 : 1;
        counts.changed += place && factsOf(before[index]) != factsOf(after[*place]) ? 1 : 0;
    }
    return counts;
}

}  // namespace TkPPDUpdating
