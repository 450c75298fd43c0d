#include "tools/UpdaterSelection.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core_interface/OrbCoreInterface.h"
#include "manager/OrbClassTable.h"
#include "ppd/PPDTextSafety.h"
#include "tools/Failure.h"
#include "tools/SimilarWord.h"

namespace TkPPDUpdating {

namespace {

/// "; did you mean \"CLASS\"?" for a mistyped class, or for a part of the name of just one.
std::string questionForUpdaterClass(const std::string& name,
                                    const std::vector<std::string>& names) {
    std::vector<std::string> longer;
    for (const std::string& each : names) {
        if (!name.empty() && each.find(name) != std::string::npos) {
            longer.push_back(each);
        }
    }
    return longer.size() == 1 ? "; did you mean \"" + longer.front() + "\"?"
                              : questionForSimilarWord(name, names);
}

}  // namespace

void UpdaterSelection::addTo(CLI::App& subcommand) {
    commandName_ = subcommand.get_name();
    // One class for each time that the option is given: the argument after it may be the file.
    const auto addClassOption = [&](const std::string& name, std::vector<std::string>& classes,
                                    const std::string& description) {
        subcommand.add_option(name, classes, description)
            ->type_name("CLASS")
            ->allow_extra_args(false);
    };
    addClassOption("--only", onlyNames_, "Run just this updater class (may be repeated)");
    addClassOption("--skip", skippedNames_, "Run all but this updater class (may be repeated)");
    subcommand.add_flag("--all-updaters", runAllUpdaters_,
                        "Also run those that the printer did not tell all that they read");
}

bool UpdaterSelection::areOnly(std::string_view className) const {
    return std::ranges::find(onlyNames_, className) != onlyNames_.end();
}

void UpdaterSelection::refuseUnwritableUpdateTime() {
    constexpr const char* kVariable = "ZrEPRLastUpdateTime";
    const auto time = OrbCoreInterface::environment()->valueForVariable(kVariable);
    const auto reason = time ? reasonTextCannotStandInPPDLine(*time) : std::nullopt;
    if (reason) {
        throw Failure(ExitStatus::noResult, "the environment variable " + std::string(kVariable),
                      *reason);
    }
}

std::unique_ptr<OrbPPDConcreteUpdatingManager> UpdaterSelection::managerWithAllClasses(
    const std::vector<const OrbClass*>& added) {
    auto manager = std::make_unique<OrbPPDConcreteUpdatingManager>();
    for (const OrbClass* updaterClass : OrbFurtherClassTable()) {
        manager->registerUpdaterClass(updaterClass);
    }
    for (const OrbClass* updaterClass : added) {
        manager->registerUpdaterClass(updaterClass);
    }
    return manager;
}

const OrbClass* UpdaterSelection::classNamed(const std::string& option,
                                             const std::string& name) const {
    const auto all = managerWithAllClasses(added_);
    std::vector<std::string> names;
    for (const OrbClass* each : all->registeredClasses()) {
        if (each->name() == name) {
            return each;
        }
        names.emplace_back(each->name());
    }
    throw Failure(ExitStatus::usage, std::nullopt,
                  option + ": no updater class is named \"" + name + "\"" +
                      questionForUpdaterClass(name, names) +
                      R"(; "tkppdupdate updaters" lists them ("tkppdupdate )" + commandName_ +
                      R"( --help" tells the usage))");
}

void UpdaterSelection::takeClasses(const std::vector<const OrbClass*>& added) {
    added_ = added;
    for (const std::string& name : onlyNames_) {
        only_.push_back(classNamed("--only", name));
    }
    for (const std::string& name : skippedNames_) {
        skipped_.push_back(classNamed("--skip", name));
    }
    const auto both = std::ranges::find_first_of(only_, skipped_);
    if (both != only_.end()) {
        throw Failure(ExitStatus::usage, std::nullopt,
                      "--only and --skip both name " + std::string((*both)->name()) +
                          "; leave one of them out");
    }
}

std::unique_ptr<OrbPPDConcreteUpdatingManager> UpdaterSelection::makeManager() const {
    auto manager = managerWithAllClasses(added_);
    if (!only_.empty()) {
        const auto all = manager->registeredClasses();
        for (const OrbClass* updaterClass : all) {
            manager->unregisterUpdaterClass(updaterClass);
        }
        for (const OrbClass* updaterClass : only_) {
            manager->registerUpdaterClass(updaterClass);
        }
    }
    for (const OrbClass* updaterClass : skipped_) {
        manager->unregisterUpdaterClass(updaterClass);
    }
    return manager;
}

std::unique_ptr<OrbPPDConcreteUpdatingManager> UpdaterSelection::makeManagerForQueueInUse() const {
    constexpr std::string_view kPageSizeUpdater = "OrbPPDDefaultPageSizeUpdater";
    auto manager = makeManager();
    if (!areOnly(kPageSizeUpdater)) {
        manager->unregisterUpdaterClass(OrbClassFromName(kPageSizeUpdater));
    }
    return manager;
}

}  // namespace TkPPDUpdating
