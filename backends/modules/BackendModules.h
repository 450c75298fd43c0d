#pragma once

#include <atomic>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "backends/schemes/DeviceStatusSchemes.h"
#include "sync/QueueScheduler.h"

namespace TkPPDUpdating {

/// A module of backends (backends/schemes/BackendModule.h) that is loaded into the process and
/// stays there until its end.
class BackendModule {
  public:
    /// Loads "NAME.so" from the folder of modules, which lies at a fixed way from the file that
    /// this code runs from, the tool's or a shared library's: neither the environment nor the
    /// working directory has a part in it. Null, with the reason (one phrase) in `error`, when it
    /// cannot be loaded.
    static std::unique_ptr<BackendModule> loaded(const std::string& name, std::string& error);

    /// The function that it exports under that name, or null.
    template <typename Function>
    Function* exported(const char* name) const {
        return reinterpret_cast<Function*>(addressOf(name));
    }

  private:
    explicit BackendModule(void* handle) : handle_(handle) {}

    void* addressOf(const char* name) const;

    void* handle_;
};

/// Registers schemes whose backends a module has. It is loaded when the first URI of one of them is
/// asked for or looked at, and no earlier; when that fails, its schemes give no status and say why.
/// `isCancelled` is handed on to the module.
void registerSchemesOfModule(DeviceStatusSchemes& schemes, const std::string& moduleName,
                             std::initializer_list<std::string_view> names,
                             const std::atomic<bool>* isCancelled);

/// The scheduler of a module (sync/SchedulerModule.h), which is loaded for it; `server` and
/// `isCancelled` are handed on. Null, with the reason (one phrase) in `error`, when that fails.
std::unique_ptr<QueueScheduler> schedulerOfModule(const std::string& moduleName,
                                                  const std::string& server,
                                                  const std::atomic<bool>* isCancelled,
                                                  std::string& error);

}  // namespace TkPPDUpdating
