// A module of another version, for BackendModules_test.cpp and AddedModules_test.cpp. None of its
// functions may be called.
#include <TkPPDUpdating/backends/modules/TkPPDUpdatingModule.h>

#include <cstdlib>

const TkPPDUpdating::Module TkPPDUpdatingModule = {
    .version = "0.0.9",
    .registerUpdaters = [](TkPPDUpdating::OrbPPDUpdatingManager&) { std::abort(); },
    .registerSchemes = [](TkPPDUpdating::DeviceStatusSchemes&,
                          const std::atomic<bool>*) { std::abort(); },
    .makeScheduler = [](const std::string&, const std::atomic<bool>*,
                        std::unique_ptr<TkPPDUpdating::QueueScheduler>&) { std::abort(); }};
