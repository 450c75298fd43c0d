#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "sync/PPDUpdate.h"

namespace TkPPDUpdating {

/// Selects the updaters of a run by the options that every command takes that runs them: which
/// classes take part, and whether also those to which the printer did not tell all that they read.
class UpdaterSelection {
  public:
    void addTo(CLI::App& subcommand);

    /// A manager with all updater classes of the library, also those that it has not by itself.
    static std::unique_ptr<OrbPPDConcreteUpdatingManager> managerWithAllClasses();

    /// A manager with the classes that the user wants.
    std::unique_ptr<OrbPPDConcreteUpdatingManager> makeManager() const;

    /// Whether the user asked for this class with --only.
    bool areOnly(std::string_view className) const;

    /// Ends the command when the time of the last update that the user's environment gives could
    /// not stand in a line of the PPD: the updaters write it as it is.
    static void refuseUnwritableUpdateTime();

    PPDUpdate::Rule rule() const {
        return runAllUpdaters_ ? PPDUpdate::Rule::allUpdatersRun
                               : PPDUpdate::Rule::whatWasNotToldStays;
    }

  private:
    std::vector<std::string> only_;
    std::vector<std::string> skip_;
    bool runAllUpdaters_ = false;
};

}  // namespace TkPPDUpdating
