#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core_interface/TkCommunicationServices.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "sync/PPDUpdate.h"
#include "sync/PrinterTurns.h"
#include "sync/QueueBackups.h"
#include "sync/QueuePrinters.h"
#include "sync/QueueScheduler.h"
#include "sync/QueueSyncOutcome.h"

namespace TkPPDUpdating {

/// Brings the PPD of one queue in step with the printer behind it: asks the printer, runs the text
/// operation, checks the result and installs it (`sync/QueueInstallation.h`).
///
/// A printer that gives no status leaves its queue as it is: what the updaters assume of a silent
/// printer is for a new queue, not for one that is in use. It is asked through `OrbCoreInterface`,
/// once, and not at all for a PPD none of whose updaters reads a status; where its device URI does
/// not allow that, at its host's other places (`sync/QueuePrinters.h`). What its answer does not
/// tell stays as it is, too.
class QueueSync {
  public:
    using ManagerMaker = std::function<std::unique_ptr<OrbPPDConcreteUpdatingManager>()>;
    using Clock = std::chrono::steady_clock;

    struct Options {
        bool isDryRun = false;
        /// Also gives the steps of the update.
        bool isExplained = false;
        /// Set by anybody at any time to abandon what has not begun to install. May be null.
        const std::atomic<bool>* isCancelled = nullptr;
        /// Whether it was a limit of time that has cancelled the run. May be null.
        const std::atomic<bool>* isTimeOver = nullptr;
        /// Makes the manager of one queue; null for one with the built-in updaters. Of the user's
        /// defaults, the updated PPD may change those that one of the manager's
        /// `OrbPPDDefaultChoiceUpdater`s names in `optionNames`.
        ManagerMaker makeManager = nullptr;
        /// Which updaters run on an answer that does not tell everything.
        PPDUpdate::Rule rule = PPDUpdate::Rule::whatWasNotToldStays;
        /// Where the printers of some queues are asked instead of at their device URIs, by queue
        /// name. What is answered there is believed.
        std::map<std::string, std::string> statusURIs = {};
        /// Who asks PostScript printers the questions of their queues' PPDs, at the device URIs of
        /// these queues or at the places in `statusURIs` (`kTkCSPostScriptQuestionsKey`). Null for
        /// nobody: it is for whoever knows that no other printer stands behind a "socket" URI,
        /// which would print the code. A queue that is printing is not asked before it has stopped.
        std::shared_ptr<const TkCommunicationServices> postScriptPrinters = nullptr;
        /// How many printers are asked at once, at least 1. While they are waited for, the threads
        /// that have no turn talk to the scheduler.
        std::size_t mostPrinters = 256;
        /// How long a queue that is printing is waited for, and how long it is left alone between
        /// two looks at it.
        std::chrono::milliseconds wait = std::chrono::seconds(30);
        std::chrono::milliseconds pause = std::chrono::seconds(1);
        /// Where the PPDs that are replaced are kept; one that cannot be kept is not replaced. Not
        /// owned; null for nowhere.
        const QueueBackups* backups = nullptr;
        /// Told of each queue on which the scheduler has, or may have, installed the updated PPD,
        /// at once and on any thread. May be null.
        std::function<void(const QueueSyncOutcome& outcome)> installed = nullptr;
    };

    /// The synchronisation of one queue, which may be left and taken up again. For one thread at a
    /// time.
    class Work;

    /// `scheduler` is not owned and must outlive the object.
    QueueSync(const QueueScheduler& scheduler, Options options);

    /// Begins to synchronise a queue. The work must not outlive the object.
    std::unique_ptr<Work> begin(const std::string& queueName) const;

    /// Synchronises the queue. Never creates one. Safe for several threads, with a manager for each
    /// call. Raises nothing but `std::bad_alloc`.
    QueueSyncOutcome sync(const std::string& queueName) const;

    /// Whether the run was cancelled.
    bool isCancelled() const { return options_.isCancelled && *options_.isCancelled; }

  private:
    const QueueScheduler& scheduler_;
    Options options_;
    QueuePrinters printers_;
    mutable PrinterTurns turns_;
};

class QueueSync::Work {
  public:
    Work(const QueueSync& sync, const std::string& queueName);
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;
    ~Work();

    /// Goes on, and gives the outcome; nothing when the queue is printing, and is to be taken up
    /// again at `nextTime()`, or as soon as the run is cancelled. Not again after the outcome.
    std::optional<QueueSyncOutcome> proceed();

    Clock::time_point nextTime() const;

  private:
    class Steps;
    std::unique_ptr<Steps> steps_;
};

}  // namespace TkPPDUpdating
