#include "tools/UpdateCommand.h"

#include <utility>

#include "sync/FollowedDefaults.h"
#include "sync/UpdateGuard.h"
#include "tools/AtomicReplacement.h"
#include "tools/ChangeReport.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"
#include "tools/NextStep.h"
#include "tools/PPDOfUser.h"
#include "tools/StandardOutput.h"
#include "tools/UnifiedDiff.h"

namespace TkPPDUpdating {

UpdateCommand::UpdateCommand(CLI::App& application, const Backends& backends)
    : Command(application, kName, "Write a PPD with its printer's values put in"),
      backends_(backends) {
    subcommand().add_option("FILE", file_, "The PPD to update")->required()->type_name("");
    auto* source = subcommand().add_option_group("Values", "Where the values come from");
    auto* device = device_.addTo(subcommand(), *source);
    source
        ->add_option("--queue", queueName_, "The print queue whose installed PPD gives the values")
        ->type_name("NAME");
    source->require_option(1);
    auto* output = subcommand()
                       .add_option("--output", output_, "Write into this file instead")
                       ->type_name("FILE");
    subcommand().add_flag("--in-place", isInPlace_, "Write into the PPD itself")->excludes(output);
    subcommand().add_flag("--diff", isDiff_, "Show a unified diff against the PPD instead");
    subcommand()
        .add_flag("--without-device", isWithoutDevice_,
                  "Write into a file even when the printer gives no status")
        ->needs(device)
        ->excludes("--require-device");
    updaters_.addTo(subcommand());
    addModules();
    subcommand().footer(
        "Examples:\n"
        "  tkppdupdate update office.ppd --device-uri ipp://192.168.1.5/ipp/print --diff\n"
        "  tkppdupdate update office.ppd --device-uri file:office.json --output new.ppd\n"
        "  tkppdupdate update new-driver.ppd --queue office --in-place");
}

ExitStatus UpdateCommand::run() {
    updaters_.takeClasses(backends_.addedUpdaterClasses());
    UpdaterSelection::refuseUnwritableUpdateTime();
    std::optional<FileInPlace> inPlace;
    const PPDText before = isInPlace_ ? inPlace.emplace(file_).text() : textOfUsersPPD(file_);
    const auto PPDFile = PPDOfUser(file_, before);
    if (output_) {
        refusePlaceToWrite(*output_);
    }
    const PPDText after = updatedText(PPDFile);
    if (isFileWritten()) {
        refuseHarm(*PPDFile, *after);
    }
    tellChanges(before, after);
    if (inPlace) {
        if (*after != *before) {
            inPlace->replace(*after);
        }
    } else if (output_) {
        replaceFileAtomically(*output_, *after);
    } else if (!isDiff_) {
        StandardOutput::write(*after);
    }
    return ExitStatus::done;
}

PPDText UpdateCommand::updatedText(const std::shared_ptr<const PPDModelFile>& before) const {
    return resultOf(file_,
                    [&] { return queueName_ ? textWithQueue(*before) : textWithDevice(before); });
}

PPDText UpdateCommand::textWithQueue(const PPDModelFile& before) const {
    PPDText after = updaters_.makeManager()->updatedPPDContentsForContents_PPDFile_queueName(
        before.text(), before, *queueName_);
    if (!after) {
        std::string reason;
        (void)backends_.core().queuePPDFile(*queueName_, reason);
        throw Failure(ExitStatus::noResult, queueName_, reason + kQueuesAreListed);
    }
    if (defaults() == PPDUpdate::Defaults::areAsWritten) {
        return after;
    }
    FollowedDefaults followed = defaultsFollowingMediaTypes(before, std::move(after));
    for (const std::string& note : followed.notes) {
        Diagnostics::warning(file_, note);
    }
    return followed.text;
}

PPDText UpdateCommand::textWithDevice(const std::shared_ptr<const PPDModelFile>& before) const {
    using Silence = DeviceInquiry::Silence;
    device_.refuseMistake(backends_);
    PPDUpdate update(updaters_.makeManager(), before, defaults());
    device_.limit(update, *before);
    if (update.needsStatus() || device_.isRequired()) {
        const bool isFailure = isFileWritten() && !isWithoutDevice_;
        if (auto status = device_.status(
                file_, {}, isFailure ? Silence::isFailure : Silence::isWarning, *before)) {
            update.setStatus(std::move(status), updaters_.rule());
            DeviceInquiry::tell(file_, update.answersOfAccessories());
        }
    }
    PPDText after = update.updatedText(device_.deviceURI());
    if (!update.keptEntries().empty()) {
        Diagnostics::note(file_, PPDUpdate::wordsForKeptEntries(update.keptEntries()));
    }
    for (const std::string& note : update.notes()) {
        Diagnostics::warning(file_, note);
    }
    return after;
}

PPDUpdate::Defaults UpdateCommand::defaults() const {
    // Standard output gets what the operation gives, byte for byte.
    return isFileWritten() || isDiff_ ? PPDUpdate::Defaults::keepTheirMeaning
                                      : PPDUpdate::Defaults::areAsWritten;
}

void UpdateCommand::refuseHarm(const PPDModelFile& before, const std::string& after) const {
    const auto updaters = updaters_.makeManager()->applicableUpdatersForPPDFile(&before);
    if (const auto reason = UpdateGuard::reasonNotToWrite(*before.text(), after, updaters)) {
        throw Failure(ExitStatus::noResult, file_, "the updated PPD is refused: " + *reason);
    }
}

void UpdateCommand::tellChanges(const PPDText& before, const PPDText& after) const {
    if (isDiff_) {
        StandardOutput::write(unifiedDiff(file_, *before, *after, diffStyleForStandardOutput()));
    } else if (isInPlace_ || (output_ && !StandardOutput::isFile(*output_))) {
        StandardOutput::writeIfOpen(ChangeReport(before, after).lines());
    }
}

}  // namespace TkPPDUpdating
