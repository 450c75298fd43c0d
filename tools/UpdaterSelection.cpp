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
std::string questionForUpdaterClass(const std::string& name) {
    std::vector<std::string> names;
    std::vector<std::string> longer;
    for (const auto classes : {OrbClassTable(), OrbFurtherClassTable()}) {
        for (const OrbClass* updaterClass : classes) {
            names.emplace_back(updaterClass->name());
            if (!name.empty() && names.back().find(name) != std::string::npos) {
                longer.push_back(names.back());
            }
        }
    }
    return longer.size() == 1 ? "; did you mean \"" + longer.front() + "\"?"
                              : questionForSimilarWord(name, names);
}

/// Empty for the name of an updater class, else what is wrong.
std::string complaintAboutClassName(const std::string& name) {
    const OrbClass* updaterClass = OrbClassFromName(name);
    if (updaterClass && updaterClass->conformsToITkPPDUpdater()) {
        return {};
    }
    return "no updater class is named \"" + name + "\"" + questionForUpdaterClass(name) +
           "; \"tkppdupdate updaters\" lists them";
}

}  // namespace

void UpdaterSelection::addTo(CLI::App& subcommand) {
    // One class for each time that the option is given: the argument after it may be the file.
    const auto addClassOption = [&](const std::string& name, std::vector<std::string>& classes,
                                    const std::string& description) {
        subcommand.add_option(name, classes, description)
            ->type_name("CLASS")
            ->allow_extra_args(false)
            ->check(CLI::Validator(complaintAboutClassName, ""));
    };
    addClassOption("--only", only_, "Run just this updater class (may be repeated)");
    addClassOption("--skip", skip_, "Run all but this updater class (may be repeated)");
    subcommand.add_flag("--all-updaters", runAllUpdaters_,
                        "Also run those that the printer did not tell all that they read");
}

bool UpdaterSelection::areOnly(std::string_view className) const {
    return std::ranges::find(only_, className) != only_.end();
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

std::unique_ptr<OrbPPDConcreteUpdatingManager> UpdaterSelection::managerWithAllClasses() {
    auto manager = std::make_unique<OrbPPDConcreteUpdatingManager>();
    for (const OrbClass* updaterClass : OrbFurtherClassTable()) {
        manager->registerUpdaterClass(updaterClass);
    }
    return manager;
}

std::unique_ptr<OrbPPDConcreteUpdatingManager> UpdaterSelection::makeManager() const {
    const auto both = std::ranges::find_first_of(only_, skip_);
    if (both != only_.end()) {
        throw Failure(ExitStatus::usage, std::nullopt,
                      "--only and --skip both name " + *both + "; leave one of them out");
    }
    auto manager = managerWithAllClasses();
    if (!only_.empty()) {
        const auto all = manager->registeredClasses();
        for (const OrbClass* updaterClass : all) {
            manager->unregisterUpdaterClass(updaterClass);
        }
        for (const std::string& name : only_) {
            manager->registerUpdaterClass(OrbClassFromName(name));
        }
    }
    for (const std::string& name : skip_) {
        manager->unregisterUpdaterClass(OrbClassFromName(name));
    }
    return manager;
}

}  // namespace TkPPDUpdating
