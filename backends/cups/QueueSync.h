#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "backends/cups/PrinterTurns.h"
#include "backends/cups/QueueScheduler.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "sync/PPDUpdate.h"
#include "sync/QueueSyncOutcome.h"

namespace TkPPDUpdating {

/// Brings the PPD of one queue in step with the printer behind it: asks the printer, runs the text
/// operation, checks the result, makes sure that nobody has changed the queue meanwhile, installs
/// and reads back. The scheduler has no compare-and-swap: between the last look and the
/// installation a change by somebody else can still be lost, but for no longer than that.
///
/// A printer that gives no status leaves its queue as it is: what the updaters assume of a silent
/// printer is for a new queue, not for one that is in use. It is asked through `OrbCoreInterface`,
/// once, and not at all for a PPD none of whose updaters reads a status. What its answer does not
/// tell stays as it is, too.
class QueueSync {
  public:
    using ManagerMaker = std::function<std::unique_ptr<OrbPPDConcreteUpdatingManager>()>;

    struct Options {
        bool isDryRun = false;
        /// Set by anybody at any time to abandon what has not begun to install. May be null.
        const std::atomic<bool>* isCancelled = nullptr;
        /// Makes the manager of one queue; null for one with the built-in updaters. Of the user's
        /// defaults, the updated PPD may change those that one of the manager's
        /// `OrbPPDDefaultChoiceUpdater`s names in `optionNames`.
        ManagerMaker makeManager = nullptr;
        /// Which updaters run on an answer that does not tell everything.
        PPDUpdate::Rule rule = PPDUpdate::Rule::whatWasNotToldStays;
        /// How many printers are asked at once, at least 1. While they are waited for, the threads
        /// that have no turn talk to the scheduler.
        std::size_t mostPrinters = 256;
    };

    /// `scheduler` is not owned and must outlive the object.
    QueueSync(const QueueScheduler& scheduler, Options options);

    /// Synchronises the queue. Never creates one. Safe for several threads, with a manager for each
    /// call. Raises nothing but `std::bad_alloc`.
    QueueSyncOutcome sync(const std::string& queueName) const;

  private:
    class Run;

    const QueueScheduler& scheduler_;
    Options options_;
    mutable PrinterTurns printers_;
};

}  // namespace TkPPDUpdating
