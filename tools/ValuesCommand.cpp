#include "tools/ValuesCommand.h"

#include <nlohmann/json.hpp>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/TkCSKeys.h"
#include "tools/Failure.h"
#include "tools/StandardOutput.h"

namespace TkPPDUpdating {

namespace {

constexpr int kIndentation = 2;

OrbDictionary filterModeParameters() {
    return {{std::string(kTkCSIsCUPSFilterModeKey), true}};
}

/// Bytes that are not UTF-8 would make the output no JSON: they become U+FFFD.
std::string JSONForValues(const OrbPPDUpdatingValues& values) {
    nlohmann::json object = nlohmann::json::object();
    for (const auto& [key, value] : values) {
        object[key] = value;
    }
    return object.dump(kIndentation, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

}  // namespace

ValuesCommand::ValuesCommand(CLI::App& application, const Backends& backends)
    : Command(application, "values", "Write the values that the updaters would set, as JSON"),
      backends_(backends) {
    auto* PPD = subcommand().add_option_group("PPD", "The PPD that the values are for");
    PPD->add_option("--queue", queueName_, "The print queue whose installed PPD is meant")
        ->type_name("NAME");
    PPD->add_option("--ppd", file_, "The PPD file")->type_name("FILE");
    PPD->require_option(1);
    device_.addTo(subcommand(), subcommand())->required();
    runOptions_.addTo(subcommand());
}

ExitStatus ValuesCommand::run() {
    const std::string place = queueName_.value_or(file_);
    const OrbPPDUpdatingValues values =
        resultOf(place, [&] { return queueName_ ? valuesForQueue(*queueName_) : valuesForFile(); });
    device_.report(place, backends_.devices(), filterModeParameters());
    StandardOutput::write(JSONForValues(values));
    return ExitStatus::done;
}

OrbPPDUpdatingValues ValuesCommand::valuesForQueue(const std::string& queueName) const {
    const auto values = runOptions_.makeManager()->PPDUpdatingValuesForQueueWithName_deviceURI(
        queueName, device_.deviceURI());
    if (!values) {
        std::string reason;
        (void)backends_.core().queuePPDFile(queueName, reason);
        throw Failure(ExitStatus::noResult, queueName, reason);
    }
    return *values;
}

OrbPPDUpdatingValues ValuesCommand::valuesForFile() const {
    std::string reason;
    const auto PPDFile = PPDModelFile::fileWithContentsOfFile(file_, &reason);
    if (!PPDFile) {
        throw Failure(ExitStatus::noResult, file_, reason);
    }
    const auto values =
        runOptions_.makeManager()->PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
            device_.status(filterModeParameters()), device_.deviceURI(), PPDFile.get());
    if (!values) {
        throw Failure(device_.isRequired() ? ExitStatus::deviceSilent : ExitStatus::noResult, file_,
                      device_.reasonForSilence(backends_.devices()));
    }
    return *values;
}

}  // namespace TkPPDUpdating
