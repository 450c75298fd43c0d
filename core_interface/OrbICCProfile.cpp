#include "core_interface/OrbICCProfile.h"

#include "core_interface/OrbCoreInterface.h"
#include "ppd/SeededTextHash.h"

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
    // All of what makes profiles equal: a hostile printer reports thousands that differ in one
    // member only.
    const std::uint64_t ofURL = SeededTextHash::of(URL().value_or(""));
    const std::uint64_t ofTexts = SeededTextHash::of(qualifierVer2().value_or(""), ofURL);
    return SeededTextHash::carriedOn(ofTexts, profileID().value_or(0));
}

}  // namespace TkPPDUpdating
