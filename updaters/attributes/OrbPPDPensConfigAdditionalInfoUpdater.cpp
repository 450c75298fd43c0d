#include "updaters/attributes/OrbPPDPensConfigAdditionalInfoUpdater.h"

#include <array>

#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

std::span<const std::string_view> OrbPPDPensConfigAdditionalInfoUpdater::attributeNames() const {
    static constexpr std::array<std::string_view, 5> kAttributeNames = {
        kTkCSPPDPenActualDropVolumesKey, kTkCSPPDPenNominalDropVolumesKey,
        kTkCSPPDPenBriskDropVolumesKey, kTkCSPPDPenInkSufficientKey,
        kTkCSPPDPenHasPrintheadDefectKey};
    return kAttributeNames;
}

}  // namespace TkPPDUpdating
