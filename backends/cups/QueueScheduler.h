#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ppd/PPDText.h"
#include "sync/QueueSyncCauses.h"

namespace TkPPDUpdating {

/// A print queue as its scheduler describes it.
struct SchedulerQueue {
    std::string name;
    enum class Kind {
        own,
        /// A class: a name for several queues, without a PPD of its own.
        printerClass,
        /// A queue of another machine, which the scheduler has only found in the network.
        remote,
    };
    Kind kind = Kind::own;
    std::string deviceURI;
    /// When the queue's configuration was last changed, in the scheduler's seconds
    /// (printer-config-change-time, RFC 3995); 0 when the scheduler does not tell.
    std::int64_t configChangeTime = 0;

    friend bool operator==(const SchedulerQueue&, const SchedulerQueue&) = default;
};

/// The PPD of a queue, or why there is none.
struct SchedulerPPD {
    /// The bytes as the scheduler holds them, which need not be UTF-8; null when there is none.
    PPDText text;
    /// Whether the queue exists and has no PPD: a raw queue, or one without a driver.
    bool isRaw = false;
};

/// A queue and its PPD, asked for together.
struct SchedulerQueueAndPPD {
    std::optional<SchedulerQueue> queue;
    /// Empty without a queue.
    SchedulerPPD PPD;
};

/// The print queues of a machine and their PPDs.
///
/// Callers: names are those of queues; a name that could be none is refused without being passed
/// on. Nothing or null goes with the cause and reason in `failure`.
///
/// Implementers: raise nothing. The operations may be called from several threads.
class QueueScheduler {
  public:
    virtual ~QueueScheduler() = default;

    /// The names of the queues and classes of this machine, sorted; no queues that the scheduler
    /// has only found in the network.
    virtual std::optional<std::vector<std::string>> queueNames(QueueFailure& failure) const = 0;

    /// The queue's PPD.
    virtual SchedulerPPD PPDOfQueue(const std::string& name, QueueFailure& failure) const = 0;

    /// The queue of that name, nothing when there is none, and its PPD; `failure` is
    /// about the first which is missing. A class and a queue of another machine have no PPD.
    virtual SchedulerQueueAndPPD queueAndPPDWithName(const std::string& name,
                                                     QueueFailure& failure) const = 0;

    /// Makes the text the PPD of the queue, which must exist: a queue is never created. False when
    /// the scheduler did not take it.
    virtual bool installPPD(const std::string& name, const std::string& text,
                            QueueFailure& failure) const = 0;
};

}  // namespace TkPPDUpdating
