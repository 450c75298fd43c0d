// What the module of this backend exports.
#include "backends/postscript/PostScriptSchemes.h"
#include "backends/schemes/BackendModule.h"

extern "C" bool TkPPDUpdatingRegisterBackends(const char* version,
                                              TkPPDUpdating::DeviceStatusSchemes& schemes,
                                              const std::atomic<bool>* isCancelled) {
    return TkPPDUpdating::registerBackendsOfModule(TKPPDUPDATING_VERSION, version, schemes,
                                                   isCancelled,
                                                   TkPPDUpdating::registerPostScriptDeviceStatus);
}
