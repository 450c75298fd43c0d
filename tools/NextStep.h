#pragma once

#include <string>

#include "core_interface/OrbCSError.h"
#include "sync/QueueSyncCauses.h"

namespace TkPPDUpdating {

/// What a user may do after a printer gave no status for that reason, to be put behind it:
/// "; check that ..."; empty where the reason says enough.
std::string nextStepAfter(const OrbCSError& error);

/// The same after a scheduler, or one of its queues, did not do what was asked; `cause` may be
/// null.
std::string nextStepAfter(const QueueSyncCause* cause);

/// The same after the name of a queue that there is not.
inline constexpr const char* kQueuesAreListed = "; \"lpstat -e\" lists the queues";

}  // namespace TkPPDUpdating
