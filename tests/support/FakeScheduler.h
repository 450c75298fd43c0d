#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sync/QueueScheduler.h"

namespace TkPPDUpdating::Testing {

/// A scheduler in memory that does to a queue what a real one does: an installation changes the
/// time of the configuration and makes it forget the reasons of the state.
class FakeScheduler : public QueueScheduler {
  public:
    struct Queue {
        SchedulerQueue attributes;
        PPDText PPD;
    };

    /// Adds a queue that is idle.
    Queue& add(const std::string& name, const std::string& PPD) const {
        Queue& queue = queues[name];
        queue.attributes.name = name;
        queue.attributes.deviceURI = "fake:" + name;
        queue.attributes.configChangeTime = 1;
        queue.PPD = makePPDText(PPD);
        return queue;
    }

    std::string name() const override { return "fake"; }

    std::optional<std::vector<std::string>> queueNames(QueueFailure& /*failure*/) const override {
        std::vector<std::string> names;
        for (const auto& [name, queue] : queues) {
            names.push_back(name);
        }
        return names;
    }

    bool talkAbout(const std::string& queueName, const std::function<void(QueueTalk& queue)>& talk,
                   Patience patience, QueueFailure& failure) const override {
        note("talk");
        {
            const std::lock_guard lock(mutex_);
            lastPatience = patience;
        }
        if (isGone) {
            failure = {&queueSyncCause("no-scheduler"), "the scheduler is gone"};
            return false;
        }
        Talk own(*this, queueName);
        talk(own);
        return true;
    }

    long count(const std::string& operation) const {
        const std::lock_guard lock(mutex_);
        return std::ranges::count(operations, operation);
    }

    /// What it has, changed by the test at will.
    mutable std::map<std::string, Queue> queues;
    /// Called before each operation with its name: "talk", "queue", "PPD", "install",
    /// "setStateReasons". May be null.
    std::function<void(const std::string& operation)> before;
    /// Whether it cannot be reached.
    mutable bool isGone = false;
    /// What it answers to an installation, and whether it does it.
    QueueTalk::Delivery delivery = QueueTalk::Delivery::taken;
    bool doesInstall = true;
    bool takesStateReasons = true;
    mutable std::vector<std::string> operations;
    mutable std::optional<Patience> lastPatience;

  private:
    class Talk : public QueueTalk {
      public:
        Talk(const FakeScheduler& scheduler, std::string name)
            : scheduler_(scheduler), name_(std::move(name)) {}

        std::optional<SchedulerQueue> queue(QueueFailure& failure) override {
            Queue* queue = find("queue", failure);
            return queue ? std::optional(queue->attributes) : std::nullopt;
        }

        SchedulerPPD PPD(QueueFailure& failure) override {
            Queue* queue = find("PPD", failure);
            return queue ? SchedulerPPD{queue->PPD, !queue->PPD} : SchedulerPPD();
        }

        Delivery install(const std::string& text, QueueFailure& failure) override {
            Queue* queue = find("install", failure);
            if (!queue) {
                return Delivery::notTaken;
            }
            if (scheduler_.doesInstall) {
                queue->PPD = makePPDText(text);
                queue->attributes.stateReasons.clear();
                ++queue->attributes.configChangeTime;
            }
            if (scheduler_.delivery != Delivery::taken) {
                failure = {scheduler_.delivery == Delivery::unknown
                               ? &queueSyncCause("no-scheduler")
                               : &queueSyncCause("scheduler-refuses"),
                           "no good answer"};
            }
            return scheduler_.delivery;
        }

        bool setStateReasons(const std::vector<std::string>& reasons,
                             QueueFailure& failure) override {
            Queue* queue = find("setStateReasons", failure);
            if (!queue || !scheduler_.takesStateReasons) {
                failure = {&queueSyncCause("scheduler-refuses"), "not allowed"};
                return false;
            }
            queue->attributes.stateReasons = reasons;
            ++queue->attributes.configChangeTime;
            return true;
        }

      private:
        Queue* find(const std::string& operation, QueueFailure& failure) {
            scheduler_.note(operation);
            const auto queue = scheduler_.queues.find(name_);
            if (scheduler_.isGone || queue == scheduler_.queues.end()) {
                failure = scheduler_.isGone
                              ? QueueFailure{&queueSyncCause("no-scheduler"), "it is gone"}
                              : QueueFailure{&queueSyncCause("no-queue"), "there is none"};
                return nullptr;
            }
            return &queue->second;
        }

        const FakeScheduler& scheduler_;
        std::string name_;
    };

    void note(const std::string& operation) const {
        {
            const std::lock_guard lock(mutex_);
            operations.push_back(operation);
        }
        if (before) {
            before(operation);
        }
    }

    mutable std::mutex mutex_;
};

}  // namespace TkPPDUpdating::Testing
