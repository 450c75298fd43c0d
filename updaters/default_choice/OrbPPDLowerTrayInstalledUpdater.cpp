#include "updaters/default_choice/OrbPPDLowerTrayInstalledUpdater.h"

#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {

std::vector<std::string> OrbPPDLowerTrayInstalledUpdater::optionNames() {
    return {"ZrLowerTrayInstalled"};
}

std::optional<std::string_view> OrbPPDLowerTrayInstalledUpdater::statusKeyForOptionWithName(
    std::string_view /*optionName*/) {
    return std::nullopt;
}

std::optional<std::string_view> OrbPPDLowerTrayInstalledUpdater::accessoryNameForOptionWithName(
    std::string_view /*optionName*/) {
    return kTkCSDeviceAccessoryTray2;
}

std::optional<std::string> OrbPPDLowerTrayInstalledUpdater::PPDChoiceTextForStatusValue(
    const StatusValue& value) {
    return choiceTextForInstalledAccessory(value);
}

std::optional<OrbPPDUpdatingValues>
OrbPPDLowerTrayInstalledUpdater::PPDUpdatingValuesForPPDFile_deviceURI_context(
    const OrbPPDFile* PPDFile, std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    const auto* const sensor = OrbPPDFile::firstAttributeForName(PPDFile, "ZrLowerTrayHasSensor");
    if (!sensor || sensor->value() != kTkPPDTrueValue) {
        return std::nullopt;
    }
    return OrbPPDStatusBasedOptionsUpdater::PPDUpdatingValuesForPPDFile_deviceURI_context(
        PPDFile, deviceURI, context);
}

std::vector<std::string> OrbPPDLowerTrayInstalledUpdater::statusEntriesRead() const {
    return {OrbCSPartialStatus::entryForPart(kTkCSDeviceAccessoriesKey, kTkCSDeviceAccessoryTray2)};
}

}  // namespace TkPPDUpdating
