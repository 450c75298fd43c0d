#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "sync/QueueSync.h"

namespace TkPPDUpdating {

/// Synchronises many queues, several side by side. A queue that is waited for because it prints
/// holds up no other.
class QueueSyncRun {
  public:
    /// What the caller is told, one call at a time, on any thread. What they raise ends the run and
    /// is raised. Each may be null.
    struct Observer {
        /// Told of each queue in the order of the queues, as soon as all before it are done.
        std::function<void(const QueueSyncOutcome& outcome)> finished;
        /// Told as soon as a queue is done, with the number of those that are done.
        std::function<void(std::size_t doneCount, const std::string& queueName)> progress;
    };
    /// How many queues ended how.
    using Summary = std::map<QueueSyncResult, std::size_t>;

    /// `sync` is not owned and must outlive the object. `jobs` is how many queues are worked on at
    /// once, at least 1.
    QueueSyncRun(const QueueSync& sync, std::size_t jobs) : sync_(sync), jobs_(jobs) {}

    /// Synchronises the queues and returns when all are done. When the run is cancelled, those that
    /// have not begun to install are abandoned, and the observer is told of them, too.
    Summary run(const std::vector<std::string>& queueNames, const Observer& observer) const;

  private:
    const QueueSync& sync_;
    std::size_t jobs_;
};

}  // namespace TkPPDUpdating
