#pragma once

#include <memory>

#include "backends/ppdmodel/PPDModelCore.h"
#include "sync/QueueScheduler.h"

namespace TkPPDUpdating {

/// Gives the core library the PPDs of queues as the scheduler holds them.
PPDModelCore::QueuePPDSource queuePPDSource(std::shared_ptr<const QueueScheduler> scheduler);

}  // namespace TkPPDUpdating
