// What the module of this backend exports.
#include "backends/modules/TkPPDUpdatingModule.h"
#include "backends/snmp/SNMPSchemes.h"

const TkPPDUpdating::Module TkPPDUpdatingModule = {
    .registerSchemes = [](TkPPDUpdating::DeviceStatusSchemes& schemes,
                          const std::atomic<bool>* isCancelled) {
        TkPPDUpdating::SNMPDeviceStatusLimits limits;
        limits.isCancelled = isCancelled;
        TkPPDUpdating::registerSNMPDeviceStatus(schemes, limits);
    }};
