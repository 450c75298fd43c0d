#include "core_interface/OrbCustomMediaType.h"

#include "core_interface/OrbCoreInterface.h"

namespace TkPPDUpdating {

std::shared_ptr<const OrbCustomMediaType> OrbCustomMediaType::customMediaTypeWithPPDParameters(
    const OrbDictionary& parameters) {
    const auto core = OrbCoreInterface::core();
    return core ? core->customMediaTypeWithPPDParameters(parameters) : nullptr;
}

}  // namespace TkPPDUpdating
