#pragma once

#include <string>

namespace TkPPDUpdating {

/// The tool's version.
std::string toolVersion();

/// The time now, in UTC: "2026-11-21T20:15:00Z" (RFC 3339).
std::string timestampNow();

}  // namespace TkPPDUpdating
