#include "backends/modules/BackendModules.h"

#include <dlfcn.h>

#include <filesystem>
#include <mutex>
#include <optional>

#include "backends/schemes/BackendModule.h"
#include "resources/ObjectFile.h"
#include "sync/SchedulerModule.h"

namespace TkPPDUpdating {

namespace {

std::string reasonForOtherVersion(const std::string& moduleName) {
    return "the module \"" + moduleName + "\" is not of this version";
}

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
        module_ = BackendModule::loaded(moduleName_, error_);
        if (!module_) {
            return;
        }
        auto* const registerBackends = module_->exported<RegisterBackends>(kRegisterBackendsName);
        if (!registerBackends || !registerBackends(TKPPDUPDATING_VERSION, schemes_, isCancelled_)) {
            error_ = reasonForOtherVersion(moduleName_);
        }
    }

    std::string moduleName_;
    const std::atomic<bool>* isCancelled_;
    std::once_flag once_;
    std::unique_ptr<BackendModule> module_;
    DeviceStatusSchemes schemes_;
    std::string error_;
};

}  // namespace

std::unique_ptr<BackendModule> BackendModule::loaded(const std::string& name, std::string& error) {
    const ObjectFile object = ObjectFile::ofThisCode();
    if (object.path.empty()) {
        error = "the library's own folder is not known";
        return nullptr;
    }
    const auto path = std::filesystem::path(object.path).parent_path() /
                      (object.isProgram ? TKPPDUPDATING_WAY_FROM_PROGRAM_TO_MODULES
                                        : TKPPDUPDATING_WAY_FROM_LIBRARY_TO_MODULES) /
                      (name + ".so");
    void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!handle) {
        // dlerror is safe here: its text belongs to this thread.
        error = "its module cannot be loaded: " + std::string(dlerror());
        return nullptr;
    }
    return std::unique_ptr<BackendModule>(new BackendModule(handle));
}

void* BackendModule::addressOf(const char* name) const {
    return dlsym(handle_, name);
}

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
    const std::string what = "the scheduler cannot be asked: ";
    std::unique_ptr<QueueScheduler> scheduler;
    const auto module = BackendModule::loaded(moduleName, error);
    if (!module) {
        error.insert(0, what);
        return nullptr;
    }
    auto* const makeScheduler = module->exported<MakeScheduler>(kMakeSchedulerName);
    if (!makeScheduler || !makeScheduler(TKPPDUPDATING_VERSION, server, isCancelled, scheduler)) {
        error = what + reasonForOtherVersion(moduleName);
    }
    return scheduler;
}

}  // namespace TkPPDUpdating
