#pragma once

#include <atomic>

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

}  // namespace TkPPDUpdating
