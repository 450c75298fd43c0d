#include "backends/modules/BackendModules.h"

#include <mutex>
#include <optional>
#include <utility>

#include "backends/modules/LoadedModules.h"

namespace TkPPDUpdating {

namespace {

/// The backends of a module, which is loaded when the first of them is needed.
class LazyBackends {
  public:
    LazyBackends(std::string moduleName, const std::atomic<bool>* isCancelled)
        : moduleName_(std::move(moduleName)), isCancelled_(isCancelled) {}

    std::shared_ptr<const OrbCSDeviceStatus> status(const std::string& deviceURI,
                                                    const OrbDictionary* parameters,
                                                    OrbCSError& error) {
        std::call_once(once_, [this] { load(); });
        if (!error_.empty()) {
            error = {OrbCSError::Cause::noBackend, error_};
            return nullptr;
        }
        return schemes_.deviceStatusWithURI_parameters_error(deviceURI, parameters, &error);
    }

    /// What the backends say of a URI; nothing without them, which is no fault of the URI.
    std::optional<OrbCSError> errorInURI(const std::string& deviceURI) {
        std::call_once(once_, [this] { load(); });
        return error_.empty() ? schemes_.errorInURI(deviceURI) : std::nullopt;
    }

  private:
    void load() {
        const Module* const module = ownModule(moduleName_, error_);
        if (module && module->registerSchemes) {
            module->registerSchemes(schemes_, isCancelled_);
        }
    }

    std::string moduleName_;
    const std::atomic<bool>* isCancelled_;
    std::once_flag once_;
    DeviceStatusSchemes schemes_;
    std::string error_;
};

}  // namespace

void registerSchemesOfModule(DeviceStatusSchemes& schemes, const std::string& moduleName,
                             std::initializer_list<std::string_view> names,
                             const std::atomic<bool>* isCancelled) {
    const auto backends = std::make_shared<LazyBackends>(moduleName, isCancelled);
    for (const std::string_view name : names) {
        schemes.registerScheme(
            name,
            [backends](const std::string& deviceURI, const OrbDictionary* parameters,
                       OrbCSError& error) {
                return backends->status(deviceURI, parameters, error);
            },
            [backends](const std::string& deviceURI) { return backends->errorInURI(deviceURI); });
    }
}

std::unique_ptr<QueueScheduler> schedulerOfModule(const std::string& moduleName,
                                                  const std::string& server,
                                                  const std::atomic<bool>* isCancelled,
                                                  std::string& error) {
    std::unique_ptr<QueueScheduler> scheduler;
    const Module* const module = ownModule(moduleName, error);
    if (module && module->makeScheduler) {
        module->makeScheduler(server, isCancelled, scheduler);
    } else {
        error.insert(0, "the scheduler cannot be asked: ");
    }
    return scheduler;
}

}  // namespace TkPPDUpdating
