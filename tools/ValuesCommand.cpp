#include "tools/ValuesCommand.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "core_interface/TkCSKeys.h"
#include "sync/PPDUpdate.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"
#include "tools/NextStep.h"
#include "tools/PPDOfUser.h"
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
    : Command(application, kName, "Write the values that the updaters would set, as JSON"),
      backends_(backends) {
    auto* PPD = subcommand().add_option_group("PPD", "The PPD that the values are for");
    PPD->add_option("--queue", queueName_, "The print queue whose installed PPD is meant")
        ->type_name("NAME");
    PPD->add_option("--ppd", file_, "The PPD file")->type_name("FILE");
    PPD->require_option(1);
    device_.addTo(subcommand(), subcommand())->required();
    updaters_.addTo(subcommand());
    addModules();
    subcommand().footer(
        "Examples:\n"
        "  tkppdupdate values --queue office --device-uri ipp://192.168.1.5/ipp/print\n"
        "  tkppdupdate values --ppd office.ppd --device-uri file:office.json");
}

ExitStatus ValuesCommand::run() {
    updaters_.takeClasses(backends_.addedUpdaterClasses());
    UpdaterSelection::refuseUnwritableUpdateTime();
    const auto PPDFile = queueName_ ? PPDOfQueue() : PPDOfFile();
    device_.refuseMistake(backends_);
    const std::string place = queueName_.value_or(file_);
    const OrbPPDUpdatingValues values = resultOf(place, [&] { return valuesFor(PPDFile, place); });
    StandardOutput::write(JSONForValues(values));
    return ExitStatus::done;
}

std::shared_ptr<const PPDModelFile> ValuesCommand::PPDOfQueue() const {
    std::string reason;
    auto PPDFile = backends_.core().queuePPDFile(*queueName_, reason);
    return PPDFile ? PPDFile
                   : throw Failure(ExitStatus::noResult, queueName_, reason + kQueuesAreListed);
}

std::shared_ptr<const PPDModelFile> ValuesCommand::PPDOfFile() const {
    return PPDOfUser(file_, textOfUsersPPD(file_));
}

OrbPPDUpdatingValues ValuesCommand::valuesFor(const std::shared_ptr<const PPDModelFile>& PPDFile,
                                              const std::string& place) const {
    using Silence = DeviceInquiry::Silence;
    PPDUpdate update(updaters_.makeManager(), PPDFile);
    device_.limit(update, *PPDFile);
    // The operation for a file begins with a status; the one for a queue asks when it needs one.
    const bool isAsked = !queueName_ || update.needsStatus() || device_.isRequired();
    auto status =
        isAsked ? device_.status(place, filterModeParameters(),
                                 queueName_ ? Silence::isWarning : Silence::isFailure, *PPDFile)
                : nullptr;
    if (!status) {
        return updaters_.makeManager()
            ->PPDUpdatingValuesForQueueWithName_deviceURI(queueName_, device_.deviceURI())
            .value_or(OrbPPDUpdatingValues());
    }
    update.setStatus(std::move(status), updaters_.rule());
    DeviceInquiry::tell(place, update.answersOfAccessories());
    auto values = update.updatingValues(device_.deviceURI());
    if (!update.keptEntries().empty()) {
        Diagnostics::note(place, PPDUpdate::wordsForKeptEntries(update.keptEntries()));
    }
    return std::move(values).value_or(OrbPPDUpdatingValues());
}

}  // namespace TkPPDUpdating
