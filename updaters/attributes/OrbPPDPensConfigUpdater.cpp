#include "updaters/attributes/OrbPPDPensConfigUpdater.h"

#include <array>

#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbPPDUpdatingContext.h"

namespace TkPPDUpdating {

namespace {

std::string valueForName(const OrbCSPensConfiguration* configuration, std::string_view name) {
    if (!configuration) {
        return {};
    }
    const auto value = configuration->PPDAttributeValues.find(name);
    return value == configuration->PPDAttributeValues.end() ? std::string() : value->second;
}

}  // namespace

std::optional<OrbPPDUpdatingValues> OrbPPDPensConfigUpdater::attributesFromDeviceWithURI_context(
    std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    const auto status = OrbPPDUpdatingContext::deviceStatusForURI_inContext(deviceURI, context);
    if (!status || attributeNames().empty()) {
        return std::nullopt;
    }
    const auto* configuration =
        status->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey);
    OrbPPDUpdatingValues values;
    for (const std::string_view name : attributeNames()) {
        values.emplace(name, valueForName(configuration, name));
    }
    return values;
}

std::vector<std::string> OrbPPDPensConfigUpdater::statusEntriesRead() const {
    std::vector<std::string> entries;
    for (const std::string_view name : attributeNames()) {
        entries.push_back(
            OrbCSPartialStatus::entryForPart(kTkCSInstalledPensConfigurationKey, name));
    }
    return entries;
}

std::span<const std::string_view> OrbPPDPensConfigNameUpdater::attributeNames() const {
    static constexpr std::array<std::string_view, 1> kAttributeNames = {kTkCSPPDPensConfigNameKey};
    return kAttributeNames;
}

std::span<const std::string_view> OrbPPDPensConfigFamilyIDUpdater::attributeNames() const {
    static constexpr std::array<std::string_view, 1> kAttributeNames = {kTkCSPPDPenFamilyIDsKey};
    return kAttributeNames;
}

std::span<const std::string_view> OrbPPDPensConfigCSLInfoUpdater::attributeNames() const {
    static constexpr std::array<std::string_view, 3> kAttributeNames = {
        kTkCSPPDPenDyesKey, kTkCSPPDPenDropVolumesKey, kTkCSPPDPenEverydayStatusKey};
    return kAttributeNames;
}

std::span<const std::string_view> OrbPPDPensConfigAdditionalInfoUpdater::attributeNames() const {
    static constexpr std::array<std::string_view, 5> kAttributeNames = {
        kTkCSPPDPenActualDropVolumesKey, kTkCSPPDPenNominalDropVolumesKey,
        kTkCSPPDPenBriskDropVolumesKey, kTkCSPPDPenInkSufficientKey,
        kTkCSPPDPenHasPrintheadDefectKey};
    return kAttributeNames;
}

}  // namespace TkPPDUpdating
