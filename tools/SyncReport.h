#pragma once

#include <cstddef>
#include <string>

#include "backends/cups/QueueSyncRun.h"

namespace TkPPDUpdating {

/// What the user reads of a synchronisation: a line for each queue as it is done, progress on a
/// terminal, and a summary.
class SyncReport {
  public:
    struct Options {
        bool isJSON = false;
        bool isDiff = false;
    };

    SyncReport(const Options& options, std::size_t queueCount)
        : options_(options), queueCount_(queueCount) {}

    /// Shows that none is done yet: the first printer may take its time.
    void start() const;

    /// Writes the line of one queue, and its diff when that is wanted.
    void add(const QueueSyncOutcome& outcome);

    /// Writes the summary; nothing as JSON, where every line is a queue.
    void finish(const QueueSyncRun::Summary& summary) const;

    /// "QUEUE: updated: KEYWORD, KEYWORD" and the like, with its line feed.
    static std::string lineForOutcome(const QueueSyncOutcome& outcome);

    /// One JSON object on one line: "queue", "result", "changed" (main keywords), "reason" when
    /// there is one, and "diff" when that is wanted.
    std::string JSONForOutcome(const QueueSyncOutcome& outcome) const;

    static std::string lineForSummary(const QueueSyncRun::Summary& summary);

  private:
    void showProgress(const std::string& details = {}) const;

    Options options_;
    std::size_t queueCount_;
    std::size_t finishedCount_ = 0;
};

}  // namespace TkPPDUpdating
