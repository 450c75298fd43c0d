#include "c_interface/Sources.h"

#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "backends/modules/BackendModules.h"
#include "backends/recorded/RecordedDeviceStatus.h"
#include "c_interface/Answer.h"
#include "c_interface/Arguments.h"
#include "c_interface/Failure.h"
#include "core_interface/OrbCSError.h"
#ifdef TKPPDUPDATING_WITH_CUPS
#include "sync/QueuePPDSource.h"
#endif

namespace TkPPDUpdating {

namespace {

std::shared_ptr<const OrbCSDeviceStatus> recordedStatus(std::string_view recording) {
    std::string reason;
    auto status = RecordedDeviceStatus::statusWithJSON(recording, reason);
    if (!status) {
        const bool isSilence = reason == RecordedDeviceStatus::kSilence;
        throw CFailure(isSilence ? TkPPDUpdatingNoStatus : TkPPDUpdatingBadRecording,
                       "recording: " + reason);
    }
    return status;
}

std::shared_ptr<const OrbCSDeviceStatus> askedStatus(const TkPPDUpdatingStatusSource& source) {
    TkPPDUpdatingAnswer answer;
    if (source.function(source.context, &answer) != 0) {
        throw CFailure(TkPPDUpdatingNoStatus, "the function gave no status");
    }
    if (!answer.text) {
        throw CFailure(TkPPDUpdatingCallFailed, "the function set no text as its answer");
    }
    return recordedStatus(*answer.text);
}

std::string_view checkedRecording(const TkPPDUpdatingStatusSource& source) {
    return checkedText(source.text, "recording", TkPPDUpdatingMostBytesOfText);
}

TkPPDUpdatingResult resultOf(OrbCSError::Cause cause) {
    switch (cause) {
        case OrbCSError::Cause::malformedURI:
        case OrbCSError::Cause::noBackend:
            return TkPPDUpdatingBadDeviceURI;
        case OrbCSError::Cause::unreadableRecording:
            return TkPPDUpdatingBadRecording;
        default:
            return TkPPDUpdatingNoStatus;
    }
}

std::shared_ptr<const OrbCSDeviceStatus> deviceStatus(std::string_view URI,
                                                      const DeviceStatusSchemes& schemes,
                                                      const OrbDictionary& parameters) {
    OrbCSError error;
    auto status = schemes.deviceStatusWithURI_parameters_error(URI, &parameters, &error);
    if (!status) {
        throw CFailure(resultOf(error.cause), "device URI: " + error.reason);
    }
    return status;
}

/// The kind as the number that a C program has put there: one that names no kind is no value of the
/// enumeration, and must not be read as one.
int kindOf(const TkPPDUpdatingStatusSource& source) {
    int kind = 0;
    static_assert(sizeof kind == sizeof source.kind);
    std::memcpy(&kind, &source.kind, sizeof kind);
    return kind;
}

}  // namespace

std::shared_ptr<const DeviceStatusSchemes> CSources::schemes() {
    auto schemes = std::make_shared<DeviceStatusSchemes>();
    registerRecordedDeviceStatus(*schemes);
#ifdef TKPPDUPDATING_WITH_CUPS
    registerSchemesOfModule(*schemes, "ipp", {"ipp", "ipps", "dnssd"}, nullptr);
#endif
#ifdef TKPPDUPDATING_WITH_SNMP
    registerSchemesOfModule(*schemes, "snmp", {"snmp"}, nullptr);
#endif
    return schemes;
}

PPDModelCore::QueuePPDSource CSources::queuePPDSource() {
#ifdef TKPPDUPDATING_WITH_CUPS
    return [](const std::string& queueName, std::string& reason) -> std::optional<PPDText> {
        const std::shared_ptr<const QueueScheduler> scheduler =
            schedulerOfModule("cups", {}, nullptr, reason);
        return scheduler ? TkPPDUpdating::queuePPDSource(scheduler)(queueName, reason)
                         : std::nullopt;
    };
#else
    return nullptr;
#endif
}

void CSources::check(const TkPPDUpdatingStatusSource& source, const DeviceStatusSchemes& schemes) {
    const int kind = kindOf(source);
    switch (kind) {
        case TkPPDUpdatingFromDeviceURI: {
            const std::string_view URI = checkedName(source.text, "device URI");
            if (const auto error = schemes.errorInURI(URI)) {
                throw CFailure(TkPPDUpdatingBadDeviceURI, "device URI: " + error->reason);
            }
            return;
        }
        case TkPPDUpdatingFromRecording:
            recordedStatus(checkedRecording(source));
            return;
        case TkPPDUpdatingFromFunction:
            if (!source.function) {
                throw CFailure(TkPPDUpdatingBadArgument, "source: its function is null");
            }
            return;
        default:
            throw CFailure(TkPPDUpdatingBadArgument,
                           "source: there is no kind " + std::to_string(kind));
    }
}

std::shared_ptr<const OrbCSDeviceStatus> CSources::status(const TkPPDUpdatingStatusSource& source,
                                                          const DeviceStatusSchemes& schemes,
                                                          const OrbDictionary& parameters) {
    if (source.kind == TkPPDUpdatingFromDeviceURI) {
        return deviceStatus(checkedName(source.text, "device URI"), schemes, parameters);
    }
    return source.kind == TkPPDUpdatingFromRecording ? recordedStatus(checkedRecording(source))
                                                     : askedStatus(source);
}

}  // namespace TkPPDUpdating
