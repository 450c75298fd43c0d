#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "manager/OrbClass.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "sync/PPDUpdate.h"

namespace TkPPDUpdating {

/// Selects the updaters of a run by the options that every command takes that runs them: which
/// classes take part, and whether also those to which the printer did not tell all that they read.
class UpdaterSelection {
  public:
    void addTo(CLI::App& subcommand);

    /// A manager with all updater classes of the library, also those that it has not by itself, and
    /// those that modules have added.
    static std::unique_ptr<OrbPPDConcreteUpdatingManager> managerWithAllClasses(
        const std::vector<const OrbClass*>& added);

    /// Finds the classes that the options name, among the built-in ones and those that modules have
    /// added. Raises a `Failure` of usage when there is none of a name, or one is both taken and
    /// left out. Before the others.
    void takeClasses(const std::vector<const OrbClass*>& added);

    /// A manager with the classes that the user wants.
    std::unique_ptr<OrbPPDConcreteUpdatingManager> makeManager() const;

    /// The same without the default page size, unless the user asked for just that class: it is for
    /// a new queue, and afterwards the paper is what the queue's users have chosen.
    std::unique_ptr<OrbPPDConcreteUpdatingManager> makeManagerForQueueInUse() const;

    /// Ends the command when the time of the last update that the user's environment gives could
    /// not stand in a line of the PPD: the updaters write it as it is.
    static void refuseUnwritableUpdateTime();

    PPDUpdate::Rule rule() const {
        return runAllUpdaters_ ? PPDUpdate::Rule::allUpdatersRun
                               : PPDUpdate::Rule::whatWasNotToldStays;
    }

  private:
    /// Whether the user asked for this class with --only.
    bool areOnly(std::string_view className) const;
    /// Raises a `Failure` of usage when there is none of that name.
    const OrbClass* classNamed(const std::string& option, const std::string& name) const;

    std::string commandName_;
    std::vector<std::string> onlyNames_;
    std::vector<std::string> skippedNames_;
    std::vector<const OrbClass*> added_;
    std::vector<const OrbClass*> only_;
    std::vector<const OrbClass*> skipped_;
    bool runAllUpdaters_ = false;
};

}  // namespace TkPPDUpdating
