#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "backends/ppdmodel/PPDModelFile.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"

namespace TkPPDUpdating {

/// What an updated PPD has to fulfil before it replaces the one of a queue.
class InstallationChecks {
  public:
    InstallationChecks() = delete;

    /// The options whose defaults belong to an updater of the manager that applies to the PPD:
    /// `OrbPPDDefaultChoiceUpdater`s, built in or not, tell them themselves. All other defaults are
    /// the user's.
    static std::set<std::string, std::less<>> ownedOptions(
        const OrbPPDConcreteUpdatingManager& manager, const OrbPPDFile& PPD);

    /// Why `after` may not be installed, or nothing when it may: it has a line that begins with
    /// cupsFilter, cupsPreFilter, cupsPortMonitor, APPrinterPreset or FoomaticRIP, which name
    /// programs to run, and that `before` has not; or the default of an option that is not in
    /// `owned` is another, or gone, or names a choice that is gone. An option of the two-sided
    /// printing group may go as a whole, which is how the capability updaters take the duplex unit
    /// away.
    static std::optional<std::string> reasonNotToInstall(
        const PPDModelFile& before, const PPDModelFile& after,
        const std::set<std::string, std::less<>>& owned);
};

}  // namespace TkPPDUpdating
