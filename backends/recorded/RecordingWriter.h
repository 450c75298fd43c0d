#pragma once

#include <string>

#include "core_interface/OrbCSDeviceStatus.h"

namespace TkPPDUpdating {

/// The status as JSON in the recorded format. What the printer did not report is left out, and so
/// is a number that JSON cannot express (not finite).
std::string recordingOfStatus(const OrbCSDeviceStatus& status);

}  // namespace TkPPDUpdating
