#include "core_interface/OrbCSIdentifiedStatus.h"

namespace TkPPDUpdating {

OrbCSPrinterIdentity OrbCSIdentifiedStatus::identityOf(const OrbCSDeviceStatus& status) {
    const auto* const identified = dynamic_cast<const OrbCSIdentifiedStatus*>(&status);
    return identified ? identified->identity() : OrbCSPrinterIdentity();
}

}  // namespace TkPPDUpdating
