#include "tools/RestoreCommand.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "backends/ppdmodel/PPDModelFile.h"
#include "backends/schemes/QueueName.h"
#include "sync/QueueBackups.h"
#include "tools/ChangeReport.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"
#include "tools/InterruptionWatch.h"
#include "tools/NextStep.h"
#include "tools/StandardOutput.h"
#include "tools/SystemLog.h"

namespace TkPPDUpdating {

RestoreCommand::RestoreCommand(CLI::App& application)
    : Command(application, kName, "Put back the PPD of a queue that sync replaced") {
    subcommand()
        .add_option("--backup", folder_, "The folder in which \"sync --backup\" has kept it")
        ->required()
        ->type_name("DIR");
    subcommand().add_option("QUEUE", queueName_, "The print queue")->required()->type_name("");
    schedulerOptions_.addTo(subcommand());
    subcommand().footer(
        "Example:\n"
        "  tkppdupdate restore --backup /var/backups/ppd office");
}

ExitStatus RestoreCommand::run() {
    const InterruptionWatch watch;
    SystemLog::open();
    const PPDText PPD = keptPPD();
    const auto scheduler = schedulerOptions_.scheduler();
    const auto lock = schedulerOptions_.lock(*scheduler);
    const auto wish = wishFor(*scheduler, PPD);
    if (*wish.before == *wish.after) {
        StandardOutput::write(Diagnostics::printable(queueName_) + ": unchanged\n");
        return ExitStatus::done;
    }
    return install(*scheduler, wish);
}

PPDText RestoreCommand::keptPPD() const {
    if (!couldBeQueueName(queueName_)) {
        throw Failure(ExitStatus::noResult, queueName_,
                      std::string(kNoQueueName) + kQueuesAreListed);
    }
    std::string reason;
    const auto backups = QueueBackups::openExisting(folder_, reason);
    if (!backups) {
        throw Failure(ExitStatus::noResult, folder_, reason);
    }
    PPDText PPD = backups->lastOf(queueName_, reason);
    const bool isPPD = PPD && PPDModelFile::fileWithText(PPD, &reason);
    if (!isPPD) {
        throw Failure(ExitStatus::noResult, folder_ + "/" + queueName_ + ".ppd", reason);
    }
    return PPD;
}

QueueInstallation::Wish RestoreCommand::wishFor(const QueueScheduler& scheduler,
                                                PPDText PPD) const {
    QueueFailure failure;
    std::optional<SchedulerQueue> queue;
    SchedulerPPD before;
    const bool isWhole = scheduler.talkAbout(
        queueName_,
        [&](QueueTalk& talk) {
            queue = talk.queue(failure);
            before = queue ? talk.PPD(failure) : SchedulerPPD();
        },
        QueueScheduler::Patience::untilCancelled, failure);
    if (isWhole && before.isRaw) {
        failure.reason = "it has no PPD that could be replaced";
    }
    if (!isWhole || !queue || !before.text) {
        throw Failure(ExitStatus::noResult, queueName_,
                      failure.reason + nextStepAfter(failure.cause));
    }
    return {*queue, before.text, std::move(PPD)};
}

ExitStatus RestoreCommand::install(const QueueScheduler& scheduler,
                                   const QueueInstallation::Wish& wish) const {
    using Clock = std::chrono::steady_clock;
    constexpr auto kPause = std::chrono::seconds(1);
    const auto deadline = Clock::now() + schedulerOptions_.wait();
    QueueInstallation installation(scheduler, wish);
    auto end = installation.attempt();
    while (end == QueueInstallation::End::busy && Clock::now() < deadline) {
        const auto next = std::min(Clock::now() + kPause, deadline);
        while (Clock::now() < next && !InterruptionWatch::isInterrupted()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        if (InterruptionWatch::isInterrupted()) {
            throw Failure(ExitStatus::noResult, queueName_, InterruptionWatch::reason());
        }
        end = installation.attempt();
    }
    const std::string name = Diagnostics::printable(queueName_);
    const ChangeReport changes(wish.before, wish.after);
    if (installation.mayBeInstalled()) {
        SystemLog::tellReplacement(queueName_, "restored", changes.keywords());
    }
    for (const std::string& note : installation.notes()) {
        Diagnostics::warning(queueName_, note);
    }
    switch (end) {
        case QueueInstallation::End::installed:
            StandardOutput::write(name + ": restored\n" + changes.lines("  "));
            return ExitStatus::done;
        case QueueInstallation::End::busy:
            throw Failure(ExitStatus::notInStep, queueName_,
                          "it is printing; nothing was installed");
        case QueueInstallation::End::notInstalled:
            break;
    }
    throw Failure(ExitStatus::noResult, queueName_, installation.failure().reason);
}

}  // namespace TkPPDUpdating
