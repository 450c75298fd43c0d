#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "backends/ipp/IPPDeviceStatus.h"
#include "backends/ipp/IPPDeviceStatusLimits.h"
#include "core_interface/OrbCSError.h"

namespace TkPPDUpdating {

/// Asks one IPP printer what the status mapping wants to know: Get-Printer-Attributes (RFC 8011,
/// section 4.2.5).
class IPPPrinterRequest {
  public:
    IPPPrinterRequest(const IPPDeviceStatusLimits& limits, std::chrono::milliseconds time)
        : limits_(limits), time_(time) {}

    /// Null, with the cause and reason in `error`, when there is no status.
    std::shared_ptr<const IPPDeviceStatus> statusOfPrinter(const std::string& deviceURI,
                                                           OrbCSError& error) const;

    /// What is wrong with the URI of a printer, nobody having been asked; nothing when it names
    /// one.
    static std::optional<OrbCSError> errorInURI(const std::string& deviceURI);

  private:
    IPPDeviceStatusLimits limits_;
    std::chrono::milliseconds time_;
};

}  // namespace TkPPDUpdating
