#pragma once

#include <optional>
#include <string_view>

#include "updaters/default_choice/OrbPPDOneOptionUpdater.h"

namespace TkPPDUpdating {

/// Sets the default of the installable option "ZrLowerTrayInstalled" to whether the printer has its
/// lower (second) tray installed.
class OrbPPDLowerTrayInstalledUpdater : public OrbPPDOneOptionUpdater {
  public:
    static constexpr std::string_view kClassName = "OrbPPDLowerTrayInstalledUpdater";

    OrbPPDLowerTrayInstalledUpdater();

    /// As inherited, but nothing unless the first "ZrLowerTrayHasSensor" of the PPD is "True".
    ///
    /// Only a sensor lets the printer know by itself, so only then is the value told to callers.
    /// The text is updated without a look at the sensor, and that is meant so.
    std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForPPDFile_deviceURI_context(
        const OrbPPDFile* PPDFile, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override;
};

}  // namespace TkPPDUpdating
