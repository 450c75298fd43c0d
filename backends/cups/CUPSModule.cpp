// What the module of this backend exports (sync/SchedulerModule.h).
#include <memory>
#include <string_view>

#include "backends/cups/CUPSScheduler.h"
#include "sync/SchedulerModule.h"

extern "C" bool TkPPDUpdatingMakeScheduler(
    const char* version, const std::string& server, const std::atomic<bool>* isCancelled,
    std::unique_ptr<TkPPDUpdating::QueueScheduler>& scheduler) {
    if (std::string_view(version) != TKPPDUPDATING_VERSION) {
        return false;
    }
    TkPPDUpdating::CUPSScheduler::Limits limits;
    limits.isCancelled = isCancelled;
    scheduler = std::make_unique<TkPPDUpdating::CUPSScheduler>(server, limits);
    return true;
}
