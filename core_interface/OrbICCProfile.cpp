#include "core_interface/OrbICCProfile.h"

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

}  // namespace TkPPDUpdating
