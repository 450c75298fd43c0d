#include "tools/Backends.h"

#include "backends/modules/BackendModules.h"
#include "backends/recorded/RecordedDeviceStatus.h"
#include "core_interface/OrbCoreInterface.h"
#include "tools/InterruptionWatch.h"
#ifdef TKPPDUPDATING_WITH_CUPS
#include "sync/QueuePPDSource.h"
#endif

namespace TkPPDUpdating {

namespace {

std::shared_ptr<DeviceStatusSchemes> builtInSchemes() {
    auto schemes = std::make_shared<DeviceStatusSchemes>();
    registerRecordedDeviceStatus(*schemes);
#ifdef TKPPDUPDATING_WITH_CUPS
    registerSchemesOfModule(*schemes, "ipp", {"ipp", "ipps", "dnssd"},
                            &InterruptionWatch::isInterrupted());
#endif
#ifdef TKPPDUPDATING_WITH_SNMP
    registerSchemesOfModule(*schemes, "snmp", {"snmp"}, &InterruptionWatch::isInterrupted());
#endif
    return schemes;
}

/// The scheduler's PPDs where the tool can ask it; else only those in the server root are found.
PPDModelCore::QueuePPDSource builtInQueuePPDSource() {
#ifdef TKPPDUPDATING_WITH_CUPS
    return [](const std::string& queueName, std::string& reason) -> std::optional<PPDText> {
        const std::shared_ptr<const QueueScheduler> scheduler =
            Backends::scheduler({}, nullptr, reason);
        auto PPD = scheduler ? queuePPDSource(scheduler)(queueName, reason) : std::nullopt;
        if (scheduler && !PPD) {
            reason.insert(0, scheduler->name() + ": ");
        }
        return PPD;
    };
#else
    return nullptr;
#endif
}

}  // namespace

Backends::Backends()
    : core_(std::make_shared<const PPDModelCore>(builtInQueuePPDSource())),
      schemes_(builtInSchemes()),
      devices_(std::make_shared<const OneAnswerServices>(schemes_)) {
    OrbCoreInterface::setCore(core_);
    OrbCoreInterface::setCommunicationServices(devices_);
}

std::shared_ptr<const TkCommunicationServices> Backends::postScriptPrinters() {
    auto schemes = std::make_shared<DeviceStatusSchemes>();
    registerSchemesOfModule(*schemes, "postscript", {"socket"},
                            &InterruptionWatch::isInterrupted());
    return schemes;
}

#ifdef TKPPDUPDATING_WITH_CUPS
std::unique_ptr<const QueueScheduler> Backends::scheduler(const std::string& server,
                                                          const std::atomic<bool>* isCancelled,
                                                          std::string& error) {
    return schedulerOfModule("cups", server, isCancelled, error);
}
#endif

std::optional<OrbCSError> Backends::mistakeInDeviceURI(const std::string& deviceURI) const {
    using Cause = OrbCSError::Cause;
    if (auto error = schemes_->errorInURI(deviceURI)) {
        return error;
    }
    // A recording is on this machine: it is read at once, so that its mistakes are found whoever
    // needs it.
    OrbCSError error;
    const bool isMistaken =
        DeviceStatusSchemes::schemeOfURI(deviceURI) == "file" &&
        !devices_->deviceStatusWithURI_parameters_error(deviceURI, nullptr, &error) &&
        (error.cause == Cause::unreadableRecording || error.cause == Cause::malformedURI);
    return isMistaken ? std::optional(error) : std::nullopt;
}

}  // namespace TkPPDUpdating
