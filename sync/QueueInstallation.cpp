#include "sync/QueueInstallation.h"

#include <algorithm>
#include <utility>

namespace TkPPDUpdating {

namespace {

std::string joined(const std::vector<std::string>& words) {
    std::string list;
    for (const std::string& word : words) {
        list += (list.empty() ? "" : ", ") + word;
    }
    return list;
}

bool contains(const std::vector<std::string>& words, const std::string& word) {
    return std::ranges::find(words, word) != words.end();
}

/// The reasons that an installation made the scheduler forget. Those that begin with "cups-" are
/// the scheduler's own, of the PPD that it had.
std::vector<std::string> forgottenReasons(const SchedulerQueue& before,
                                          const SchedulerQueue& after) {
    std::vector<std::string> forgotten;
    for (const std::string& reason : before.stateReasons) {
        if (!reason.starts_with("cups-") && !contains(after.stateReasons, reason)) {
            forgotten.push_back(reason);
        }
    }
    return forgotten;
}

/// The names of the settings that are not the same.
std::vector<std::string> differentSettings(const SchedulerQueue& left,
                                           const SchedulerQueue& right) {
    std::vector<std::string> names;
    const auto addMissingOrOther = [&names](const auto& these, const auto& those) {
        for (const auto& [name, value] : these) {
            const auto other = those.find(name);
            if ((other == those.end() || other->second != value) && !contains(names, name)) {
                names.push_back(name);
            }
        }
    };
    addMissingOrOther(left.settings, right.settings);
    addMissingOrOther(right.settings, left.settings);
    if (left.deviceURI != right.deviceURI) {
        names.emplace_back("device-uri");
    }
    return names;
}

}  // namespace

QueueInstallation::QueueInstallation(const QueueScheduler& scheduler, Wish wish)
    : scheduler_(scheduler), wish_(std::move(wish)) {}

void QueueInstallation::fail(const std::string& what, const QueueFailure& failure) {
    end_ = End::notInstalled;
    failure_ = {failure.cause, what + failure.reason};
}

void QueueInstallation::failUnknown(const QueueFailure& failure) {
    fail(delivery_ == QueueTalk::Delivery::taken
             ? "the installed PPD cannot be read back: "
             : "it is not known whether the updated PPD was installed: ",
         {&queueSyncCause("not-known"), failure.reason});
}

QueueInstallation::End QueueInstallation::attempt() {
    QueueFailure failure;
    const bool isWhole = scheduler_.talkAbout(
        wish_.queue.name, [this](QueueTalk& talk) { install(talk); },
        QueueScheduler::Patience::untilCancelled, failure);
    if (!isWhole && delivery_ == QueueTalk::Delivery::notTaken) {
        fail("", failure);
    }
    if (delivery_ != QueueTalk::Delivery::notTaken && !isLookedAfter_) {
        // The scheduler may have done it although its answer was lost.
        const bool isWholeNow = scheduler_.talkAbout(
            wish_.queue.name, [this](QueueTalk& talk) { lookAfter(talk); },
            QueueScheduler::Patience::finishing, failure);
        if (!isWholeNow && !isLookedAfter_) {
            failUnknown(failure);
        }
    }
    return end_;
}

void QueueInstallation::install(QueueTalk& talk) {
    if (!isUnchanged(talk)) {
        return;
    }
    if (looked_.state == SchedulerQueue::State::printing) {
        failure_ = {&queueSyncCause("printing"), "it is printing"};
        end_ = End::busy;
        return;
    }
    const auto objection = wish_.beforeInstalling ? wish_.beforeInstalling() : std::nullopt;
    if (objection) {
        return fail("", *objection);
    }
    QueueFailure failure;
    // Where there is no memory left for the answer, the scheduler may have done it.
    delivery_ = QueueTalk::Delivery::unknown;
    delivery_ = talk.install(*wish_.after, failure);
    if (delivery_ == QueueTalk::Delivery::taken) {
        lookAfter(talk);
    } else {
        fail("the updated PPD was not installed: ", failure);
    }
}

bool QueueInstallation::isUnchanged(QueueTalk& talk) {
    QueueFailure failure;
    const SchedulerPPD PPD = talk.PPD(failure);
    if (!PPD.text && !PPD.isRaw) {
        fail("its PPD can no longer be read: ", failure);
        return false;
    }
    // Last, so that what it tells of the queue's state is as fresh as can be.
    const auto queue = talk.queue(failure);
    if (!queue) {
        fail("it can no longer be looked up: ", failure);
        return false;
    }
    looked_ = *queue;
    const bool isSame =
        queue->isConfiguredAs(wish_.queue) && PPD.text && *PPD.text == *wish_.before;
    if (!isSame) {
        fail("", {&queueSyncCause("changed-meanwhile"),
                  "it was changed meanwhile; nothing was installed"});
    }
    return isSame;
}

void QueueInstallation::lookAfter(QueueTalk& talk) {
    const bool isTaken = delivery_ == QueueTalk::Delivery::taken;
    QueueFailure failure;
    auto after = talk.queue(failure);
    if (after && isTaken) {
        restoreStateReasons(talk, *after);
    }
    const SchedulerPPD PPD = after ? talk.PPD(failure) : SchedulerPPD();
    if (!PPD.text) {
        return failUnknown(failure);
    }
    isLookedAfter_ = true;
    if (!isTaken && *PPD.text == *wish_.before) {
        delivery_ = QueueTalk::Delivery::notTaken;
        return;  // The failure is that of the installation.
    }
    if (*PPD.text != *wish_.after) {
        return fail("", {&queueSyncCause("changed-meanwhile"),
                         "the installed PPD reads back as another: somebody else changed it"});
    }
    if (!isTaken) {
        restoreStateReasons(talk, *after);
    }
    end_ = End::installed;
    failure_ = {};
    if (const auto later = talk.queue(failure)) {
        compareAfter(*after, *later);
    }
}

void QueueInstallation::restoreStateReasons(QueueTalk& talk, SchedulerQueue& queue) {
    const auto forgotten = forgottenReasons(looked_, queue);
    if (forgotten.empty() || queue.state != looked_.state) {
        return;
    }
    auto reasons = queue.stateReasons;
    reasons.insert(reasons.end(), forgotten.begin(), forgotten.end());
    QueueFailure failure;
    if (!talk.setStateReasons(reasons, failure)) {
        notes_.push_back("the reasons of its state (" + joined(forgotten) +
                         ") could not be set again: " + failure.reason);
    }
    queue = talk.queue(failure).value_or(queue);
}

void QueueInstallation::compareAfter(const SchedulerQueue& after, const SchedulerQueue& later) {
    const auto settings = differentSettings(looked_, later);
    if (!settings.empty() || after.configChangeTime != later.configChangeTime) {
        notes_.push_back("somebody else changed it at the same moment" +
                         (settings.empty() ? "" : " (" + joined(settings) + ")"));
    }
}

}  // namespace TkPPDUpdating
