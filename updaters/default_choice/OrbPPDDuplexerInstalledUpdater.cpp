#include "updaters/default_choice/OrbPPDDuplexerInstalledUpdater.h"

#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

std::vector<std::string> OrbPPDDuplexerInstalledUpdater::optionNames() {
    return {"ZrAutoDuplexerInstalled"};
}

std::optional<std::string_view> OrbPPDDuplexerInstalledUpdater::statusKeyForOptionWithName(
    std::string_view /*optionName*/) {
    return std::nullopt;
}

std::optional<std::string_view> OrbPPDDuplexerInstalledUpdater::accessoryNameForOptionWithName(
    std::string_view /*optionName*/) {
    return kTkCSDeviceAccessoryDuplexer;
}

std::optional<std::string> OrbPPDDuplexerInstalledUpdater::PPDChoiceTextForStatusValue(
    const StatusValue& value) {
    return choiceTextForInstalledAccessory(value);
}

std::vector<std::string> OrbPPDDuplexerInstalledUpdater::statusEntriesRead() const {
    return {
        OrbCSPartialStatus::entryForPart(kTkCSDeviceAccessoriesKey, kTkCSDeviceAccessoryDuplexer)};
}

}  // namespace TkPPDUpdating
