#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "sync/QueueScheduler.h"

/// What a module exports (backends/schemes/BackendModule.h) behind which there is a scheduler.
namespace TkPPDUpdating {

/// Makes the scheduler of that name into `scheduler`; an empty name is for the machine's own, as
/// its configuration says.
///
/// `version` is that of the caller; the module makes none and gives false for one that is not its
/// own, since the two share classes. `isCancelled` ends all talks when anybody sets it; null for
/// never, else it outlives the scheduler. Raises nothing but `std::bad_alloc`.
using MakeScheduler = bool(const char* version, const std::string& server,
                           const std::atomic<bool>* isCancelled,
                           std::unique_ptr<QueueScheduler>& scheduler);

/// Its name in each such module; it has the linkage of C.
inline constexpr const char* kMakeSchedulerName = "TkPPDUpdatingMakeScheduler";

}  // namespace TkPPDUpdating

extern "C" TkPPDUpdating::MakeScheduler TkPPDUpdatingMakeScheduler
    __attribute__((visibility("default")));
