#include "tools/UpdateCommand.h"

#include "backends/ppdmodel/PPDModelFile.h"
#include "ppd/PPDTextFile.h"
#include "sync/UpdateGuard.h"
#include "tools/AtomicReplacement.h"
#include "tools/ChangeReport.h"
#include "tools/Failure.h"
#include "tools/StandardOutput.h"
#include "tools/UnifiedDiff.h"

namespace TkPPDUpdating {

UpdateCommand::UpdateCommand(CLI::App& application, const Backends& backends)
    : Command(application, "update", "Write a PPD with its printer's values put in"),
      backends_(backends) {
    subcommand().add_option("FILE", file_, "The PPD to update")->required()->type_name("");
    auto* source = subcommand().add_option_group("Values", "Where the values come from");
    device_.addTo(subcommand(), *source);
    source
        ->add_option("--queue", queueName_, "The print queue whose installed PPD gives the values")
        ->type_name("NAME");
    source->require_option(1);
    auto* output = subcommand()
                       .add_option("--output", output_, "Write into this file instead")
                       ->type_name("FILE");
    subcommand().add_flag("--in-place", isInPlace_, "Write into the PPD itself")->excludes(output);
    subcommand().add_flag("--diff", isDiff_, "Show a unified diff against the PPD instead");
    runOptions_.addTo(subcommand());
}

ExitStatus UpdateCommand::run() {
    std::optional<FileInPlace> inPlace;
    const PPDText before = isInPlace_ ? inPlace.emplace(file_).text() : textOfFile();
    const PPDText after = updatedText(before);
    device_.report(file_, backends_.devices(), {});
    if (isInPlace_ || output_) {
        refuseHarm(before, *after);
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

PPDText UpdateCommand::textOfFile() const {
    std::string reason;
    PPDText text = PPDTextWithContentsOfFile(file_, &reason);
    if (!text) {
        throw Failure(ExitStatus::noResult, file_, reason);
    }
    return text;
}

PPDText UpdateCommand::updatedText(const PPDText& before) const {
    std::string reason;
    const auto PPDFile = PPDModelFile::fileWithText(before, &reason);
    if (!PPDFile) {
        throw Failure(ExitStatus::noResult, file_, reason);
    }
    const PPDText after = resultOf(file_, [&] {
        const auto manager = runOptions_.makeManager();
        return queueName_ ? manager->updatedPPDContentsForContents_PPDFile_queueName(
                                before, *PPDFile, *queueName_)
                          : manager->updatedPPDContentsForContents_PPDFile_deviceURI_context(
                                before, *PPDFile, device_.deviceURI(), {});
    });
    if (!after) {
        (void)backends_.core().queuePPDFile(queueName_.value_or(""), reason);
        throw Failure(ExitStatus::noResult, queueName_, reason);
    }
    return after;
}

void UpdateCommand::refuseHarm(const PPDText& before, const std::string& after) const {
    const auto file = PPDModelFile::fileWithText(before);
    const auto updaters = runOptions_.makeManager()->applicableUpdatersForPPDFile(file.get());
    if (const auto reason = UpdateGuard::reasonNotToWrite(*before, after, updaters)) {
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
