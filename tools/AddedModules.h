#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "backends/modules/TkPPDUpdatingModule.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "manager/OrbClass.h"

namespace TkPPDUpdating {

/// The modules of others that take part in a run: those in the folder for them
/// (`folderOfAddedModules`), in the order of their names, then those that the user names. Their
/// updater classes run as the built-in ones do, and their schemes are asked.
class AddedModules {
  public:
    /// Adds --load, whose paths go into `paths`, which outlives the parsing.
    static void addOptionTo(CLI::App& application, std::vector<std::string>& paths);

    /// Loads them all and registers their schemes; a file that was loaded already counts once.
    /// Raises a `Failure` that names the file when one cannot be loaded (`addedModule`), brings a
    /// class whose name another one has, or has nothing to give.
    void load(const std::vector<std::string>& paths, DeviceStatusSchemes& schemes);

    /// The updater classes of all that were loaded.
    const std::vector<const OrbClass*>& updaterClasses() const { return updaterClasses_; }

  private:
    void loadFile(const std::string& path, DeviceStatusSchemes& schemes);
    void registerAll(const Module& module, const std::string& path, DeviceStatusSchemes& schemes);
    void addUpdaterClasses(const Module& module, const std::string& path);

    std::set<const Module*> modules_;
    std::vector<const OrbClass*> updaterClasses_;
};

}  // namespace TkPPDUpdating
