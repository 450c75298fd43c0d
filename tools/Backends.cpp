#include "tools/Backends.h"

#include "backends/recorded/RecordedDeviceStatus.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "core_interface/OrbCoreInterface.h"
#ifdef TKPPDUPDATING_WITH_CUPS
#include "backends/cups/CUPSScheduler.h"
#include "backends/cups/IPPDeviceStatus.h"
#include "tools/InterruptionWatch.h"
#endif

namespace TkPPDUpdating {

namespace {

std::shared_ptr<const TkCommunicationServices> builtInSchemes() {
    auto schemes = std::make_shared<DeviceStatusSchemes>();
    registerRecordedDeviceStatus(*schemes);
#ifdef TKPPDUPDATING_WITH_CUPS
    IPPDeviceStatusLimits limits;
    limits.isCancelled = &InterruptionWatch::isInterrupted();
    registerCUPSDeviceStatus(*schemes, limits);
#endif
    return schemes;
}

/// The scheduler's PPDs where the tool can ask it; else only those in the server root are found.
PPDModelCore::QueuePPDSource builtInQueuePPDSource() {
#ifdef TKPPDUPDATING_WITH_CUPS
    return queuePPDSource(std::make_shared<const CUPSScheduler>());
#else
    return nullptr;
#endif
}

}  // namespace

Backends::Backends()
    : core_(std::make_shared<const PPDModelCore>(builtInQueuePPDSource())),
      devices_(std::make_shared<const OneAnswerServices>(builtInSchemes())) {
    OrbCoreInterface::setCore(core_);
    OrbCoreInterface::setCommunicationServices(devices_);
}

}  // namespace TkPPDUpdating
