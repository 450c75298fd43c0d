#pragma once

#include <memory>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "c_interface/TkPPDUpdating.h"
#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbDictionary.h"

namespace TkPPDUpdating {

/// Where the statuses and queues of callers in C come from.
class CSources {
  public:
    CSources() = delete;

    /// Recordings, and what has a module beside the library.
    static std::shared_ptr<const DeviceStatusSchemes> schemes();

    /// The scheduler's PPDs where there is a module that asks it; else null.
    static PPDModelCore::QueuePPDSource queuePPDSource();

    /// Raises `CFailure` when the source is none, or its device URI or recording is a mistake of
    /// the caller's; a recording is read for that, a printer or function not asked.
    static void check(const TkPPDUpdatingStatusSource& source, const DeviceStatusSchemes& schemes);

    /// The status that a checked source gives, never null. Raises `CFailure` when it gives none.
    static std::shared_ptr<const OrbCSDeviceStatus> status(const TkPPDUpdatingStatusSource& source,
                                                           const DeviceStatusSchemes& schemes,
                                                           const OrbDictionary& parameters);
};

}  // namespace TkPPDUpdating
