#pragma once

#include <atomic>
#include <string_view>

#include "backends/schemes/DeviceStatusSchemes.h"

/// What a module of backends exports: a shared object that is loaded only in a run that needs it,
/// so that a library behind it costs nobody else anything, nor has to be installed for them.
namespace TkPPDUpdating {

/// Registers the backends of the module, for the life of the process.
///
/// `version` is that of the caller; the module does nothing and gives false for one that is not its
/// own, since the two share classes. `isCancelled` ends whatever its backends wait for when anybody
/// sets it; null for never, else it outlives the process's last look at a printer. Raises nothing
/// but `std::bad_alloc`.
using RegisterBackends = bool(const char* version, DeviceStatusSchemes& schemes,
                              const std::atomic<bool>* isCancelled);

/// Its name in each module; it has the linkage of C.
inline constexpr const char* kRegisterBackendsName = "TkPPDUpdatingRegisterBackends";

/// What it does in a module of the version `ownVersion` whose backends are registered by a function
/// that takes their limits, which have the member `isCancelled`.
template <typename Limits>
bool registerBackendsOfModule(std::string_view ownVersion, std::string_view version,
                              DeviceStatusSchemes& schemes, const std::atomic<bool>* isCancelled,
                              void (*registerBackends)(DeviceStatusSchemes&, const Limits&)) {
    if (version != ownVersion) {
        return false;
    }
    Limits limits;
    limits.isCancelled = isCancelled;
    registerBackends(schemes, limits);
    return true;
}

}  // namespace TkPPDUpdating

extern "C" TkPPDUpdating::RegisterBackends TkPPDUpdatingRegisterBackends
    __attribute__((visibility("default")));
