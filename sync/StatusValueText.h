#pragma once

#include <string>
#include <string_view>

#include "core_interface/OrbCSDeviceStatus.h"

namespace TkPPDUpdating {

/// What an entry of a status (`core_interface/OrbCSPartialStatus.h`) is, for people: "duplexer",
/// "pages left". One without words of its own is what it is: the PPD keyword of a pen's value, a
/// key.
std::string_view statusEntryWords(std::string_view entry);

/// What a status says under an entry, for people:
/// "installed", "1200", "Glossy Brochure (1201), Canvas (1203)"; "not reported" when there is no
/// value. At most 500 bytes; longer ones end with "...".
std::string statusValueText(const OrbCSDeviceStatus& status, std::string_view entry);

}  // namespace TkPPDUpdating
