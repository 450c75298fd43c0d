#include "tools/SyncCommand.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "tools/ChangeReport.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"
#include "tools/InterruptionWatch.h"
#include "tools/Journal.h"
#include "tools/NumberWithin.h"
#include "tools/SystemLog.h"

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

constexpr std::size_t kMostJobs = 256;

/// While printers are waited for, as many queues again are read and installed. One job is one
/// queue after the other.
std::size_t queuesAtOnce(std::size_t jobs) {
    return jobs == 1 ? 1 : 2 * jobs;
}

/// The results that a caller may put up with.
constexpr auto kAcceptableResults =
    std::to_array<std::string_view>({"busy", "unreachable", "unsupported"});

std::string complaintAboutAcceptedResult(const std::string& result) {
    const bool isOne = std::ranges::find(kAcceptableResults, result) != kAcceptableResults.end();
    return isOne ? "" : "\"" + result + "\" is none of busy, unreachable and unsupported";
}

void tellSystemLog(const QueueSyncOutcome& outcome) {
    SystemLog::tellReplacement(
        outcome.queueName,
        outcome.result == QueueSyncResult::updated ? "updated" : "may have been updated",
        ChangeReport(outcome.before, outcome.after).keywords());
}

}  // namespace

SyncCommand::SyncCommand(CLI::App& application, const Backends& backends)
    : Command(application, kName, "Bring the PPDs of print queues in step with their printers"),
      backends_(backends) {
    addQueueOptions();
    schedulerOptions_.addTo(subcommand());
    statusURIOptions_.addTo(subcommand());
    subcommand().add_flag("--dry-run", isDryRun_, "Install nothing");
    subcommand().add_flag("--explain", isExplained_,
                          "Say why each line would change, and install nothing");
    subcommand().add_flag("--diff", reportOptions_.isDiff, "Show a unified diff of each change");
    addTimeOptions();
    addBackupOptions();
    subcommand().add_flag("--json", reportOptions_.isJSON, "Write one JSON object for each queue");
    subcommand().add_flag("--page-size", isPageSizeWanted_,
                          "Set the default page size, too, to the paper of the user's country");
    subcommand().add_flag("--ask-postscript", asksPostScript_,
                          "Ask PostScript printers of socket: queues what is installed, by the "
                          "questions of their PPDs");
    addResultOptions();
    updaters_.addTo(subcommand());
    addModules();
    subcommand().footer(
        "Examples:\n"
        "  tkppdupdate sync --all --dry-run\n"
        "  tkppdupdate sync office --explain\n"
        "  tkppdupdate sync --all --exclude lab --backup /var/backups/ppd --quiet");
}

void SyncCommand::addQueueOptions() {
    // Of the subcommand itself: behind "--", the parser does not look into groups of options.
    auto* queues = subcommand().add_option("QUEUE", queueNames_, "The print queues");
    queues->type_name("");
    auto* all = subcommand().add_flag("--all", areAllWanted_, "All queues of the scheduler");
    all->excludes(queues);
    subcommand()
        .add_option("--exclude", excluded_, "With --all, but not this one (may be repeated)")
        ->type_name("QUEUE")
        ->allow_extra_args(false)
        ->needs(all);
}

void SyncCommand::addTimeOptions() {
    constexpr unsigned kMostSeconds = 7 * 24 * 60 * 60;
    subcommand()
        .add_option("--jobs", jobs_, "How many printers to ask at once (default 4)")
        ->check(numberWithin(1, kMostJobs))
        ->type_name("N");
    subcommand()
        .add_option("--time-limit", timeLimit_,
                    "Abandon the queues that are not done by then (default: no limit)")
        ->check(numberWithin(1, kMostSeconds))
        ->type_name("SECONDS");
}

void SyncCommand::addBackupOptions() {
    auto* backup = subcommand()
                       .add_option("--backup", backupFolder_,
                                   "Keep the PPDs that are replaced in this folder, as QUEUE.ppd")
                       ->type_name("DIR");
    subcommand()
        .add_flag("--keep-all", keepsAllBackups_, "Keep all of them, not only the last of a queue")
        ->needs(backup);
}

void SyncCommand::addResultOptions() {
    subcommand()
        .add_option("--accept", accepted_,
                    "Do not count queues that end as busy, unreachable or unsupported (may be "
                    "repeated)")
        ->type_name("RESULT")
        ->allow_extra_args(false)
        ->check(CLI::Validator(complaintAboutAcceptedResult, ""));
    subcommand()
        .add_flag("--exit-code", isChangeAnExitStatus_,
                  "End with exit status 10 when something would change")
        ->needs("--dry-run");
    subcommand().add_flag("--quiet", reportOptions_.isQuiet,
                          "Say nothing of queues that are unchanged or skipped");
}

ExitStatus SyncCommand::run() {
    if (!areAllWanted_ && queueNames_.empty()) {
        throw Failure(ExitStatus::usage, std::nullopt,
                      "QUEUE or --all is required (\"tkppdupdate sync --help\" tells the usage)");
    }
    updaters_.takeClasses(backends_.addedUpdaterClasses());
    UpdaterSelection::refuseUnwritableUpdateTime();
    auto statusURIs = statusURIOptions_.URIs(backends_, asksPostScript_);
    const InterruptionWatch watch(timeLimit_ ? std::optional(std::chrono::seconds(*timeLimit_))
                                             : std::nullopt);
    SystemLog::open();
    const auto scheduler = schedulerOptions_.scheduler();
    const auto lock = isDryRun_ ? nullptr : schedulerOptions_.lock(*scheduler);
    const auto backups = openBackups();
    const auto queueNames = queuesToSync(*scheduler);
    statusURIOptions_.warnOfOtherQueues(queueNames);
    const QueueSync sync(*scheduler, syncOptions(std::move(statusURIs), backups.get()));
    SyncReport::Options reportOptions = reportOptions_;
    reportOptions.server = scheduler->name();
    const Journal journal;
    if (!reportOptions.isJSON && Journal::isBehind(STDOUT_FILENO)) {
        reportOptions.journal = &journal;
    }
    return statusFor(reportedRun(sync, queueNames, reportOptions));
}

QueueSync::Options SyncCommand::syncOptions(std::map<std::string, std::string> statusURIs,
                                            const QueueBackups* backups) const {
    return {.isDryRun = isDryRun_ || isExplained_,
            .isExplained = isExplained_,
            .isCancelled = &InterruptionWatch::isInterrupted(),
            .isTimeOver = &InterruptionWatch::isTimeOver(),
            .makeManager = [this] { return makeManager(); },
            .rule = updaters_.rule(),
            .statusURIs = std::move(statusURIs),
            .postScriptPrinters = asksPostScript_ ? Backends::postScriptPrinters() : nullptr,
            .mostPrinters = jobs_,
            .wait = schedulerOptions_.wait(),
            .backups = backups,
            .installed = tellSystemLog};
}

QueueSyncRun::Summary SyncCommand::reportedRun(const QueueSync& sync,
                                               const std::vector<std::string>& queueNames,
                                               const SyncReport::Options& reportOptions) const {
    const SyncReport report(reportOptions, queueNames.size());
    report.showProgress(0);
    auto summary =
        QueueSyncRun(sync, queuesAtOnce(jobs_))
            .run(queueNames,
                 {.finished = [&report](const QueueSyncOutcome& outcome) { report.add(outcome); },
                  .progress =
                      [&report](std::size_t doneCount, const std::string& queueName) {
                          report.showProgress(doneCount, queueName);
                      }});
    report.finish(summary);
    return summary;
}

std::unique_ptr<QueueBackups> SyncCommand::openBackups() const {
    if (!backupFolder_ || isDryRun_) {
        return nullptr;
    }
    std::string reason;
    auto backups = QueueBackups::open(*backupFolder_, keepsAllBackups_, reason);
    if (!backups) {
        throw Failure(ExitStatus::noResult, *backupFolder_, reason);
    }
    return backups;
}

std::unique_ptr<OrbPPDConcreteUpdatingManager> SyncCommand::makeManager() const {
    return isPageSizeWanted_ ? updaters_.makeManager() : updaters_.makeManagerForQueueInUse();
}

ExitStatus SyncCommand::statusFor(const QueueSyncRun::Summary& summary) const {
    if (summary.contains(QueueSyncResult::failed) || summary.contains(QueueSyncResult::abandoned)) {
        return ExitStatus::noResult;
    }
    for (const std::string_view name : kAcceptableResults) {
        const bool isAccepted = std::ranges::find(accepted_, name) != accepted_.end();
        if (!isAccepted && summary.contains(*SyncReport::resultNamed(name))) {
            return ExitStatus::notInStep;
        }
    }
    return isChangeAnExitStatus_ && summary.contains(QueueSyncResult::wouldUpdate)
               ? ExitStatus::wouldChange
               : ExitStatus::done;
}

std::vector<std::string> SyncCommand::queuesToSync(const QueueScheduler& scheduler) const {
    return areAllWanted_ ? allQueues(scheduler) : withoutRepetitions(queueNames_);
}

std::vector<std::string> SyncCommand::allQueues(const QueueScheduler& scheduler) const {
    auto names = SchedulerOptions::allQueues(scheduler);
    for (const std::string& name : withoutRepetitions(excluded_)) {
        if (std::erase(names, name) == 0) {
            // It may be mistyped, and then the queue that was meant is not left out.
            Diagnostics::warning("", "--exclude: there is no queue \"" + name + "\"");
        }
    }
    return names;
}

}  // namespace TkPPDUpdating
