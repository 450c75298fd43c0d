#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ppd/PPDText.h"
#include "sync/QueueSyncCauses.h"

namespace TkPPDUpdating {

/// A print queue as its scheduler describes it at a moment.
struct SchedulerQueue {
    enum class Kind {
        own,
        /// A class: a name for several queues, without a PPD of its own.
        printerClass,
        /// A queue of another machine, which the scheduler has only found in the network.
        remote,
    };
    /// RFC 8011, section 5.4.11.
    enum class State { idle = 3, printing = 4, stopped = 5 };

    std::string name;
    Kind kind = Kind::own;
    std::string deviceURI;
    /// When the queue's configuration was last changed, in the scheduler's seconds
    /// (printer-config-change-time, RFC 3995); 0 when the scheduler does not tell.
    std::int64_t configChangeTime = 0;
    State state = State::idle;
    /// printer-state-reasons (RFC 8011, section 5.4.12), without "none".
    std::vector<std::string> stateReasons;
    /// What an administrator sets beside the PPD, by the name of the attribute.
    std::map<std::string, std::string> settings;

    /// Whether the other is this queue with nothing changed by anybody. What it is doing changes
    /// all the time and does not count.
    bool isConfiguredAs(const SchedulerQueue& other) const {
        return kind == other.kind && deviceURI == other.deviceURI &&
               configChangeTime == other.configChangeTime && settings == other.settings;
    }
};

/// The PPD of a queue, or why there is none.
struct SchedulerPPD {
    /// The bytes as the scheduler holds them, which need not be UTF-8; null when there is none.
    PPDText text;
    /// Whether the queue exists and has no PPD: a raw queue, or one without a driver.
    bool isRaw = false;
};

/// One queue, talked about over one connection and within one limit of time.
///
/// Callers: nothing, null or false goes with the cause and reason in `failure`.
///
/// Implementers: raise nothing but `std::bad_alloc`.
class QueueTalk {
  public:
    enum class Delivery {
        taken,
        /// The scheduler has said that it did not take it, or was never asked to.
        notTaken,
        /// There was no answer.
        unknown,
    };

    QueueTalk() = default;
    QueueTalk(const QueueTalk&) = delete;
    QueueTalk& operator=(const QueueTalk&) = delete;
    virtual ~QueueTalk() = default;

    /// The queue as it is now.
    virtual std::optional<SchedulerQueue> queue(QueueFailure& failure) = 0;

    /// The queue's PPD as it is now. A class and a queue of another machine have none.
    virtual SchedulerPPD PPD(QueueFailure& failure) = 0;

    /// Makes the text the PPD of the queue, which must exist: ask for it first, since a scheduler
    /// creates one that does not. From here on the talk is not cut off by a cancellation.
    virtual Delivery install(const std::string& text, QueueFailure& failure) = 0;

    /// Sets the queue's state reasons, and nothing else.
    virtual bool setStateReasons(const std::vector<std::string>& reasons,
                                 QueueFailure& failure) = 0;
};

/// The print queues of a machine and their PPDs.
///
/// Implementers: raise nothing but what a talk raises. The operations may be called from several
/// threads.
class QueueScheduler {
  public:
    QueueScheduler() = default;
    QueueScheduler(const QueueScheduler&) = delete;
    QueueScheduler& operator=(const QueueScheduler&) = delete;
    virtual ~QueueScheduler() = default;

    /// What the scheduler is called: as it was named, else as the environment and configuration of
    /// the machine name it.
    virtual std::string name() const = 0;

    /// The names of the queues and classes of this machine, sorted; no queues that the scheduler
    /// has only found in the network. Nothing goes with the cause and reason in `failure`.
    virtual std::optional<std::vector<std::string>> queueNames(QueueFailure& failure) const = 0;

    enum class Patience {
        /// A cancelled run no longer waits, until something is installed.
        untilCancelled,
        /// Something has been installed, and is to be seen to.
        finishing,
    };

    /// Talks about a queue. A name that could be none is refused without being passed on. False,
    /// with the cause and reason in `failure`, when there was no whole talk: the scheduler could
    /// not be reached, or the time was over; `talk` may all the same have been called.
    virtual bool talkAbout(const std::string& queueName,
                           const std::function<void(QueueTalk& queue)>& talk, Patience patience,
                           QueueFailure& failure) const = 0;
};

}  // namespace TkPPDUpdating
