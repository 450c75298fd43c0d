#include "tools/StatusCommand.h"

#include "backends/recorded/RecordedDeviceStatus.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSDeviceStatus.h"
#include "tools/DeviceURIMistake.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"
#include "tools/NextStep.h"
#include "tools/StandardOutput.h"

namespace TkPPDUpdating {

StatusCommand::StatusCommand(CLI::App& application, const Backends& backends)
    : Command(application, kName, "Write what a printer reports, as a recorded status"),
      backends_(backends) {
    subcommand()
        .add_option("URI", deviceURI_, "The printer; file:PATH names a recorded status")
        ->required()
        ->type_name("");
    addModules();
    subcommand().footer(
        "Examples:\n"
        "  tkppdupdate status ipp://192.168.1.5/ipp/print >office.json\n"
        "  tkppdupdate status snmp://192.168.1.5");
}

ExitStatus StatusCommand::run() {
    refuseMistakenDeviceURI(backends_, deviceURI_);
    OrbCSError error;
    const std::string place = Diagnostics::nameOfDevice(deviceURI_);
    const auto status =
        OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(deviceURI_, nullptr, &error);
    if (!status) {
        throw Failure(ExitStatus::deviceSilent, place,
                      "gave no status: " + error.reason + nextStepAfter(error));
    }
    for (const std::string& dropped : ReportedDeviceStatus::droppedValuesOf(*status)) {
        Diagnostics::warning(place, dropped);
    }
    StandardOutput::write(RecordedDeviceStatus::JSONForStatus(*status));
    return ExitStatus::done;
}

}  // namespace TkPPDUpdating
