#include "updaters/attributes/OrbPPDPensConfigCSLInfoUpdater.h"

#include <array>

#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

std::span<const std::string_view> OrbPPDPensConfigCSLInfoUpdater::attributeNames() const {
    static constexpr std::array<std::string_view, 3> kAttributeNames = {
        kTkCSPPDPenDyesKey, kTkCSPPDPenDropVolumesKey, kTkCSPPDPenEverydayStatusKey};
    return kAttributeNames;
}

}  // namespace TkPPDUpdating
