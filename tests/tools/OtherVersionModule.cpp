// A module of backends that is none of this version, for BackendModules_test.cpp.
#include "backends/schemes/BackendModule.h"

extern "C" TkPPDUpdating::RegisterBackends TkPPDUpdatingRegisterBackends;

extern "C" bool TkPPDUpdatingRegisterBackends(const char* /*version*/,
                                              TkPPDUpdating::DeviceStatusSchemes& /*schemes*/,
                                              const std::atomic<bool>* /*isCancelled*/) {
    return false;
}
