#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// Why a text that a printer reported may not be handed over, or nothing when it may.
///
/// Values of a status are written into the PPD as they are, so every text in a status must be able
/// to stand in one PPD line: valid UTF-8 without control characters (U+0000 to U+001F, U+007F to
/// U+009F), line or paragraph separators (U+2028, U+2029) and double quotes. The reason is one
/// phrase that names the offending character and its byte offset, and holds none of the text
/// itself.
std::optional<std::string> reasonTextCannotStandInPPDLine(std::string_view text);

}  // namespace TkPPDUpdating
