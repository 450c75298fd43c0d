#include "core_interface/OrbCUPSICCProfileSpecifier.h"

#include "core_interface/OrbCoreInterface.h"

namespace TkPPDUpdating {

std::shared_ptr<const OrbCUPSICCProfileSpecifier>
OrbCUPSICCProfileSpecifier::specifierVer2WithProfileID(std::uint64_t profileID) {
    const auto core = OrbCoreInterface::core();
    return core ? core->specifierVer2WithProfileID(profileID) : nullptr;
}

}  // namespace TkPPDUpdating
