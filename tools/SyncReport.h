#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "sync/QueueSyncRun.h"
#include "tools/Journal.h"

namespace TkPPDUpdating {

/// What the user reads of a synchronisation: a line for each queue in their order, progress on a
/// terminal, and a summary.
class SyncReport {
  public:
    struct Options {
        bool isJSON = false;
        bool isDiff = false;
        /// The scheduler, as JSON names it.
        std::string server;
        /// Nothing of queues that need nobody's attention, and no summary.
        bool isQuiet = false;
        /// Takes what is said of each queue instead of standard output, with queue, result and
        /// cause as fields. Null for none, else it outlives the report; not with JSON.
        const Journal* journal = nullptr;
    };

    SyncReport(Options options, std::size_t queueCount)
        : options_(std::move(options)), queueCount_(queueCount) {}

    /// Shows how many are done; before the first is, without the name of the last: its printer may
    /// take its time.
    void showProgress(std::size_t doneCount, const std::string& lastQueueName = {}) const;

    /// Writes the line of one queue, and its diff when that is wanted.
    void add(const QueueSyncOutcome& outcome) const;

    /// Writes the summary; nothing as JSON, where every line is a queue.
    void finish(const QueueSyncRun::Summary& summary) const;

    /// "QUEUE: updated" and the like, a line for each thing that changed, one for where the status
    /// is from when it is not from the device URI, one for what was kept because the printer did
    /// not tell it, and the explanation where there is one, with line feeds.
    static std::string lineForOutcome(const QueueSyncOutcome& outcome);

    /// One JSON object on one line; the manual page says what is in it.
    std::string JSONForOutcome(const QueueSyncOutcome& outcome) const;

    static std::string lineForSummary(const QueueSyncRun::Summary& summary);

    /// The fields of a queue's entry in the journal.
    static Journal::Fields journalFieldsForOutcome(const QueueSyncOutcome& outcome);

    /// The result of that name, as JSON has it; nothing when there is none.
    static std::optional<QueueSyncResult> resultNamed(std::string_view name);

    /// The name of a result, as JSON has it, and what it is for people.
    static std::string_view nameOfResult(QueueSyncResult result);
    static std::string_view wordsForResult(QueueSyncResult result);

  private:
    Options options_;
    std::size_t queueCount_;
};

}  // namespace TkPPDUpdating
