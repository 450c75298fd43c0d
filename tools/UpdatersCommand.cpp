#include "tools/UpdatersCommand.h"

#include <set>

#include "backends/ppdmodel/PPDModelFile.h"
#include "tools/PPDOfUser.h"
#include "tools/StandardOutput.h"
#include "tools/UpdaterSelection.h"

namespace TkPPDUpdating {

UpdatersCommand::UpdatersCommand(CLI::App& application, const Backends& backends)
    : Command(application, kName, "List the updater classes, or those that apply to a PPD"),
      backends_(backends) {
    subcommand().add_option("FILE", file_, "The PPD that they shall apply to")->type_name("");
    addModules();
    subcommand().footer(
        "Examples:\n"
        "  tkppdupdate updaters\n"
        "  tkppdupdate updaters office.ppd");
}

ExitStatus UpdatersCommand::run() {
    std::shared_ptr<const PPDModelFile> PPDFile;
    if (file_) {
        PPDFile = PPDOfUser(*file_, textOfUsersPPD(*file_));
    }
    std::set<std::string_view> names;
    const auto manager = UpdaterSelection::managerWithAllClasses(backends_.addedUpdaterClasses());
    resultOf(file_.value_or(""), [&] {
        for (const OrbClass* updaterClass : manager->registeredClasses()) {
            if (!PPDFile || updaterClass->newInstance()->isApplicableForPPDFile(PPDFile.get())) {
                names.insert(updaterClass->name());
            }
        }
    });
    std::string lines;
    for (const std::string_view name : names) {
        lines.append(name).append("\n");
    }
    StandardOutput::write(lines);
    return ExitStatus::done;
}

}  // namespace TkPPDUpdating
