#include "sync/QueueInstallation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

#include "tests/support/FakeScheduler.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using State = SchedulerQueue::State;
using End = QueueInstallation::End;

class QueueInstallationTest : public testing::Test {
  protected:
    QueueInstallationTest() : queue(scheduler.add("office", "before")) {}

    /// An installation of "after" by somebody who has looked at the queue as it is now.
    QueueInstallation installation() {
        return {scheduler, {queue.attributes, queue.PPD, makePPDText("after"), beforeInstalling}};
    }

    /// Does something before the operation is asked for the nth time.
    void atTime(int count, const std::string& operation, const std::function<void()>& action) {
        scheduler.before = [this, count, operation, action](const std::string& asked) {
            if (asked == operation && scheduler.count(operation) == count) {
                action();
            }
        };
    }

    FakeScheduler scheduler;
    FakeScheduler::Queue& queue;
    std::function<std::optional<QueueFailure>()> beforeInstalling;
};

TEST_F(QueueInstallationTest, InstallsOnAQueueThatIsAsItWas) {
    QueueInstallation one = installation();
    EXPECT_EQ(one.attempt(), End::installed);
    EXPECT_EQ(*queue.PPD, "after");
    EXPECT_THAT(one.notes(), IsEmpty());
    EXPECT_TRUE(one.mayBeInstalled());
    EXPECT_EQ(scheduler.count("talk"), 1);
    EXPECT_EQ(scheduler.count("setStateReasons"), 0);
}

TEST_F(QueueInstallationTest, LooksAtTheStateLastOfAllBeforeItInstalls) {
    QueueInstallation one = installation();
    one.attempt();
    const auto install = std::ranges::find(scheduler.operations, "install");
    ASSERT_NE(install, scheduler.operations.end());
    EXPECT_EQ(*(install - 1), "queue");
}

TEST_F(QueueInstallationTest, LeavesAQueueAloneThatIsPrinting) {
    queue.attributes.state = State::printing;
    QueueInstallation one = installation();
    EXPECT_EQ(one.attempt(), End::busy);
    EXPECT_EQ(one.failure().cause, &queueSyncCause("printing"));
    EXPECT_EQ(*queue.PPD, "before");
    queue.attributes.state = State::idle;
    EXPECT_EQ(one.attempt(), End::installed);
}

TEST_F(QueueInstallationTest, SetsTheReasonsOfTheStateAgainThatTheSchedulerForgot) {
    queue.attributes.state = State::stopped;
    queue.attributes.stateReasons = {"paused", "hold-new-jobs", "cups-missing-filter-warning"};
    atTime(2, "queue", [this] { queue.attributes.stateReasons = {"toner-low-warning"}; });
    QueueInstallation one = installation();
    EXPECT_EQ(one.attempt(), End::installed);
    EXPECT_THAT(queue.attributes.stateReasons,
                ElementsAre("toner-low-warning", "paused", "hold-new-jobs"));
    EXPECT_THAT(one.notes(), IsEmpty());
}

TEST_F(QueueInstallationTest, DoesNotPauseAQueueThatSomebodyResumedMeanwhile) {
    queue.attributes.state = State::stopped;
    queue.attributes.stateReasons = {"paused"};
    atTime(2, "queue", [this] { queue.attributes.state = State::idle; });
    QueueInstallation one = installation();
    EXPECT_EQ(one.attempt(), End::installed);
    EXPECT_EQ(scheduler.count("setStateReasons"), 0);
}

TEST_F(QueueInstallationTest, TellsThatReasonsOfTheStateCouldNotBeSetAgain) {
    queue.attributes.stateReasons = {"hold-new-jobs"};
    scheduler.takesStateReasons = false;
    QueueInstallation one = installation();
    EXPECT_EQ(one.attempt(), End::installed);
    EXPECT_THAT(one.notes(),
                ElementsAre("the reasons of its state (hold-new-jobs) could not be set "
                            "again: not allowed"));
}

TEST_F(QueueInstallationTest, InstallsNothingOnAQueueThatWasChanged) {
    const std::vector<std::function<void()>> changes = {
        [this] { queue.PPD = makePPDText("somebody's"); }, [this] { queue.PPD = nullptr; },
        [this] { ++queue.attributes.configChangeTime; },
        [this] { queue.attributes.deviceURI = "fake:other"; },
        [this] { queue.attributes.settings["printer-info"] = "other"; }};
    for (const auto& change : changes) {
        scheduler.add("office", "before").attributes.settings.clear();
        QueueInstallation one = installation();
        change();
        EXPECT_EQ(one.attempt(), End::notInstalled);
        EXPECT_EQ(one.failure().cause, &queueSyncCause("changed-meanwhile"));
        EXPECT_FALSE(one.mayBeInstalled());
    }
    EXPECT_EQ(scheduler.count("install"), 0);
}

TEST_F(QueueInstallationTest, InstallsNothingOnAQueueThatIsGone) {
    QueueInstallation one = installation();
    scheduler.queues.clear();
    EXPECT_EQ(one.attempt(), End::notInstalled);
    EXPECT_EQ(one.failure().cause, &queueSyncCause("no-queue"));
    EXPECT_EQ(scheduler.count("install"), 0);
}

TEST_F(QueueInstallationTest, InstallsNothingWhenTheCallerObjects) {
    beforeInstalling = [] { return QueueFailure{&queueSyncCause("no-backup"), "disk full"}; };
    QueueInstallation one = installation();
    EXPECT_EQ(one.attempt(), End::notInstalled);
    EXPECT_EQ(one.failure().cause, &queueSyncCause("no-backup"));
    EXPECT_EQ(scheduler.count("install"), 0);
}

TEST_F(QueueInstallationTest, TellsWhenSomebodyElseReplacedThePPDAfterwards) {
    atTime(2, "PPD", [this] { queue.PPD = makePPDText("somebody's"); });
    QueueInstallation one = installation();
    EXPECT_EQ(one.attempt(), End::notInstalled);
    EXPECT_EQ(one.failure().cause, &queueSyncCause("changed-meanwhile"));
    EXPECT_TRUE(one.mayBeInstalled());
}

TEST_F(QueueInstallationTest, TellsWhatSomebodyElseChangedAtTheSameMoment) {
    atTime(3, "queue", [this] {
        queue.attributes.settings["printer-info"] = "other";
        queue.attributes.deviceURI = "fake:other";
    });
    QueueInstallation one = installation();
    EXPECT_EQ(one.attempt(), End::installed);
    EXPECT_THAT(one.notes(), ElementsAre("somebody else changed it at the same moment "
                                         "(printer-info, device-uri)"));
}

TEST_F(QueueInstallationTest, TellsThatSomebodyElseChangedItAtTheSameMoment) {
    atTime(3, "queue", [this] { ++queue.attributes.configChangeTime; });
    QueueInstallation one = installation();
    EXPECT_EQ(one.attempt(), End::installed);
    EXPECT_THAT(one.notes(), ElementsAre("somebody else changed it at the same moment"));
}

TEST_F(QueueInstallationTest, ARefusalIsTold) {
    scheduler.delivery = QueueTalk::Delivery::notTaken;
    scheduler.doesInstall = false;
    QueueInstallation one = installation();
    EXPECT_EQ(one.attempt(), End::notInstalled);
    EXPECT_EQ(one.failure().cause, &queueSyncCause("scheduler-refuses"));
    EXPECT_EQ(one.failure().reason, "the updated PPD was not installed: no good answer");
    EXPECT_FALSE(one.mayBeInstalled());
}

TEST_F(QueueInstallationTest, AnInstallationWhoseAnswerWasLostIsToldAsTheInstallationThatItIs) {
    queue.attributes.stateReasons = {"hold-new-jobs"};
    scheduler.delivery = QueueTalk::Delivery::unknown;
    QueueInstallation one = installation();
    EXPECT_EQ(one.attempt(), End::installed);
    EXPECT_THAT(queue.attributes.stateReasons, ElementsAre("hold-new-jobs"));
    EXPECT_EQ(scheduler.lastPatience, QueueScheduler::Patience::finishing);
}

TEST_F(QueueInstallationTest, AnInstallationThatWasLostIsToldAsNone) {
    scheduler.delivery = QueueTalk::Delivery::unknown;
    scheduler.doesInstall = false;
    QueueInstallation one = installation();
    EXPECT_EQ(one.attempt(), End::notInstalled);
    EXPECT_EQ(one.failure().cause, &queueSyncCause("no-scheduler"));
    EXPECT_EQ(one.failure().reason, "the updated PPD was not installed: no good answer");
    EXPECT_FALSE(one.mayBeInstalled());
}

TEST_F(QueueInstallationTest, WhatCannotBeKnownIsToldSo) {
    scheduler.delivery = QueueTalk::Delivery::unknown;
    atTime(2, "talk", [this] { scheduler.isGone = true; });
    QueueInstallation one = installation();
    EXPECT_EQ(one.attempt(), End::notInstalled);
    EXPECT_EQ(one.failure().cause, &queueSyncCause("not-known"));
    EXPECT_EQ(one.failure().reason,
              "it is not known whether the updated PPD was installed: the scheduler is gone");
    EXPECT_TRUE(one.mayBeInstalled());
}

TEST_F(QueueInstallationTest, WhatEndsInTheMidstOfAnInstallationMayHaveInstalledIt) {
    QueueInstallation one = installation();
    atTime(1, "install", [] { throw std::bad_alloc(); });
    EXPECT_THROW(one.attempt(), std::bad_alloc);
    EXPECT_TRUE(one.mayBeInstalled());
}

TEST_F(QueueInstallationTest, WhatEndsBeforeTheInstallationHasInstalledNothing) {
    QueueInstallation one = installation();
    atTime(1, "PPD", [] { throw std::bad_alloc(); });
    EXPECT_THROW(one.attempt(), std::bad_alloc);
    EXPECT_FALSE(one.mayBeInstalled());
}

TEST_F(QueueInstallationTest, ASchedulerThatIsGoneIsToldSo) {
    QueueInstallation one = installation();
    scheduler.isGone = true;
    EXPECT_EQ(one.attempt(), End::notInstalled);
    EXPECT_EQ(one.failure().cause, &queueSyncCause("no-scheduler"));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
