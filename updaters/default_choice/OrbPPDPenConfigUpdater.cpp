#include "updaters/default_choice/OrbPPDPenConfigUpdater.h"

#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

std::vector<std::string> OrbPPDPenConfigUpdater::optionNames() {
    return {"ZrPenConfig", "ZrPenConfigOptions"};
}

std::optional<std::string_view> OrbPPDPenConfigUpdater::statusKeyForOptionWithName(
    std::string_view /*optionName*/) {
    return kTkCSInstalledPensConfigurationKey;
}

std::optional<std::string_view> OrbPPDPenConfigUpdater::accessoryNameForOptionWithName(
    std::string_view /*optionName*/) {
    return std::nullopt;
}

std::optional<std::string> OrbPPDPenConfigUpdater::PPDChoiceTextForStatusValue(
    const StatusValue& value) {
    const auto* const* status = std::get_if<const OrbCSStatusValue*>(&value);
    const auto* pens = status ? std::get_if<OrbCSPensConfiguration>(*status) : nullptr;
    return pens ? pens->codeName : std::nullopt;
}

std::vector<std::string> OrbPPDPenConfigUpdater::statusEntriesRead() const {
    return {OrbCSPartialStatus::entryForPart(kTkCSInstalledPensConfigurationKey,
                                             kTkCSPensCodeNamePart)};
}

}  // namespace TkPPDUpdating
