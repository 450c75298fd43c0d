#include "tools/DeviceInquiry.h"

#include "backends/schemes/ReportedDeviceStatus.h"
#include "tools/DeviceURIMistake.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"

namespace TkPPDUpdating {

CLI::Option* DeviceInquiry::addTo(CLI::App& subcommand, CLI::App& group) {
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

void DeviceInquiry::refuseMistake(const Backends& backends) const {
    refuseMistakenDeviceURI(backends, deviceURI_);
}

std::shared_ptr<const OrbCSDeviceStatus> DeviceInquiry::status(const std::string& place,
                                                               const OrbDictionary& parameters,
                                                               Silence silence) const {
    OrbCSError error;
    auto status =
        OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(deviceURI_, &parameters, &error);
    const std::string name = Diagnostics::nameOfDevice(deviceURI_);
    if (!status) {
        const std::string reason =
            name + " gave no status" + (error.reason.empty() ? "" : ": " + error.reason);
        if (isRequired_ || silence == Silence::isFailure) {
            throw Failure(ExitStatus::deviceSilent, place, reason);
        }
        Diagnostics::warning(place, reason);
        return nullptr;
    }
    for (const std::string& dropped : ReportedDeviceStatus::droppedValuesOf(*status)) {
        Diagnostics::warning(place, name + ": " + dropped);
    }
    return status;
}

}  // namespace TkPPDUpdating
