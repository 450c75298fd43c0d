#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ppd/PPDText.h"

namespace TkPPDUpdating {

/// A print queue as its scheduler describes it.
struct SchedulerQueue {
    std::string name;
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
/// on. Nothing or null goes with the reason, one phrase without the queue's name, in `error`.
///
/// Implementers: raise nothing. The operations may be called from several threads.
class QueueScheduler {
  public:
    virtual ~QueueScheduler() = default;

    /// The names of the queues of this machine, sorted; no classes, nor queues that the scheduler
    /// has only found in the network.
    virtual std::optional<std::vector<std::string>> queueNames(std::string& error) const = 0;

    /// The queue's PPD.
    virtual SchedulerPPD PPDOfQueue(const std::string& name, std::string& error) const = 0;

    /// The queue of that name, nothing when there is none, and its PPD; the reason in `error` is
    /// that of the first which is missing.
    virtual SchedulerQueueAndPPD queueAndPPDWithName(const std::string& name,
                                                     std::string& error) const = 0;

    /// Makes the text the PPD of the queue, which must exist: a queue is never created. False when
    /// the scheduler did not take it.
    virtual bool installPPD(const std::string& name, const std::string& text,
                            std::string& error) const = 0;
};

}  // namespace TkPPDUpdating
