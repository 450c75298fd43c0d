#pragma once

#include "backends/schemes/ReportedDeviceStatus.h"

namespace TkPPDUpdating {

/// A device status that a printer gave over IPP.
class IPPDeviceStatus : public ReportedDeviceStatus {
  public:
    using ReportedDeviceStatus::ReportedDeviceStatus;
};

}  // namespace TkPPDUpdating
