#include "backends/cups/QueueSyncRun.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace TkPPDUpdating {

namespace {

/// What the workers of one run share.
class Work {
  public:
    Work(const QueueSync& sync, const std::vector<std::string>& queueNames,
         const QueueSyncRun::Observer& observer)
        : sync_(sync), queueNames_(queueNames), observer_(observer), outcomes_(queueNames.size()) {}

    /// Takes one queue after the other until none is left.
    void work() {
        try {
            for (std::size_t index = next_++; index < queueNames_.size(); index = next_++) {
                report(index, sync_.sync(queueNames_[index]));
            }
        } catch (...) {
            const std::lock_guard lock(mutex_);
            if (!failure_) {
                failure_ = std::current_exception();
            }
            next_ = queueNames_.size();
        }
    }

    /// After all workers have ended.
    QueueSyncRun::Summary summary() {
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        return summary_;
    }

  private:
    void report(std::size_t index, QueueSyncOutcome outcome) {
        const std::lock_guard lock(mutex_);
        ++summary_[outcome.result];
        ++doneCount_;
        outcomes_[index] = std::move(outcome);
        for (; reportedCount_ < outcomes_.size() && outcomes_[reportedCount_]; ++reportedCount_) {
            // Gone before the next one: the texts of many queues are much.
            const auto next = std::exchange(outcomes_[reportedCount_], std::nullopt);
            if (observer_.finished) {
                observer_.finished(*next);
            }
        }
        if (observer_.progress) {
            observer_.progress(doneCount_, queueNames_[index]);
        }
    }

    const QueueSync& sync_;
    const std::vector<std::string>& queueNames_;
    const QueueSyncRun::Observer& observer_;
    std::atomic<std::size_t> next_{0};
    std::mutex mutex_;
    QueueSyncRun::Summary summary_;
    /// Those that are done, until those before them are.
    std::vector<std::optional<QueueSyncOutcome>> outcomes_;
    std::size_t doneCount_ = 0;
    std::size_t reportedCount_ = 0;
    std::exception_ptr failure_;
};

}  // namespace

QueueSyncRun::Summary QueueSyncRun::run(const std::vector<std::string>& queueNames,
                                        const Observer& observer) const {
    Work work(sync_, queueNames, observer);
    // The calling thread is one of the workers.
    const std::size_t helpers = std::min(std::max<std::size_t>(jobs_, 1), queueNames.size());
    std::vector<std::jthread> threads;
    for (std::size_t count = 1; count < helpers; ++count) {
        try {
            threads.emplace_back([&work] { work.work(); });
        } catch (const std::system_error&) {
            break;  // Fewer do it as well.
        }
    }
    work.work();
    threads.clear();
    return work.summary();
}

}  // namespace TkPPDUpdating
