#pragma once

#include <atomic>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "backends/schemes/DeviceStatusSchemes.h"
#include "sync/QueueScheduler.h"

namespace TkPPDUpdating {

/// Registers schemes whose backends a module of this project has. It is loaded when the first URI
/// of one of them is asked for or looked at, and no earlier; when that fails, its schemes give no
/// status and say why. `isCancelled` is handed on to the module.
void registerSchemesOfModule(DeviceStatusSchemes& schemes, const std::string& moduleName,
                             std::initializer_list<std::string_view> names,
                             const std::atomic<bool>* isCancelled);

/// The scheduler of a module, which is loaded for it; `server` and `isCancelled` are handed on.
/// Null, with the reason (one phrase) in `error`, when that fails.
std::unique_ptr<QueueScheduler> schedulerOfModule(const std::string& moduleName,
                                                  const std::string& server,
                                                  const std::atomic<bool>* isCancelled,
                                                  std::string& error);

}  // namespace TkPPDUpdating
