#pragma once

#include "backends/postscript/PostScriptLimits.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Registers the backend for "socket". It asks what stands under `kTkCSPostScriptQuestionsKey` in
/// the parameters of a request, and gives no status without it. It sends PostScript code to the
/// printer, which one that is no PostScript printer may print: only for whoever wants that.
TKPPDUPDATING_PUBLIC void registerPostScriptDeviceStatus(DeviceStatusSchemes& schemes,
                                                         const PostScriptLimits& limits = {});

}  // namespace TkPPDUpdating
