#include "updaters/default_choice/OrbPPDLowerTrayInstalledUpdater.h"

#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {

OrbPPDLowerTrayInstalledUpdater::OrbPPDLowerTrayInstalledUpdater()
    : OrbPPDOneOptionUpdater(
          "ZrLowerTrayInstalled",
          OrbCSPartialStatus::entryForPart(kTkCSDeviceAccessoriesKey, kTkCSDeviceAccessoryTray2)) {}

std::optional<OrbPPDUpdatingValues>
OrbPPDLowerTrayInstalledUpdater::PPDUpdatingValuesForPPDFile_deviceURI_context(
    const OrbPPDFile* PPDFile, std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    const auto* const sensor = OrbPPDFile::firstAttributeForName(PPDFile, "ZrLowerTrayHasSensor");
    if (!sensor || sensor->value() != kTkPPDTrueValue) {
        return std::nullopt;
    }
    return OrbPPDOneOptionUpdater::PPDUpdatingValuesForPPDFile_deviceURI_context(PPDFile, deviceURI,
                                                                                 context);
}

}  // namespace TkPPDUpdating
