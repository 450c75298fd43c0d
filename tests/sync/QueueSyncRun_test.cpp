#include "sync/QueueSyncRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <any>
#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSOptionQuestions.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbClassTable.h"
#include "tests/support/FakeScheduler.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using Clock = std::chrono::steady_clock;

constexpr const char* kPPD =
    "*PPD-Adobe: \"4.3\"\n*OpenUI *ZrLowerTrayInstalled/Tray: Boolean\n"
    "*DefaultZrLowerTrayInstalled: False\n*ZrLowerTrayInstalled True/Yes: \"\"\n"
    "*ZrLowerTrayInstalled False/No: \"\"\n*CloseUI: *ZrLowerTrayInstalled\n";

class QueueSyncRunTest : public testing::Test {
  protected:
    void SetUp() override {
        OrbCoreInterface::setCore(std::make_shared<const PPDModelCore>());
        OrbCoreInterface::setCommunicationServices(
            std::make_shared<const FakeCommunicationServices>(std::make_shared<FakeDeviceStatus>(
                FakeDeviceStatus::Values{{std::string(kTkCSDeviceAccessoriesKey),
                                          OrbCSDeviceAccessories{{"Tray2", true}}}})));
    }

    QueueSyncRun::Summary run(const QueueSync::Options& options, std::size_t jobs = 2) {
        QueueFailure failure;
        const QueueSync sync(scheduler, options);
        return QueueSyncRun(sync, jobs).run(*scheduler.queueNames(failure), observer);
    }

    void setState(const std::string& queueName, SchedulerQueue::State state) {
        scheduler.queues[queueName].attributes.state = state;
    }

    CoreInterfaceScope scope;
    FakeScheduler scheduler;
    std::vector<std::string> reported;
    std::vector<std::string> done;
    QueueSyncRun::Observer observer{
        .finished =
            [this](const QueueSyncOutcome& outcome) { reported.push_back(outcome.queueName); },
        .progress =
            [this](std::size_t count, const std::string& name) {
                EXPECT_EQ(count, done.size() + 1);
                done.push_back(name);
            }};
};

TEST_F(QueueSyncRunTest, ReportsInTheOrderOfTheQueuesWhicheverIsDoneFirst) {
    for (const char* name : {"a", "b", "c", "d"}) {
        scheduler.add(name, kPPD);
    }
    setState("a", SchedulerQueue::State::printing);
    setState("c", SchedulerQueue::State::printing);
    const auto summary = run({.wait = milliseconds(150), .pause = milliseconds(20)});
    EXPECT_THAT(reported, ElementsAre("a", "b", "c", "d"));
    EXPECT_THAT(done, testing::UnorderedElementsAre("a", "b", "c", "d"));
    EXPECT_TRUE(done.front() == "b" || done.front() == "d") << done.front();
    EXPECT_EQ(summary.at(QueueSyncResult::busy), 2U);
    EXPECT_EQ(summary.at(QueueSyncResult::updated), 2U);
}

TEST_F(QueueSyncRunTest, AQueueThatPrintsHoldsUpNoOther) {
    scheduler.add("a", kPPD);
    scheduler.add("b", kPPD);
    setState("a", SchedulerQueue::State::printing);
    const auto begin = Clock::now();
    Clock::duration otherTook{};
    observer.progress = [&](std::size_t count, const std::string&) {
        if (count == 1) {
            otherTook = Clock::now() - begin;
        }
    };
    run({.wait = milliseconds(400), .pause = milliseconds(20)}, 1);
    EXPECT_LT(otherTook, milliseconds(300));
    EXPECT_GE(Clock::now() - begin, milliseconds(400));
}

TEST_F(QueueSyncRunTest, IsInstalledAsSoonAsTheQueueStopsPrinting) {
    scheduler.add("a", kPPD);
    setState("a", SchedulerQueue::State::printing);
    int looks = 0;
    scheduler.before = [&](const std::string& operation) {
        looks += operation == "talk" ? 1 : 0;
        if (looks == 4) {
            setState("a", SchedulerQueue::State::idle);
        }
    };
    const auto summary = run({.wait = std::chrono::seconds(20), .pause = milliseconds(10)}, 1);
    EXPECT_EQ(summary.at(QueueSyncResult::updated), 1U);
    EXPECT_EQ(looks, 4);
}

TEST_F(QueueSyncRunTest, LeavesAPauseBetweenTwoLooks) {
    scheduler.add("a", kPPD);
    setState("a", SchedulerQueue::State::printing);
    run({.wait = milliseconds(250), .pause = milliseconds(100)}, 1);
    // One to read it, then at 0, 100 and 200 ms, and at the end.
    EXPECT_LE(scheduler.count("talk"), 5);
    EXPECT_GE(scheduler.count("talk"), 3);
}

TEST_F(QueueSyncRunTest, WithoutAWaitAQueueThatPrintsIsBusyAtOnce) {
    scheduler.add("a", kPPD);
    setState("a", SchedulerQueue::State::printing);
    EXPECT_EQ(run({.wait = milliseconds(0)}).at(QueueSyncResult::busy), 1U);
    EXPECT_EQ(scheduler.count("talk"), 2);
}

TEST_F(QueueSyncRunTest, ACancelledRunWaitsForNoQueue) {
    scheduler.add("a", kPPD);
    setState("a", SchedulerQueue::State::printing);
    std::atomic<bool> isCancelled{false};
    scheduler.before = [&](const std::string& operation) {
        if (operation == "talk" && scheduler.count("talk") == 2) {
            isCancelled = true;
        }
    };
    const auto begin = Clock::now();
    const auto summary = run({.isCancelled = &isCancelled, .wait = std::chrono::seconds(60)}, 1);
    EXPECT_EQ(summary.at(QueueSyncResult::abandoned), 1U);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(20));
}

TEST_F(QueueSyncRunTest, TellsATimeLimitFromAnInterruption) {
    scheduler.add("a", kPPD);
    const std::atomic<bool> yes{true};
    const QueueSync timedOut(scheduler, {.isCancelled = &yes, .isTimeOver = &yes});
    EXPECT_EQ(timedOut.sync("a").cause, &queueSyncCause("time-limit"));
    const QueueSync interrupted(scheduler, {.isCancelled = &yes});
    EXPECT_EQ(interrupted.sync("a").cause, &queueSyncCause("interrupted"));
}

TEST_F(QueueSyncRunTest, TellsOfEachInstallationAtOnce) {
    scheduler.add("a", kPPD);
    scheduler.add("b", "*PPD-Adobe: \"4.3\"\n");
    std::vector<std::string> installed;
    run({.installed =
             [&](const QueueSyncOutcome& outcome) {
                 installed.push_back(outcome.queueName);
                 EXPECT_TRUE(reported.empty());
                 EXPECT_NE(*outcome.before, *outcome.after);
             }},
        1);
    EXPECT_THAT(installed, ElementsAre("a"));
}

TEST_F(QueueSyncRunTest, AQueueIsAskedWhereTheUserSaysAndTheOutcomeSaysSo) {
    scheduler.add("a", kPPD);
    scheduler.add("b", kPPD);
    scheduler.queues["a"].attributes.deviceURI = "socket://box.example:9101";
    const QueueSync sync(scheduler, {.statusURIs = {{"a", "fake:elsewhere"}}});
    const QueueSyncOutcome named = sync.sync("a");
    EXPECT_EQ(named.result, QueueSyncResult::updated) << named.reason;
    EXPECT_EQ(named.statusURI, "fake:elsewhere");
    EXPECT_EQ(sync.sync("b").statusURI, "fake:b");
}

TEST_F(QueueSyncRunTest, TheOutcomeHasTheAnswerThatWasBelieved) {
    scheduler.add("a", kPPD);
    const auto believed = QueueSync(scheduler, {.isDryRun = true}).sync("a").status;
    ASSERT_TRUE(believed);
    EXPECT_TRUE(believed->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey));
    scheduler.queues["a"].attributes.deviceURI = "socket://box.example";
    EXPECT_FALSE(QueueSync(scheduler, {.isDryRun = true}).sync("a").status);
}

TEST_F(QueueSyncRunTest, AQueueBehindWhichAnotherPrinterAnswersStaysAsItIs) {
    scheduler.add("a", kPPD);
    scheduler.queues["a"].attributes.deviceURI = "socket://box.example";
    const QueueSyncOutcome outcome = QueueSync(scheduler, {}).sync("a");
    EXPECT_EQ(outcome.cause, &queueSyncCause("another-printer"));
    EXPECT_EQ(outcome.result, QueueSyncResult::unsupported);
    EXPECT_EQ(outcome.statusURI, "ipp://box.example/ipp/print");
    EXPECT_EQ(scheduler.count("install"), 0);
}

/// A PPD that is updated by the answer to its question alone.
const std::string kQuestion =
    "*Product: \"(Office 20)\"\n*OpenGroup: InstallableOptions/Installable Options\n"
    "*OpenUI *Option1/Feeder: Boolean\n*DefaultOption1: False\n*Option1 True/Yes: \"\"\n"
    "*Option1 False/No: \"\"\n*?Option1: \"(True) = flush\"\n*CloseUI: *Option1\n"
    "*CloseGroup: InstallableOptions\n";
const std::string kPPDWithQuestion = "*PPD-Adobe: \"4.3\"\n" + kQuestion;

std::shared_ptr<const ReportedDeviceStatus> statusThatTells(std::string_view key,
                                                            OrbCSStatusValue value,
                                                            OrbCSPrinterIdentity identity = {}) {
    return std::make_shared<const ReportedDeviceStatus>(
        ReportedDeviceStatus::Values{{std::string(key), std::move(value)}},
        std::vector<std::string>(), OrbCSToldEntries{std::string(key)},
        std::vector<OrbCSStatusSource>(), std::move(identity));
}

class QueuesAskedOverPostScript : public QueueSyncRunTest {
  protected:
    QueueSyncOutcome sync(const std::string& PPD, std::map<std::string, std::string> places = {},
                          const std::string& deviceURI = "socket://box.example") {
        scheduler.add("a", PPD);
        scheduler.queues["a"].attributes.deviceURI = deviceURI;
        const auto makeManager = [] {
            auto manager = std::make_unique<OrbPPDConcreteUpdatingManager>();
            manager->registerUpdaterClass(OrbClassFromName("OrbPPDInstallableOptionsUpdater"));
            return manager;
        };
        return QueueSync(scheduler, {.makeManager = makeManager,
                                     .statusURIs = std::move(places),
                                     .postScriptPrinters = printer})
            .sync("a");
    }

    std::shared_ptr<const FakeCommunicationServices> printer =
        std::make_shared<const FakeCommunicationServices>(
            statusThatTells(kTkCSInstalledOptionsKey, OrbCSInstalledOptions{{"Option1", "True"}}));
};

TEST_F(QueuesAskedOverPostScript, AreUpdatedByWhatTheirPrinterAnswers) {
    EXPECT_EQ(sync(kPPDWithQuestion).result, QueueSyncResult::updated);
    ASSERT_EQ(printer->requests.size(), 1U);
    EXPECT_EQ(printer->requests[0].deviceURI, "socket://box.example");
    EXPECT_THAT(*scheduler.queues["a"].PPD, testing::HasSubstr("\n*DefaultOption1: True\n"));
}

TEST_F(QueuesAskedOverPostScript, AreAskedNothingWhenAnotherPrinterAnswersAtTheHost) {
    const std::string object =
        "*?OIDOption1: \"1.3.6.1.2.1.43.8.2.1.2.1.2\"\n*OIDOption1 True: \"3\"\n";
    for (const std::string& PPD : {kPPD + kQuestion, kPPDWithQuestion + object}) {
        const QueueSyncOutcome outcome = sync(PPD);
        EXPECT_EQ(outcome.cause, &queueSyncCause("another-printer")) << PPD;
        EXPECT_THAT(outcome.reason, testing::HasSubstr("//box.example"));
        EXPECT_EQ(scheduler.count("install"), 0) << PPD;
    }
    EXPECT_TRUE(printer->requests.empty());
}

TEST_F(QueuesAskedOverPostScript, StayAsTheyAreWhenThePrinterSaysThatItIsAnother) {
    printer = std::make_shared<const FakeCommunicationServices>(
        OrbCSError{OrbCSError::Cause::anotherPrinter, "it is the lab's"});
    OrbCoreInterface::setCommunicationServices(std::make_shared<const FakeCommunicationServices>(
        statusThatTells(kTkCSDeviceAccessoriesKey, OrbCSDeviceAccessories{{"Tray2", true}},
                        {.deviceIDs = {}, .models = {"Office 20"}, .makers = {}})));
    for (const std::string& PPD : {kPPDWithQuestion, kPPD + kQuestion}) {
        const QueueSyncOutcome outcome = sync(PPD);
        EXPECT_EQ(outcome.cause, &queueSyncCause("another-printer")) << PPD;
        EXPECT_EQ(outcome.reason, "it is the lab's");
        EXPECT_TRUE(outcome.answers.empty());
        EXPECT_EQ(scheduler.count("install"), 0) << PPD;
    }
    EXPECT_EQ(printer->requests.size(), 2U);
}

TEST_F(QueuesAskedOverPostScript, AreAskedWhichPrinterTheyAreUnlessTheUserNamesThePlace) {
    const auto isJudged = [this] {
        const auto& questions = std::any_cast<std::shared_ptr<const OrbCSPostScriptQuestions>>(
            printer->requests.back().parameters->find(kTkCSPostScriptQuestionsKey)->second);
        return questions->reasonNotToAsk && questions->reasonNotToAsk("Lab 3") &&
               !questions->reasonNotToAsk("Office 20");
    };
    (void)sync(kPPDWithQuestion);
    EXPECT_TRUE(isJudged());
    for (const std::string deviceURI : {"socket://box.example", "usb://Zr/Office"}) {
        // What answers at its host is not asked, and not believed without.
        const QueueSyncOutcome outcome =
            sync(kPPD + kQuestion, {{"a", "socket://box.example"}}, deviceURI);
        EXPECT_EQ(outcome.result, QueueSyncResult::updated) << outcome.reason;
        EXPECT_EQ(outcome.statusURI, "socket://box.example");
        EXPECT_EQ(printer->requests.back().deviceURI, "socket://box.example");
        EXPECT_FALSE(isJudged());
    }
    EXPECT_THAT(*scheduler.queues["a"].PPD,
                testing::HasSubstr("\n*DefaultZrLowerTrayInstalled: False\n"));
}

TEST_F(QueueSyncRunTest, RaisesWhatTheObserverRaises) {
    scheduler.add("a", kPPD);
    observer.finished = [](const QueueSyncOutcome&) { throw std::runtime_error("full disk"); };
    EXPECT_THROW(run({}), std::runtime_error);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
