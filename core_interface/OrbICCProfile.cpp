#include "core_interface/OrbICCProfile.h"

#include <functional>

#include "core_interface/OrbCoreInterface.h"

namespace TkPPDUpdating {

std::shared_ptr<const OrbICCProfile> OrbICCProfile::profileWithPPDParameters(
    const OrbDictionary& parameters) {
    const auto core = OrbCoreInterface::core();
    return core ? core->profileWithPPDParameters(parameters) : nullptr;
}

bool OrbICCProfile::isEqual(const OrbICCProfile& other) const {
    return URL() == other.URL() && qualifierVer2() == other.qualifierVer2() &&
           profileID() == other.profileID();
}

std::size_t OrbICCProfile::hash() const {
    // Profiles with the same file and qualifier hardly differ in the ID alone.
    constexpr std::size_t kFactor = 31;
    return std::hash<std::optional<std::string_view>>()(URL()) * kFactor +
           std::hash<std::optional<std::string_view>>()(qualifierVer2());
}

}  // namespace TkPPDUpdating
