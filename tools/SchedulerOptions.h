#pragma once

#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "sync/QueueScheduler.h"
#include "sync/RunLock.h"

namespace TkPPDUpdating {

/// The options of a command that replaces PPDs of queues: which scheduler, and how long to wait.
class SchedulerOptions {
  public:
    void addTo(CLI::App& subcommand);

    /// The same for a command that replaces nothing and so waits for nobody; gives the option that
    /// names the scheduler.
    CLI::Option* addServerTo(CLI::App& subcommand);

    /// The scheduler, which no longer waits once the run is interrupted. Raises a `Failure` when
    /// the module that talks to it cannot be loaded.
    std::unique_ptr<const QueueScheduler> scheduler() const;

    /// All queues of the scheduler. Raises a `Failure` when it does not tell them.
    static std::vector<std::string> allQueues(const QueueScheduler& scheduler);

    /// How the user has named the scheduler; empty when he has not.
    const std::string& server() const { return server_; }

    /// How long to wait for a queue that is printing, or for another run.
    std::chrono::seconds wait() const { return std::chrono::seconds(wait_); }

    /// The lock that a run has which replaces PPDs of the scheduler's queues, after it has waited
    /// for another run. Raises a `Failure` when that one does not end in time.
    std::unique_ptr<RunLock> lock(const QueueScheduler& scheduler) const;

    /// The path of the lock's file for the scheduler of that name (`QueueScheduler::name`): the
    /// same for all names of this machine's own scheduler.
    static std::string lockPath(const std::string& schedulerName);

  private:
    std::string server_;
    unsigned wait_ = 30;
};

}  // namespace TkPPDUpdating
