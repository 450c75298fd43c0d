#pragma once

#include <string>
#include <string_view>

#include "core_interface/OrbCSDeviceStatus.h"

namespace TkPPDUpdating {

/// What a status says under an entry (`core_interface/OrbCSPartialStatus.h`), for people:
/// "installed", "1200", "Glossy Brochure (1201), Canvas (1203)"; "not reported" when there is no
/// value. At most 500 bytes; longer ones end with "...".
std::string statusValueText(const OrbCSDeviceStatus& status, std::string_view entry);

}  // namespace TkPPDUpdating
