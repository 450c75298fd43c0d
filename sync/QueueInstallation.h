#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ppd/PPDText.h"
#include "sync/QueueScheduler.h"
#include "sync/QueueSyncCauses.h"

namespace TkPPDUpdating {

/// Replaces the PPD of a queue that is in use.
///
/// A scheduler prints a job anew when the PPD of its queue is replaced while it is being printed,
/// and forgets the reasons of the queue's state ("paused", "hold-new-jobs"). So a queue that is
/// printing is left alone, and the reasons are set again right after the installation. The queue
/// and its PPD are compared with what they were just before, and looked at once more afterwards:
/// there is no compare-and-swap, and a job or a change that comes between two requests cannot be
/// excluded.
class QueueInstallation {
  public:
    struct Wish {
        /// The queue and its PPD as they were when the new PPD was made of it; both must be so
        /// still.
        SchedulerQueue queue;
        PPDText before;
        PPDText after;
        /// Called when nothing but itself is in the way any more; a failure keeps the PPD from
        /// being installed. May be null.
        std::function<std::optional<QueueFailure>()> beforeInstalling = nullptr;
    };

    enum class End {
        installed,
        /// The queue is printing: nothing was installed, and it may be attempted again.
        busy,
        /// `failure()` tells why, and also when it is not known.
        notInstalled,
    };

    /// `scheduler` is not owned and must outlive the object.
    QueueInstallation(const QueueScheduler& scheduler, Wish wish);

    /// Installs the PPD, unless something is in the way. Not again once it has been installed.
    /// Raises what the scheduler and `beforeInstalling` raise.
    End attempt();

    /// Why the last attempt did not install it.
    const QueueFailure& failure() const { return failure_; }

    /// Whether the scheduler may have taken the PPD, in whatever way the attempt ended.
    bool mayBeInstalled() const { return delivery_ != QueueTalk::Delivery::notTaken; }

    /// What is to be told of an installation: one phrase each.
    const std::vector<std::string>& notes() const { return notes_; }

  private:
    void install(QueueTalk& talk);
    bool isUnchanged(QueueTalk& talk);
    void lookAfter(QueueTalk& talk);
    void restoreStateReasons(QueueTalk& talk, SchedulerQueue& queue);
    void compareAfter(const SchedulerQueue& after, const SchedulerQueue& later);
    void fail(const std::string& what, const QueueFailure& failure);
    void failUnknown(const QueueFailure& failure);

    const QueueScheduler& scheduler_;
    Wish wish_;
    End end_ = End::notInstalled;
    QueueFailure failure_;
    std::vector<std::string> notes_;
    QueueTalk::Delivery delivery_ = QueueTalk::Delivery::notTaken;
    /// The queue just before the installation.
    SchedulerQueue looked_;
    bool isLookedAfter_ = false;
};

}  // namespace TkPPDUpdating
