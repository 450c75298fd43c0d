#include "tools/AddedModules.h"

#include <algorithm>
#include <exception>
#include <new>
#include <optional>
#include <system_error>

#include "backends/modules/LoadedModules.h"
#include "core_interface/OrbCoreInterface.h"
#include "manager/OrbClassTable.h"
#include "manager/OrbPPDUpdatingManager.h"
#include "tools/Failure.h"
#include "tools/InterruptionWatch.h"

namespace TkPPDUpdating {

namespace {

namespace fs = std::filesystem;

/// Keeps the classes that a module registers; it can do nothing else.
class CollectingManager : public OrbPPDUpdatingManager {
  public:
    bool registerUpdaterClass(const OrbClass* updaterClass) override {
        const bool isUpdater = updaterClass && updaterClass->conformsToITkPPDUpdater();
        if (isUpdater && std::ranges::find(classes, updaterClass) == classes.end()) {
            classes.push_back(updaterClass);
        }
        return isUpdater;
    }

    std::vector<const OrbClass*> classes;
};

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
    throw Failure(ExitStatus::noResult, path, reason);
}

/// Sorted by name; empty when there is no such folder.
std::vector<std::string> modulesInFolder(const fs::path& folder) {
    std::vector<std::string> paths;
    std::error_code error;
    for (fs::directory_iterator each(folder, error), end; !error && each != end;
         each.increment(error)) {
        if (each->path().extension() == ".so") {
            paths.push_back(each->path().string());
        }
    }
    if (error && error != std::errc::no_such_file_or_directory) {
        refuse(folder.string(), error.message());
    }
    std::ranges::sort(paths);
    return paths;
}

}  // namespace

void AddedModules::addOptionTo(CLI::App& application, std::vector<std::string>& paths) {
    application
        .add_option("--load", paths,
                    "Load updaters and schemes from this module, too (may be repeated)")
        ->type_name("MODULE")
        ->allow_extra_args(false);
}

void AddedModules::load(const std::vector<std::string>& paths, DeviceStatusSchemes& schemes) {
    const fs::path folder = folderOfAddedModules();
    if (!folder.empty()) {
        for (const std::string& path : modulesInFolder(folder)) {
            loadFile(path, schemes);
        }
    }
    for (const std::string& path : paths) {
        loadFile(path, schemes);
    }
}

void AddedModules::loadFile(const std::string& path, DeviceStatusSchemes& schemes) {
    std::string reason;
    const Module* const module = addedModule(path, reason);
    if (!module) {
        refuse(path, reason);
    }
    if (!modules_.insert(module).second) {
        return;
    }
    try {
        registerAll(*module, path, schemes);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const Failure&) {
        throw;
    } catch (const std::exception& error) {
        refuse(path, std::string("cannot register what it has: ") + error.what());
    }
}

void AddedModules::registerAll(const Module& module, const std::string& path,
                               DeviceStatusSchemes& schemes) {
    if (!module.registerUpdaters && !module.registerSchemes) {
        refuse(path, "has neither updaters nor schemes");
    }
    module.shareCore(OrbCoreInterface::core(), OrbCoreInterface::communicationServices());
    if (module.registerUpdaters) {
        addUpdaterClasses(module, path);
    }
    if (module.registerSchemes) {
        module.registerSchemes(schemes, &InterruptionWatch::isInterrupted());
    }
}

void AddedModules::addUpdaterClasses(const Module& module, const std::string& path) {
    CollectingManager collecting;
    module.registerUpdaters(collecting);
    for (const OrbClass* added : collecting.classes) {
        const auto hasItsName = [added](const OrbClass* each) {
            return each->name() == added->name();
        };
        if (added->name().empty() || OrbClassFromName(added->name()) ||
            std::ranges::any_of(updaterClasses_, hasItsName)) {
            refuse(path, "there is an updater class \"" + std::string(added->name()) +
                             "\" already; its own needs another name");
        }
        updaterClasses_.push_back(added);
    }
}

}  // namespace TkPPDUpdating
