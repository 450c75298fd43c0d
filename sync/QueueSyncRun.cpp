#include "sync/QueueSyncRun.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <memory>
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
            while (auto item = take()) {
                if (auto outcome = item->work->proceed()) {
                    report(item->index, *std::move(outcome));
                } else {
                    const std::lock_guard lock(mutex_);
                    waiting_.push_back(std::move(*item));
                }
            }
        } catch (...) {
            const std::lock_guard lock(mutex_);
            if (!failure_) {
                failure_ = std::current_exception();
            }
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
    /// A queue that is worked on.
    struct Item {
        std::size_t index = 0;
        std::unique_ptr<QueueSync::Work> work;
    };

    /// The next queue: one that is waited for when its time has come, else one that has not been
    /// begun, else waits for the time of one. Nothing when there is none left.
    std::optional<Item> take() {
        // A signal handler, which may cancel the run, can set a flag but wake nobody.
        constexpr auto kPause = std::chrono::milliseconds(50);
        for (;;) {
            {
                const std::lock_guard lock(mutex_);
                if (failure_) {
                    return std::nullopt;
                }
                const auto due = std::ranges::min_element(
                    waiting_, {}, [](const Item& item) { return item.work->nextTime(); });
                if (due != waiting_.end() &&
                    (sync_.isCancelled() || due->work->nextTime() <= QueueSync::Clock::now())) {
                    Item item = std::move(*due);
                    waiting_.erase(due);
                    return item;
                }
                if (next_ < queueNames_.size()) {
                    const std::size_t index = next_++;
                    return Item{index, sync_.begin(queueNames_[index])};
                }
                if (waiting_.empty()) {
                    return std::nullopt;
                }
            }
            std::this_thread::sleep_for(kPause);
        }
    }

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
    std::mutex mutex_;
    std::size_t next_ = 0;
    std::vector<Item> waiting_;
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
