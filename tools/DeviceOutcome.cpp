#include "tools/DeviceOutcome.h"

#include "backends/schemes/ReportedDeviceStatus.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"

namespace TkPPDUpdating {

CLI::Option* DeviceOutcome::addTo(CLI::App& subcommand, CLI::App& group) {
    CLI::Option* device =
        group
            .add_option("--device-uri", deviceURI_,
                        "The printer whose status is used; file:PATH names a recorded status")
            ->type_name("URI");
    subcommand
        .add_flag("--require-device", isRequired_,
                  "Fail with exit status 3 when the printer gives no status")
        ->needs(device);
    return device;
}

std::shared_ptr<const OrbCSDeviceStatus> DeviceOutcome::status(
    const OrbDictionary& parameters) const {
    return OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(deviceURI_, &parameters,
                                                                   nullptr);
}

std::string DeviceOutcome::reasonForSilence(const OneAnswerServices& devices) const {
    const auto answer = devices.answerOfDevice(deviceURI_);
    return Diagnostics::nameOfDevice(deviceURI_) + " gave no status" +
           (answer && !answer->error.reason.empty() ? ": " + answer->error.reason : "");
}

void DeviceOutcome::report(const std::string& place, const OneAnswerServices& devices,
                           const OrbDictionary& parameters) const {
    if (isRequired_) {
        (void)status(parameters);
    }
    const auto answer = devices.answerOfDevice(deviceURI_);
    if (!answer) {
        return;
    }
    if (!answer->status && isRequired_) {
        throw Failure(ExitStatus::deviceSilent, place, reasonForSilence(devices));
    }
    if (!answer->status) {
        Diagnostics::warning(place, reasonForSilence(devices));
        return;
    }
    for (const std::string& dropped : ReportedDeviceStatus::droppedValuesOf(*answer->status)) {
        Diagnostics::warning(place, Diagnostics::nameOfDevice(deviceURI_) + ": " + dropped);
    }
}

}  // namespace TkPPDUpdating
