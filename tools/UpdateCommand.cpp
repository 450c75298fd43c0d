#include "tools/UpdateCommand.h"

#include "backends/ppdmodel/PPDModelFile.h"
#include "ppd/PPDTextFile.h"
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
    // The text before is needed only to be compared.
    PPDText before;
    if (isDiff_ || isInPlace_ || output_) {
        std::string reason;
        before = PPDTextWithContentsOfFile(file_, &reason);
        if (!before) {
            throw Failure(ExitStatus::noResult, file_, reason);
        }
    }
    const PPDText after = updatedText();
    if (!after) {
        failWithReason();
    }
    device_.report(file_, backends_.devices(), {});
    writeResult(before, after);
    return ExitStatus::done;
}

PPDText UpdateCommand::updatedText() const {
    return resultOf(file_, [&] {
        const auto manager = runOptions_.makeManager();
        return queueName_
                   ? manager->updatedPPDContentsForFile_queueName(file_, queueName_)
                   : manager->updatedPPDContentsForFile_deviceURI(file_, device_.deviceURI());
    });
}

void UpdateCommand::failWithReason() const {
    std::string reason;
    if (!PPDModelFile::fileWithContentsOfFile(file_, &reason)) {
        throw Failure(ExitStatus::noResult, file_, reason);
    }
    if (queueName_ && !backends_.core().queuePPDFile(*queueName_, reason)) {
        throw Failure(ExitStatus::noResult, *queueName_, reason);
    }
    throw Failure(ExitStatus::noResult, file_, "it could not be read; it can be now");
}

void UpdateCommand::tellChanges(const PPDText& before, const PPDText& after) const {
    if (isDiff_) {
        StandardOutput::write(unifiedDiff(file_, *before, *after, diffStyleForStandardOutput()));
    } else if (isInPlace_ || (output_ && !StandardOutput::isFile(*output_))) {
        StandardOutput::writeIfOpen(ChangeReport(before, after).lines());
    }
}

void UpdateCommand::writeResult(const PPDText& before, const PPDText& after) const {
    tellChanges(before, after);
    if (isInPlace_) {
        if (*after != *before) {
            replaceFileAtomically(file_, *after);
        }
    } else if (output_) {
        replaceFileAtomically(*output_, *after);
    } else if (!isDiff_) {
        StandardOutput::write(*after);
    }
}

}  // namespace TkPPDUpdating
