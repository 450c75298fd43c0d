#include "tools/SyncCommand.h"

#include <set>

#include "backends/cups/CUPSScheduler.h"
#include "backends/cups/QueueSync.h"
#include "backends/cups/QueueSyncRun.h"
#include "tools/Failure.h"
#include "tools/InterruptionWatch.h"

namespace TkPPDUpdating {

namespace {

/// The names in their order, each once.
std::vector<std::string> withoutRepetitions(const std::vector<std::string>& names) {
    std::set<std::string> seen;
    std::vector<std::string> unique;
    for (const std::string& name : names) {
        if (seen.insert(name).second) {
            unique.push_back(name);
        }
    }
    return unique;
}

/// Empty for what may be a scheduler, else what is wrong: an empty text, as an unset variable gives
/// it, must not become the scheduler of this machine.
std::string complaintAboutServer(const std::string& server) {
    return server.empty() ? "\"\" is no scheduler" : "";
}

/// While printers are waited for, as many queues again are read and installed. One job is one
/// queue after the other.
std::size_t queuesAtOnce(std::size_t jobs) {
    return jobs == 1 ? 1 : 2 * jobs;
}

bool isDone(const QueueSyncRun::Summary& summary) {
    return !summary.contains(QueueSyncResult::failed) &&
           !summary.contains(QueueSyncResult::abandoned);
}

}  // namespace

SyncCommand::SyncCommand(CLI::App& application)
    : Command(application, "sync", "Bring the PPDs of print queues in step with their printers") {
    constexpr std::size_t kMostJobs = 256;
    auto* queues = subcommand().add_option_group("Queues", "Which queues");
    queues->add_option("QUEUE", queueNames_, "The print queues")->type_name("");
    queues->add_flag("--all", areAllWanted_, "All queues of the scheduler");
    queues->require_option(1);
    subcommand()
        .add_option("--server", server_, "The scheduler, instead of the one of this machine")
        ->check(CLI::Validator(complaintAboutServer, ""))
        ->type_name("HOST:PORT");
    subcommand().add_flag("--dry-run", isDryRun_, "Install nothing");
    subcommand().add_flag("--diff", reportOptions_.isDiff, "Show a unified diff of each change");
    subcommand()
        .add_option("--jobs", jobs_, "How many printers to ask at once (default 4)")
        ->check(CLI::Range(std::size_t{1}, kMostJobs))
        ->type_name("N");
    subcommand().add_flag("--json", reportOptions_.isJSON, "Write one JSON object for each queue");
    runOptions_.addTo(subcommand());
}

ExitStatus SyncCommand::run() {
    const InterruptionWatch watch;
    const CUPSScheduler scheduler(server_);
    const auto queueNames = queuesToSync(scheduler);
    const QueueSync sync(scheduler, {.isDryRun = isDryRun_,
                                     .isCancelled = &InterruptionWatch::isInterrupted(),
                                     .makeManager = [this] { return runOptions_.makeManager(); },
                                     .mostPrinters = jobs_});
    SyncReport report(reportOptions_, queueNames.size());
    report.start();
    const auto summary =
        QueueSyncRun(sync, queuesAtOnce(jobs_))
            .run(queueNames, [&report](const QueueSyncOutcome& outcome) { report.add(outcome); });
    report.finish(summary);
    return isDone(summary) ? ExitStatus::done : ExitStatus::noResult;
}

std::vector<std::string> SyncCommand::queuesToSync(const QueueScheduler& scheduler) const {
    if (!areAllWanted_) {
        return withoutRepetitions(queueNames_);
    }
    std::string reason;
    const auto names = scheduler.queueNames(reason);
    if (!names) {
        const auto place = server_.empty() ? std::nullopt : std::optional(server_);
        throw Failure(ExitStatus::noResult, place, reason);
    }
    return *names;
}

}  // namespace TkPPDUpdating
