#include "tools/StatusCommand.h"

#include "backends/recorded/RecordedDeviceStatus.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSDeviceStatus.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"
#include "tools/StandardOutput.h"

namespace TkPPDUpdating {

StatusCommand::StatusCommand(CLI::App& application)
    : Command(application, "status", "Write what a printer reports, as a recorded status") {
    subcommand()
        .add_option("URI", deviceURI_, "The printer; file:PATH names a recorded status")
        ->required()
        ->type_name("");
}

ExitStatus StatusCommand::run() {
    OrbCSError error;
    const std::string place = Diagnostics::nameOfDevice(deviceURI_);
    const auto status =
        OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(deviceURI_, nullptr, &error);
    if (!status) {
        throw Failure(ExitStatus::noResult, place, "gave no status: " + error.reason);
    }
    for (const std::string& dropped : ReportedDeviceStatus::droppedValuesOf(*status)) {
        Diagnostics::warning(place, dropped);
    }
    StandardOutput::write(RecordedDeviceStatus::JSONForStatus(*status));
    return ExitStatus::done;
}

}  // namespace TkPPDUpdating
