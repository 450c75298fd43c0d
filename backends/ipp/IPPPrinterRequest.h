#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "backends/ipp/IPPDeviceStatusLimits.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSError.h"

namespace TkPPDUpdating {

/// Asks one IPP printer what the status mapping wants to know: Get-Printer-Attributes (RFC 8011,
/// section 4.2.5). Null, with the cause and reason in `error`, when there is no status within the
/// time.
std::shared_ptr<const ReportedDeviceStatus> statusOfIPPPrinter(const std::string& deviceURI,
                                                               const IPPDeviceStatusLimits& limits,
                                                               std::chrono::milliseconds time,
                                                               OrbCSError& error);

/// What is wrong with the URI of an IPP printer, nobody having been asked; nothing when it names
/// one.
std::optional<OrbCSError> errorInURIOfIPPPrinter(const std::string& deviceURI);

}  // namespace TkPPDUpdating
