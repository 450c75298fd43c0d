#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "sync/QueueScheduler.h"

namespace TkPPDUpdating::Testing {

/// Hands everything to a scheduler, and does something before a queue is talked about once more or
/// its PPD is installed.
class MeddledScheduler : public QueueScheduler {
  public:
    explicit MeddledScheduler(const QueueScheduler& scheduler) : scheduler_(scheduler) {}

    std::string name() const override { return scheduler_.name(); }
    std::optional<std::vector<std::string>> queueNames(QueueFailure& failure) const override {
        return scheduler_.queueNames(failure);
    }
    bool talkAbout(const std::string& queueName, const std::function<void(QueueTalk& queue)>& talk,
                   Patience patience, QueueFailure& failure) const override {
        ++talks;
        if (talks == 2 && beforeSecondTalk) {
            beforeSecondTalk();
        }
        return scheduler_.talkAbout(
            queueName,
            [&](QueueTalk& real) {
                Talk meddled(*this, real);
                talk(meddled);
            },
            patience, failure);
    }

    /// Whether the answer to an installation does not arrive.
    bool answerLost = false;
    std::function<void()> beforeSecondTalk;
    std::function<void()> beforeInstallation;
    mutable std::atomic<int> talks = 0;
    mutable int installations = 0;

  private:
    class Talk : public QueueTalk {
      public:
        Talk(const MeddledScheduler& meddled, QueueTalk& real) : meddled_(meddled), real_(real) {}

        std::optional<SchedulerQueue> queue(QueueFailure& failure) override {
            return real_.queue(failure);
        }
        SchedulerPPD PPD(QueueFailure& failure) override { return real_.PPD(failure); }
        Delivery install(const std::string& text, QueueFailure& failure) override {
            ++meddled_.installations;
            if (meddled_.beforeInstallation) {
                meddled_.beforeInstallation();
            }
            const Delivery delivery = real_.install(text, failure);
            return meddled_.answerLost ? Delivery::unknown : delivery;
        }
        bool setStateReasons(const std::vector<std::string>& reasons,
                             QueueFailure& failure) override {
            return real_.setStateReasons(reasons, failure);
        }

      private:
        const MeddledScheduler& meddled_;
        QueueTalk& real_;
    };

    const QueueScheduler& scheduler_;
};

}  // namespace TkPPDUpdating::Testing
