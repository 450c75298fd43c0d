// What the module of this backend exports.
#include "backends/ipp/IPPSchemes.h"
#include "backends/modules/TkPPDUpdatingModule.h"

const TkPPDUpdating::Module TkPPDUpdatingModule = {
    .registerSchemes = [](TkPPDUpdating::DeviceStatusSchemes& schemes,
                          const std::atomic<bool>* isCancelled) {
        TkPPDUpdating::IPPDeviceStatusLimits limits;
        limits.isCancelled = isCancelled;
        TkPPDUpdating::registerIPPDeviceStatus(schemes, limits);
    }};
