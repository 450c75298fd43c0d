#include "tools/BackendModules.h"

#include <dlfcn.h>

#include <filesystem>
#include <mutex>
#include <system_error>

#include "backends/schemes/BackendModule.h"

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

  private:
    void load() {
        module_ = BackendModule::loaded(moduleName_, error_);
        if (!module_) {
            return;
        }
        auto* const registerBackends =
            reinterpret_cast<RegisterBackends*>(module_->exported(kRegisterBackendsName));
        if (!registerBackends || !registerBackends(TKPPDUPDATING_VERSION, schemes_, isCancelled_)) {
            error_ = "the module \"" + moduleName_ + "\" is not of this version";
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
    std::error_code failed;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", failed);
    if (failed) {
        error = "the program's own folder is not known";
        return nullptr;
    }
    const auto path = program.parent_path() / TKPPDUPDATING_WAY_TO_MODULES / (name + ".so");
    void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!handle) {
        // dlerror is safe here: its text belongs to this thread.
        error = "its module cannot be loaded: " + std::string(dlerror());
        return nullptr;
    }
    return std::unique_ptr<BackendModule>(new BackendModule(handle));
}

void* BackendModule::exported(const char* name) const {
    return dlsym(handle_, name);
}

void registerSchemesOfModule(DeviceStatusSchemes& schemes, const std::string& moduleName,
                             std::initializer_list<std::string_view> names,
                             const std::atomic<bool>* isCancelled) {
    const auto backends = std::make_shared<LazyBackends>(moduleName, isCancelled);
    for (const std::string_view name : names) {
        schemes.registerScheme(
            name, [backends](const std::string& deviceURI, const OrbDictionary* parameters,
                             OrbCSError& error) {
                return backends->status(deviceURI, parameters, error);
            });
    }
}

}  // namespace TkPPDUpdating
