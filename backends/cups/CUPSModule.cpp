// What the module of this backend exports.
#include <memory>

#include "backends/cups/CUPSScheduler.h"
#include "backends/modules/TkPPDUpdatingModule.h"

const TkPPDUpdating::Module TkPPDUpdatingModule = {
    .makeScheduler = [](const std::string& server, const std::atomic<bool>* isCancelled,
                        std::unique_ptr<TkPPDUpdating::QueueScheduler>& scheduler) {
        TkPPDUpdating::CUPSScheduler::Limits limits;
        limits.isCancelled = isCancelled;
        scheduler = std::make_unique<TkPPDUpdating::CUPSScheduler>(server, limits);
    }};
