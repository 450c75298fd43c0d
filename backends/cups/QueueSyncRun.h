#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "backends/cups/QueueSync.h"

namespace TkPPDUpdating {

/// Synchronises many queues, several side by side.
class QueueSyncRun {
  public:
    /// Told of each queue as soon as it is done, one call at a time, on any thread.
    using Finished = std::function<void(const QueueSyncOutcome& outcome)>;
    /// How many queues ended how.
    using Summary = std::map<QueueSyncResult, std::size_t>;

    /// `sync` is not owned and must outlive the object. `jobs` is how many queues are worked on at
    /// once, at least 1.
    QueueSyncRun(const QueueSync& sync, std::size_t jobs) : sync_(sync), jobs_(jobs) {}

    /// Synchronises the queues and returns when all are done. When the run is cancelled, those that
    /// have not begun to install are abandoned, and `finished` is told of them, too. What
    /// `finished` raises ends the run and is raised.
    Summary run(const std::vector<std::string>& queueNames, const Finished& finished) const;

  private:
    const QueueSync& sync_;
    std::size_t jobs_;
};

}  // namespace TkPPDUpdating
