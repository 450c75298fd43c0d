#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "backends/snmp/SNMPDeviceStatusLimits.h"
#include "core_interface/OrbCSError.h"

namespace TkPPDUpdating {

/// Asks one printer for the tables that the status mapping wants to know.
class SNMPPrinterRequest {
  public:
    SNMPPrinterRequest(const SNMPDeviceStatusLimits& limits, std::chrono::milliseconds time)
        : limits_(limits), time_(time) {}

    /// Null, with the cause and the reason in `error`, when there is no status.
    std::shared_ptr<const ReportedDeviceStatus> statusOfPrinter(const std::string& deviceURI,
                                                                OrbCSError& error) const;

  private:
    SNMPDeviceStatusLimits limits_;
    std::chrono::milliseconds time_;
};

}  // namespace TkPPDUpdating
