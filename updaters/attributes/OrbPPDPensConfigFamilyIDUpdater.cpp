#include "updaters/attributes/OrbPPDPensConfigFamilyIDUpdater.h"

#include <array>

#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

std::span<const std::string_view> OrbPPDPensConfigFamilyIDUpdater::attributeNames() const {
    static constexpr std::array<std::string_view, 1> kAttributeNames = {kTkCSPPDPenFamilyIDsKey};
    return kAttributeNames;
}

}  // namespace TkPPDUpdating
