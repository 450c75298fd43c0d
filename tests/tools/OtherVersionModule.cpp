// A module of backends that is none of this version, for BackendModules_test.cpp.
#include "backends/schemes/BackendModule.h"
#include "sync/SchedulerModule.h"

extern "C" bool TkPPDUpdatingRegisterBackends(const char* /*version*/,
                                              TkPPDUpdating::DeviceStatusSchemes& /*schemes*/,
                                              const std::atomic<bool>* /*isCancelled*/) {
    return false;
}

extern "C" bool TkPPDUpdatingMakeScheduler(
    const char* /*version*/, const std::string& /*server*/,
    const std::atomic<bool>* /*isCancelled*/,
    std::unique_ptr<TkPPDUpdating::QueueScheduler>& /*scheduler*/) {
    return false;
}
