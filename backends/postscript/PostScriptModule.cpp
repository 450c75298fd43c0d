// What the module of this backend exports.
#include "backends/modules/TkPPDUpdatingModule.h"
#include "backends/postscript/PostScriptSchemes.h"

const TkPPDUpdating::Module TkPPDUpdatingModule = {
    .registerSchemes = [](TkPPDUpdating::DeviceStatusSchemes& schemes,
                          const std::atomic<bool>* isCancelled) {
        TkPPDUpdating::PostScriptLimits limits;
        limits.isCancelled = isCancelled;
        TkPPDUpdating::registerPostScriptDeviceStatus(schemes, limits);
    }};
