#pragma once

#include <string>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCSDeviceStatus.h"
#include "sync/InstallableOptions.h"
#include "sync/InstalledOptionAnswers.h"

namespace TkPPDUpdating {

/// The installable options of a PPD that say no more than an accessory of the printer does, by
/// rules about their texts (resources/TkPPDUpdatingInstallableOptions.plist).
class OptionsOfAccessories {
  public:
    /// When the rules cannot be read there are none: such options then stay as they are.
    explicit OptionsOfAccessories(const PPDModelFile& PPD);

    bool areNone() const { return options_.empty(); }

    /// What the status tells about them; those of accessories that it does not tell of are left
    /// out.
    std::vector<InstalledOptionAnswer> answersOfStatus(const OrbCSDeviceStatus& status) const;

  private:
    struct Option {
        InstallableOption option;
        std::string accessory;
        std::string installed;
        std::string notInstalled;
    };

    std::vector<Option> options_;
};

}  // namespace TkPPDUpdating
