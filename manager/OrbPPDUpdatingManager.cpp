#include "manager/OrbPPDUpdatingManager.h"

#include "core_interface/OrbInvalidOperationError.h"

namespace TkPPDUpdating {

namespace {

OrbInvalidOperationError notImplemented(std::string_view operation) {
    return {"OrbPPDUpdatingManager", operation};
}

}  // namespace

PPDText OrbPPDUpdatingManager::updatedPPDContentsForFile_deviceURI(
    const std::string& /*path*/, std::optional<std::string_view> /*deviceURI*/) {
    throw notImplemented("updatedPPDContentsForFile_deviceURI");
}

PPDText OrbPPDUpdatingManager::updatedPPDContentsForFile_queueName(
    const std::string& /*path*/, const std::optional<std::string>& /*queueName*/) {
    throw notImplemented("updatedPPDContentsForFile_queueName");
}

std::optional<OrbPPDUpdatingValues>
OrbPPDUpdatingManager::PPDUpdatingValuesForQueueWithName_deviceURI(
    const std::optional<std::string>& /*queueName*/,
    std::optional<std::string_view> /*deviceURI*/) {
    throw notImplemented("PPDUpdatingValuesForQueueWithName_deviceURI");
}

std::optional<OrbPPDUpdatingValues>
OrbPPDUpdatingManager::PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
    // NOLINTNEXTLINE(performance-unnecessary-value-param): what overrides it may keep the status.
    std::shared_ptr<const OrbCSDeviceStatus> /*deviceStatus*/,
    std::optional<std::string_view> /*deviceURI*/, const OrbPPDFile* /*PPDFile*/) {
    throw notImplemented("PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile");
}

bool OrbPPDUpdatingManager::registerUpdaterClass(const OrbClass* /*updaterClass*/) {
    throw notImplemented("registerUpdaterClass");
}

void OrbPPDUpdatingManager::unregisterUpdaterClass(const OrbClass* /*updaterClass*/) {
    throw notImplemented("unregisterUpdaterClass");
}

}  // namespace TkPPDUpdating
