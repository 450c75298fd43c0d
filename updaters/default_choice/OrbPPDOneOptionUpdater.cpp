#include "updaters/default_choice/OrbPPDOneOptionUpdater.h"

#include <algorithm>
#include <variant>

#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

std::string_view keyOf(std::string_view entry) {
    return entry.substr(0, entry.find('.'));
}

std::string_view partOf(std::string_view entry) {
    return entry.substr(std::min(keyOf(entry).size() + 1, entry.size()));
}

bool isAccessory(std::string_view entry) {
    return keyOf(entry) == kTkCSDeviceAccessoriesKey && !partOf(entry).empty();
}

}  // namespace

OrbPPDOneOptionUpdater::OrbPPDOneOptionUpdater(std::string_view optionName,
                                               std::string_view statusEntry)
    : optionName_(optionName), statusEntry_(statusEntry) {}

std::vector<std::string> OrbPPDOneOptionUpdater::optionNames() {
    return {optionName_};
}

std::optional<std::string_view> OrbPPDOneOptionUpdater::statusKeyForOptionWithName(
    std::string_view /*optionName*/) {
    return isAccessory(statusEntry_) ? std::nullopt : std::optional(keyOf(statusEntry_));
}

std::optional<std::string_view> OrbPPDOneOptionUpdater::accessoryNameForOptionWithName(
    std::string_view /*optionName*/) {
    return isAccessory(statusEntry_) ? std::optional(partOf(statusEntry_)) : std::nullopt;
}

std::optional<std::string> OrbPPDOneOptionUpdater::PPDChoiceTextForStatusValue(
    const StatusValue& value) {
    const auto* const* reported = std::get_if<const OrbCSStatusValue*>(&value);
    if (!reported || isAccessory(statusEntry_)) {
        return choiceTextForInstalledAccessory(value);
    }
    const auto* const scalar = std::get_if<OrbCSNumberOrString>(*reported);
    return scalar ? std::optional(scalar->stringValue()) : std::nullopt;
}

std::vector<std::string> OrbPPDOneOptionUpdater::statusEntriesRead() const {
    return {statusEntry_};
}

}  // namespace TkPPDUpdating
