#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core_interface/OrbCSDeviceStatus.h"
#include "ppd/PPDText.h"
#include "sync/InstalledOptionAnswers.h"
#include "sync/PPDUpdateStep.h"

namespace TkPPDUpdating {

/// How the synchronisation of one queue ended.
enum class QueueSyncResult {
    /// The updated PPD was installed and read back.
    updated,
    /// A dry run: it would have been installed.
    wouldUpdate,
    /// The PPD already says what the printer says; nothing was installed.
    unchanged,
    /// There is nothing to do for it: a raw queue, a class, a PPD in which nothing follows the
    /// printer.
    skipped,
    /// It is printing; nothing was installed.
    busy,
    /// Its printer gave no status; nothing was installed.
    unreachable,
    /// Its printer cannot be asked, or its PPD cannot be read; nothing was installed.
    unsupported,
    failed,
    /// The run ended before anything was installed on the queue.
    abandoned,
};

struct QueueSyncCause;

struct QueueSyncOutcome {
    std::string queueName;
    /// Where the queue's printer is; empty when the queue could not be looked up.
    std::string deviceURI;
    /// Where something answered with a status, be it that of another printer; empty when nothing
    /// did or was asked.
    std::string statusURI;
    QueueSyncResult result = QueueSyncResult::failed;
    /// One of `QueueSyncCauses` for the results after `skipped`, else null.
    const QueueSyncCause* cause = nullptr;
    /// Why it ended so, for people: one phrase without the queue's name; empty for the first three
    /// results.
    std::string reason;
    /// What else is to be told of it, whatever the result: one phrase each.
    std::vector<std::string> notes;
    /// The entries of a status that the updaters would have read and the printer did not tell: the
    /// lines that follow them stayed (`core_interface/OrbCSPartialStatus.h`). Sorted.
    std::vector<std::string> keptEntries;
    /// What came of asking about installable options, in their order for each way of asking.
    std::vector<InstalledOptionAnswer> answers;
    /// What the printer answered, when it was asked and believed; else null.
    std::shared_ptr<const OrbCSDeviceStatus> status;
    /// The queue's PPD as it was, when it could be read, and as it is or would be, when it differs.
    PPDText before;
    PPDText after;
    /// Why it differs, where that was asked for.
    std::vector<PPDUpdateStep> steps;
};

}  // namespace TkPPDUpdating
