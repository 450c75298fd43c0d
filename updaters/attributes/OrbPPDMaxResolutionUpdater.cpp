#include "updaters/attributes/OrbPPDMaxResolutionUpdater.h"

#include <array>

#include "core_interface/TkCSKeys.h"
#include "manager/OrbPPDUpdatingContext.h"

namespace TkPPDUpdating {

namespace {

constexpr std::array<std::string_view, 1> kAttributeNames = {"ZrMaxSupportedResolution"};

}  // namespace

std::span<const std::string_view> OrbPPDMaxResolutionUpdater::attributeNames() const {
    return kAttributeNames;
}

std::optional<OrbPPDUpdatingValues> OrbPPDMaxResolutionUpdater::attributesFromDeviceWithURI_context(
    std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    const auto status = OrbPPDUpdatingContext::deviceStatusForURI_inContext(deviceURI, context);
    const auto* resolution =
        status ? status->statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey)
               : nullptr;
    if (!resolution) {
        return std::nullopt;
    }
    return OrbPPDUpdatingValues{{std::string(kAttributeNames.front()), resolution->stringValue()}};
}

std::vector<std::string> OrbPPDMaxResolutionUpdater::statusEntriesRead() const {
    return {std::string(kTkCSMaxSupportedResolutionKey)};
}

}  // namespace TkPPDUpdating
