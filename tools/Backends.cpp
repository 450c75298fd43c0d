#include "tools/Backends.h"

#include "backends/recorded/RecordedDeviceStatus.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "core_interface/OrbCoreInterface.h"

namespace TkPPDUpdating {

namespace {

std::shared_ptr<const TkCommunicationServices> builtInSchemes() {
    auto schemes = std::make_shared<DeviceStatusSchemes>();
    registerRecordedDeviceStatus(*schemes);
    return schemes;
}

}  // namespace

Backends::Backends()
    : core_(std::make_shared<const PPDModelCore>()),
      devices_(std::make_shared<const OneAnswerServices>(builtInSchemes())) {
    OrbCoreInterface::setCore(core_);
    OrbCoreInterface::setCommunicationServices(devices_);
}

std::vector<std::string> Backends::droppedTexts(const OrbCSDeviceStatus& status) {
    const auto* recorded = dynamic_cast<const RecordedDeviceStatus*>(&status);
    return recorded ? recorded->droppedTexts() : std::vector<std::string>();
}

}  // namespace TkPPDUpdating
