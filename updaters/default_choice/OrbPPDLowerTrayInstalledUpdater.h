#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "manager/ITkPPDStatusReading.h"
#include "updaters/default_choice/OrbPPDStatusBasedOptionsUpdater.h"

namespace TkPPDUpdating {

/// Sets the default of the installable option "ZrLowerTrayInstalled" to whether the printer has its
/// lower (second) tray installed.
class OrbPPDLowerTrayInstalledUpdater : public OrbPPDStatusBasedOptionsUpdater,
                                        public ITkPPDStatusReading {
  public:
    static constexpr std::string_view kClassName = "OrbPPDLowerTrayInstalledUpdater";

    std::vector<std::string> optionNames() override;
    std::optional<std::string_view> statusKeyForOptionWithName(
        std::string_view optionName) override;
    std::optional<std::string_view> accessoryNameForOptionWithName(
        std::string_view optionName) override;
    std::optional<std::string> PPDChoiceTextForStatusValue(const StatusValue& value) override;

    /// As inherited, but nothing unless the first "ZrLowerTrayHasSensor" of the PPD is "True".
    ///
    /// Only a sensor lets the printer know by itself, so only then is the value told to callers.
    /// The text is updated without a look at the sensor, and that is meant so.
    std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForPPDFile_deviceURI_context(
        const OrbPPDFile* PPDFile, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override;

    std::vector<std::string> statusEntriesRead() const override;
};

}  // namespace TkPPDUpdating
