#pragma once

#include <string_view>

namespace TkPPDUpdating {

/// The member of a recording that lists the entries that it tells; without it a recording tells
/// everything.
inline constexpr std::string_view kRecordingToldMember = "Told";

}  // namespace TkPPDUpdating
