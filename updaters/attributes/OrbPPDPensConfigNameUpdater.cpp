#include "updaters/attributes/OrbPPDPensConfigNameUpdater.h"

#include <array>

#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

std::span<const std::string_view> OrbPPDPensConfigNameUpdater::attributeNames() const {
    static constexpr std::array<std::string_view, 1> kAttributeNames = {kTkCSPPDPensConfigNameKey};
    return kAttributeNames;
}

}  // namespace TkPPDUpdating
