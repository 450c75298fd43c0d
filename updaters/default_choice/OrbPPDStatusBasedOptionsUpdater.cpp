#include "updaters/default_choice/OrbPPDStatusBasedOptionsUpdater.h"

#include <algorithm>

#include "core_interface/OrbInvalidOperationError.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {
namespace {

/// Whether the first accessory of that name is installed; nothing when there is none of that name.
std::optional<bool> isAccessoryInstalled(std::string_view accessoryName,
                                         const OrbCSDeviceStatus& deviceStatus) {
    const auto* accessories =
        deviceStatus.statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey);
    if (!accessories) {
        return std::nullopt;
    }
    const auto accessory = std::find_if(
        accessories->begin(), accessories->end(),
        [accessoryName](const OrbCSDeviceAccessory& each) { return each.name == accessoryName; });
    return accessory == accessories->end() ? std::nullopt : std::optional(accessory->isInstalled);
}

}  // namespace

std::optional<std::string_view> OrbPPDStatusBasedOptionsUpdater::statusKeyForOptionWithName(
    std::string_view /*optionName*/) {
    throw OrbInvalidOperationError(kClassName, "statusKeyForOptionWithName");
}

std::optional<std::string_view> OrbPPDStatusBasedOptionsUpdater::accessoryNameForOptionWithName(
    std::string_view /*optionName*/) {
    throw OrbInvalidOperationError(kClassName, "accessoryNameForOptionWithName");
}

std::optional<std::string> OrbPPDStatusBasedOptionsUpdater::PPDChoiceTextForStatusValue(
    const StatusValue& /*value*/) {
    throw OrbInvalidOperationError(kClassName, "PPDChoiceTextForStatusValue");
}

std::optional<OrbPPDDefaultChoices>
OrbPPDStatusBasedOptionsUpdater::defaultChoicesFromDeviceWithURI_context(
    std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    const auto deviceStatus =
        OrbPPDUpdatingContext::deviceStatusForURI_inContext(deviceURI, context);
    if (!deviceStatus) {
        return std::nullopt;
    }
    OrbPPDDefaultChoices choices;
    for (std::string& optionName : optionNames()) {
        const auto value = statusValueForOptionWithName(optionName, *deviceStatus);
        if (!value) {
            return std::nullopt;
        }
        if (auto choice = PPDChoiceTextForStatusValue(*value)) {
            choices.insert_or_assign(std::move(optionName), *std::move(choice));
        }
    }
    return choices;
}

std::optional<OrbPPDStatusBasedOptionsUpdater::StatusValue>
OrbPPDStatusBasedOptionsUpdater::statusValueForOptionWithName(
    std::string_view optionName, const OrbCSDeviceStatus& deviceStatus) {
    if (const auto key = statusKeyForOptionWithName(optionName)) {
        const OrbCSStatusValue* value = deviceStatus.statusValueForKey_error(*key, nullptr);
        return value ? std::optional<StatusValue>(value) : std::nullopt;
    }
    const auto accessoryName = accessoryNameForOptionWithName(optionName);
    const auto isInstalled =
        accessoryName ? isAccessoryInstalled(*accessoryName, deviceStatus) : std::nullopt;
    return isInstalled ? std::optional<StatusValue>(*isInstalled) : std::nullopt;
}

std::string OrbPPDStatusBasedOptionsUpdater::choiceTextForInstalledAccessory(
    const StatusValue& value) {
    const bool* isInstalled = std::get_if<bool>(&value);
    return std::string(isInstalled && *isInstalled ? kTkPPDTrueValue : kTkPPDFalseValue);
}

}  // namespace TkPPDUpdating
