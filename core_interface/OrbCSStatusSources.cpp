#include "core_interface/OrbCSStatusSources.h"

#include <algorithm>
#include <iterator>

namespace TkPPDUpdating {

namespace {

bool isPartOf(std::string_view part, std::string_view whole) {
    return part.starts_with(whole) && (part.size() == whole.size() || part[whole.size()] == '.');
}

}  // namespace

std::vector<OrbCSStatusSource> OrbCSStatusSources::sourcesOf(const OrbCSDeviceStatus& status,
                                                             std::string_view entry) {
    std::vector<OrbCSStatusSource> found;
    if (const auto* const known = dynamic_cast<const OrbCSStatusSources*>(&status)) {
        std::copy_if(known->sources().begin(), known->sources().end(), std::back_inserter(found),
                     [entry](const OrbCSStatusSource& source) {
                         return isPartOf(source.entry, entry) || isPartOf(entry, source.entry);
                     });
    }
    return found;
}

}  // namespace TkPPDUpdating
