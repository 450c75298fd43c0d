#include "manager/OrbPPDUpdatingContext.h"

#include <any>
#include <string>
#include <utility>

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kDeviceStatusKey = "TkDeviceStatusInstance";

using DeviceStatus = std::shared_ptr<const OrbCSDeviceStatus>;

}  // namespace

OrbDictionary OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(
    std::shared_ptr<const OrbCSDeviceStatus> deviceStatus, const OrbDictionary* parameters) {
    OrbDictionary context = parameters ? *parameters : OrbDictionary();
    if (deviceStatus) {
        context.insert_or_assign(std::string(kDeviceStatusKey), std::move(deviceStatus));
    }
    return context;
}

std::shared_ptr<const OrbCSDeviceStatus> OrbPPDUpdatingContext::deviceStatusForURI_inContext(
    std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    if (context) {
        const auto entry = context->find(kDeviceStatusKey);
        const auto* kept =
            entry == context->end() ? nullptr : std::any_cast<DeviceStatus>(&entry->second);
        if (kept && *kept) {
            return *kept;
        }
    }
    auto status =
        OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(deviceURI, context, nullptr);
    if (status && context) {
        context->insert_or_assign(std::string(kDeviceStatusKey), status);
    }
    return status;
}

}  // namespace TkPPDUpdating
