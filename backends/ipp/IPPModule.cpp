// What the module of this backend exports (backends/schemes/BackendModule.h).
#include <string_view>

#include "backends/ipp/IPPSchemes.h"
#include "backends/schemes/BackendModule.h"

extern "C" TkPPDUpdating::RegisterBackends TkPPDUpdatingRegisterBackends
    __attribute__((visibility("default")));

extern "C" bool TkPPDUpdatingRegisterBackends(const char* version,
                                              TkPPDUpdating::DeviceStatusSchemes& schemes,
                                              const std::atomic<bool>* isCancelled) {
    if (std::string_view(version) != TKPPDUPDATING_VERSION) {
        return false;
    }
    TkPPDUpdating::IPPDeviceStatusLimits limits;
    limits.isCancelled = isCancelled;
    TkPPDUpdating::registerIPPDeviceStatus(schemes, limits);
    return true;
}
