// The synchronisation of a queue against a real scheduler, with what may happen meanwhile.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cups/ipp.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <thread>

#include "backends/cups/CUPSScheduler.h"
#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/TkCSKeys.h"
#include "sync/QueuePPDSource.h"
#include "sync/QueueSync.h"
#include "sync/QueueSyncCauses.h"
#include "tests/real/ChildProcess.h"
#include "tests/real/PrivateScheduler.h"
#include "tests/support/FileContents.h"
#include "tests/support/FullListener.h"
#include "tests/support/HostileIPPResponder.h"
#include "tests/support/MeddledScheduler.h"
#include "tests/support/SlowPrinter.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

const std::string kOfficePPD = TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-office.ppd";

/// The PPD of a queue, asked for alone.
SchedulerPPD PPDOfQueue(const QueueScheduler& scheduler, QueueFailure& failure) {
    SchedulerPPD PPD;
    const bool isWhole = scheduler.talkAbout(
        "office", [&](QueueTalk& queue) { PPD = queue.PPD(failure); },
        QueueScheduler::Patience::untilCancelled, failure);
    return isWhole ? PPD : SchedulerPPD();
}

std::optional<SchedulerQueue> queueOf(const QueueScheduler& scheduler, QueueFailure& failure) {
    std::optional<SchedulerQueue> queue;
    const bool isWhole = scheduler.talkAbout(
        "office", [&](QueueTalk& talk) { queue = talk.queue(failure); },
        QueueScheduler::Patience::untilCancelled, failure);
    return isWhole ? queue : std::nullopt;
}

class RealQueueSync : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(PrivateScheduler::missingPrograms(), "");
        OrbCoreInterface::setCore(std::make_shared<const PPDModelCore>());
        setPrinter(std::make_shared<FakeDeviceStatus>(FakeDeviceStatus::Values{
            {std::string(kTkCSDeviceAccessoriesKey),
             OrbCSDeviceAccessories{{"Duplexer", true}, {"Tray2", true}}}}));
    }

    static void setPrinter(std::shared_ptr<const OrbCSDeviceStatus> status) {
        OrbCoreInterface::setCommunicationServices(
            std::make_shared<const FakeCommunicationServices>(std::move(status)));
    }

    void startScheduler() {
        real_ = std::make_unique<PrivateScheduler>();
        client_ = std::make_unique<CUPSScheduler>(real_->server());
        scheduler_ = std::make_unique<MeddledScheduler>(*client_);
    }

    void startWithQueue() {
        startScheduler();
        real_->addQueue("office", "ipp://127.0.0.1:9/Office", kOfficePPD);
    }

    QueueSyncOutcome sync(const std::string& queueName = "office") const {
        return QueueSync(*scheduler_, {}).sync(queueName);
    }

    std::string installedPPD() const { return contentsOfFile(real_->PPDPath("office")); }

    CoreInterfaceScope scope_;
    std::unique_ptr<PrivateScheduler> real_;
    std::unique_ptr<CUPSScheduler> client_;
    std::unique_ptr<MeddledScheduler> scheduler_;
};

TEST_F(RealQueueSync, InstallsAndReadsBack) {
    startWithQueue();
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::updated) << outcome.reason;
    EXPECT_TRUE(installedPPD() == *outcome.after);
    EXPECT_THAT(*outcome.after, HasSubstr("\n*DefaultZrLowerTrayInstalled: True\n"));
}

TEST_F(RealQueueSync, ASilentPrinterLeavesItsQueueAlone) {
    startWithQueue();
    setPrinter(nullptr);
    const std::string before = installedPPD();
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::unreachable);
    EXPECT_EQ(outcome.cause, &queueSyncCause("no-status"));
    EXPECT_THAT(outcome.reason, StartsWith("its printer gives no status"));
    EXPECT_TRUE(installedPPD() == before);
}

TEST_F(RealQueueSync, ASchedulerThatStopsBeforeTheInstallationIsAFailureAndNotToldAsASuccess) {
    startWithQueue();
    const std::string before = installedPPD();
    scheduler_->beforeInstallation = [this] { real_->stop(); };
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::failed);
    EXPECT_EQ(outcome.cause, &queueSyncCause("not-known"));
    EXPECT_EQ(outcome.reason,
              "it is not known whether the updated PPD was installed: the scheduler cannot be "
              "reached: it does not take a connection");
    EXPECT_TRUE(installedPPD() == before);
}

TEST_F(RealQueueSync, ASchedulerThatWantsAPasswordIsAFailureAndNobodyIsAsked) {
    startWithQueue();
    const std::string before = installedPPD();
    real_->lock();
    client_ = std::make_unique<CUPSScheduler>(real_->server());
    scheduler_ = std::make_unique<MeddledScheduler>(*client_);
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::failed);
    EXPECT_EQ(outcome.cause, &queueSyncCause("scheduler-refuses"));
    EXPECT_EQ(
        outcome.reason,
        "the updated PPD was not installed: the scheduler refuses it: it wants a password; run "
        "this as root, or as a member of the group lpadmin");
    EXPECT_TRUE(installedPPD() == before);
}

/// What a scheduler does not take, which answers the nth request with these bytes after it has told
/// that it knows the queue.
QueueFailure failureOfInstallation(const std::string& answer) {
    HostileIPPResponder responder([&](const ResponderConnection& c) {
        c.readRequest();
        c.send(HostileIPPResponder::HTTPAnswer(IPPBytes().end()));
        c.readRequest();
        c.send(answer);
    });
    const CUPSScheduler scheduler("127.0.0.1:" + std::to_string(responder.port()));
    QueueFailure failure;
    QueueFailure ofTalk;
    scheduler.talkAbout(
        "office",
        [&](QueueTalk& queue) {
            EXPECT_TRUE(queue.queue(failure)) << failure.reason;
            // Without a whole answer it may have been done.
            const QueueTalk::Delivery delivery = queue.install("*PPD-Adobe: \"4.3\"\n", failure);
            EXPECT_EQ(delivery, failure.isOf(queueSyncCause("no-scheduler"))
                                    ? QueueTalk::Delivery::unknown
                                    : QueueTalk::Delivery::notTaken);
        },
        QueueScheduler::Patience::untilCancelled, ofTalk);
    return failure;
}

TEST(BrokenSchedulers, WhatTheySayOfAnInstallationIsToldInOneLanguage) {
    struct Case {
        std::string answer;
        const QueueSyncCause& cause;
        std::string reason;
    };
    constexpr std::size_t kTooLong = 9'999'999;
    const std::vector<Case> cases = {
        {"HTTP/1.1 403 Verboten\r\nContent-Length: 0\r\n\r\n", queueSyncCause("scheduler-refuses"),
         "the scheduler refuses it (HTTP status 403); run this as root, or as a member of the "
         "group lpadmin"},
        {"HTTP/1.1 500 Oh\r\nContent-Length: 0\r\n\r\n", queueSyncCause("scheduler-error"),
         "the scheduler answers with an error (HTTP status 500)"},
        {HostileIPPResponder::HTTPAnswer(
             IPPBytes(0x0404).value(IPP_TAG_TEXT, "status-message", "Unable to copy").end()),
         queueSyncCause("scheduler-error"),
         "the scheduler answers with an error (client-error-not-possible): Unable to copy"},
        {HostileIPPResponder::HTTPAnswer("not IPP"), queueSyncCause("no-scheduler"),
         "the scheduler's answer is not IPP"},
        {"", queueSyncCause("no-scheduler"), "the scheduler closed the connection"},
        {"HTTP/1.1 200 OK\r\nContent-Type: application/ipp\r\nContent-Length: " +
             std::to_string(kTooLong) + "\r\n\r\n" + std::string(kTooLong, 'x'),
         queueSyncCause("no-scheduler"), "the answer is longer than 8388608 bytes"}};
    // Side by side: the client waits a second for each to say that it may go on.
    std::vector<std::jthread> threads;
    for (const Case& each : cases) {
        threads.emplace_back([&each] {
            const QueueFailure failure = failureOfInstallation(each.answer);
            EXPECT_EQ(failure.cause, &each.cause) << failure.reason;
            EXPECT_EQ(failure.reason, each.reason);
        });
    }
}

TEST_F(RealQueueSync, AnInstallationWhoseAnswerWasLostIsToldAsTheUpdateThatItIs) {
    startWithQueue();
    scheduler_->answerLost = true;
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::updated) << outcome.reason;
    EXPECT_TRUE(installedPPD() == *outcome.after);
}

TEST_F(RealQueueSync, AQueueThatWasChangedMeanwhileIsNotTouched) {
    startWithQueue();
    scheduler_->beforeSecondTalk = [this] {
        ASSERT_EQ(
            real_->runClient({"lpadmin", "-p", "office", "-o", "Resolution=1200dpi"}).exitStatus,
            0);
    };
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::failed);
    EXPECT_EQ(outcome.reason, "it was changed meanwhile; nothing was installed");
    EXPECT_EQ(outcome.cause, &queueSyncCause("changed-meanwhile"));
    EXPECT_EQ(scheduler_->installations, 0);
}

TEST_F(RealQueueSync, AQueueWhoseDeviceWasChangedMeanwhileIsNotTouched) {
    startWithQueue();
    scheduler_->beforeSecondTalk = [this] {
        ASSERT_EQ(real_->runClient({"lpadmin", "-p", "office", "-v", "ipp://127.0.0.1:9/Other"})
                      .exitStatus,
                  0);
    };
    EXPECT_EQ(sync().reason, "it was changed meanwhile; nothing was installed");
    EXPECT_EQ(scheduler_->installations, 0);
}

TEST_F(RealQueueSync, AQueueThatWasDeletedMeanwhileIsNotCreatedAgain) {
    startWithQueue();
    scheduler_->beforeSecondTalk = [this] {
        ASSERT_EQ(real_->runClient({"lpadmin", "-x", "office"}).exitStatus, 0);
    };
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::failed);
    EXPECT_EQ(outcome.reason, "it can no longer be looked up: there is no queue of that name");
    QueueFailure failure;
    EXPECT_EQ(client_->queueNames(failure), std::vector<std::string>());
}

TEST_F(RealQueueSync, ARawQueueIsSkipped) {
    startScheduler();
    real_->addQueue("raw", "ipp://127.0.0.1:9/Raw", "");
    const QueueSyncOutcome outcome = sync("raw");
    EXPECT_EQ(outcome.result, QueueSyncResult::skipped);
    EXPECT_EQ(outcome.reason, "it is a raw queue, which has no PPD");
}

TEST_F(RealQueueSync, AClassIsListedAndSkipped) {
    startWithQueue();
    ASSERT_EQ(real_->runClient({"lpadmin", "-p", "office", "-c", "class"}).exitStatus, 0);
    const QueueSyncOutcome outcome = sync("class");
    EXPECT_EQ(outcome.result, QueueSyncResult::skipped);
    EXPECT_EQ(outcome.reason, "it is a class, which has no PPD");
    QueueFailure failure;
    EXPECT_EQ(client_->queueNames(failure), (std::vector<std::string>{"class", "office"}));
}

TEST_F(RealQueueSync, APPDInWhichNothingFollowsThePrinterIsSkippedAndThePrinterNotAsked) {
    startScheduler();
    const auto printer = std::make_shared<const FakeCommunicationServices>(nullptr);
    OrbCoreInterface::setCommunicationServices(printer);
    for (const std::string comment : {"caf\xC3\xA9", "caf\xE9"}) {
        real_->addQueue(
            "office", "ipp://127.0.0.1:9/Office",
            real_->directory().write(
                "foreign.ppd", "*PPD-Adobe: \"4.3\"\n*% " + comment + "\n*ModelName: \"X\"\n"));
        const QueueSyncOutcome outcome = sync();
        EXPECT_EQ(outcome.result, QueueSyncResult::skipped) << outcome.reason;
        EXPECT_EQ(outcome.reason, "nothing in its PPD follows the printer");
        EXPECT_EQ(outcome.cause, nullptr);
    }
    EXPECT_TRUE(printer->requests.empty());
}

TEST_F(RealQueueSync, APrinterWhoseStatusNobodyReadsIsNotAsked) {
    startWithQueue();
    const auto printer = std::make_shared<const FakeCommunicationServices>(nullptr);
    OrbCoreInterface::setCommunicationServices(printer);
    const auto onlyPageSize = [] {
        auto manager = std::make_unique<OrbPPDConcreteUpdatingManager>();
        const auto all = manager->registeredClasses();
        for (const OrbClass* each : all) {
            if (each->name() != "OrbPPDDefaultPageSizeUpdater") {
                manager->unregisterUpdaterClass(each);
            }
        }
        return manager;
    };
    OrbCoreInterface::setEnvironment(std::make_shared<const FakeEnvironment>(
        std::map<std::string, std::string>{{"ZrCurrentLocaleIdentifier", "de_DE"}}));
    const QueueSyncOutcome outcome =
        QueueSync(*scheduler_, {.makeManager = onlyPageSize}).sync("office");
    EXPECT_EQ(outcome.cause, nullptr) << outcome.reason;
    EXPECT_TRUE(printer->requests.empty());
}

TEST_F(RealQueueSync, AQueueNameWithAPathInItIsNotAskedFor) {
    startWithQueue();
    for (const char* name : {"../office", "a/b", "office.ppd/..", "..", "", "of fice", "a?b#c"}) {
        const QueueSyncOutcome outcome = sync(name);
        EXPECT_EQ(outcome.result, QueueSyncResult::failed) << name;
        EXPECT_EQ(outcome.reason, "cannot be the name of a queue") << name;
    }
}

TEST_F(RealQueueSync, APPDOfTheDriverThatIsNotUTF8IsUnsupportedAndStays) {
    startScheduler();
    std::string latin = contentsOfFile(kOfficePPD);
    latin.insert(latin.find("*OpenUI"), "*% caf\xE9\n");
    const std::size_t offset = latin.find('\xE9');
    real_->addQueue("office", "ipp://127.0.0.1:9/Office",
                    real_->directory().write("latin.ppd", latin));
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::unsupported);
    EXPECT_EQ(outcome.cause, &queueSyncCause("not-utf8"));
    EXPECT_EQ(outcome.reason, "its PPD is not valid UTF-8 at byte " + std::to_string(offset));
    EXPECT_EQ(installedPPD(), latin);
}

TEST_F(RealQueueSync, WhatThePrinterDidNotTellStaysAndIsNamed) {
    startWithQueue();
    setPrinter(std::make_shared<const ReportedDeviceStatus>(
        ReportedDeviceStatus::Values{
            {std::string(kTkCSDeviceAccessoriesKey), OrbCSDeviceAccessories{{"Tray2", true}}}},
        std::vector<std::string>(), OrbCSToldEntries{"DeviceAccessories.Tray2"}));
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::updated) << outcome.reason;
    EXPECT_EQ(outcome.keptEntries,
              (std::vector<std::string>{"DeviceAccessories.Duplexer", "MaxSupportedResolution",
                                        "RemainingPagesEstimations"}));
    EXPECT_THAT(installedPPD(), HasSubstr("\n*DefaultZrLowerTrayInstalled: True\n"));
    EXPECT_THAT(installedPPD(), HasSubstr("\n*ZrAutoDuplexCapability: Unknown\n"));
}

TEST_F(RealQueueSync, TheSourceOfQueuesPPDsTellsNoPPDFromNoAnswer) {
    startWithQueue();
    const auto source = queuePPDSource(std::make_shared<const CUPSScheduler>(real_->server()));
    std::string reason;
    const auto known = source("office", reason);
    ASSERT_TRUE(known && *known) << reason;
    EXPECT_EQ(**known, installedPPD());
    const auto unknown = source("nobody", reason);
    ASSERT_TRUE(unknown.has_value()) << reason;
    EXPECT_EQ(*unknown, nullptr);
    real_->stop();
    EXPECT_FALSE(source("office", reason).has_value());
}

TEST_F(RealQueueSync, APPDLongerThanTheLimitIsAFailure) {
    startWithQueue();
    const CUPSScheduler impatient(real_->server(), {.bytes = 1000});
    EXPECT_EQ(QueueSync(impatient, {}).sync("office").reason,
              "its PPD cannot be read: the answer is longer than 1000 bytes");
}

/// A scheduler that breaks off its answer, which would be `whole`, after so many bytes.
SchedulerPPD PPDOfBrokenScheduler(const std::string& whole, std::size_t bytes,
                                  QueueFailure& failure) {
    HostileIPPResponder broken([&](const ResponderConnection& c) {
        c.readRequest();
        c.send(std::string_view(whole).substr(0, bytes));
    });
    return PPDOfQueue(CUPSScheduler("127.0.0.1:" + std::to_string(broken.port())), failure);
}

TEST(BrokenSchedulers, APPDThatIsCutAnywhereIsNone) {
    const std::string whole =
        "HTTP/1.1 200 OK\r\nContent-Length: 20\r\n\r\n*PPD-Adobe: \"4.3\"\n*%";
    QueueFailure failure;
    for (std::size_t bytes = 0; bytes < whole.size(); ++bytes) {
        failure = {};
        EXPECT_EQ(PPDOfBrokenScheduler(whole, bytes, failure).text, nullptr) << bytes;
        EXPECT_NE(failure.reason, "") << bytes;
        EXPECT_EQ(failure.cause, &queueSyncCause("no-scheduler")) << bytes;
    }
    EXPECT_NE(PPDOfBrokenScheduler(whole, whole.size(), failure).text, nullptr) << failure.reason;
}

TEST(BrokenSchedulers, OneThatClosesTheConnectionAfterEachAnswerIsAskedAgain) {
    const std::string queue = IPPBytes()
                                  .delimiter(IPP_TAG_PRINTER)
                                  .value(IPP_TAG_URI, "device-uri", "ipp://printer/ipp/print")
                                  .end();
    const std::string PPD = "*PPD-Adobe: \"4.3\"\n";
    std::atomic<int> connections{0};
    HostileIPPResponder closing([&](const ResponderConnection& c) {
        const std::string& body = connections++ == 0 ? queue : PPD;
        c.readRequest();
        c.send(
            "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: application/ipp\r\n"
            "Content-Length: " +
            std::to_string(body.size()) + "\r\n\r\n" + body);
    });
    const CUPSScheduler scheduler("127.0.0.1:" + std::to_string(closing.port()));
    QueueFailure failure;
    scheduler.talkAbout(
        "office",
        [&](QueueTalk& talk) {
            const auto known = talk.queue(failure);
            ASSERT_TRUE(known) << failure.reason;
            EXPECT_EQ(known->deviceURI, "ipp://printer/ipp/print");
            const SchedulerPPD itsPPD = talk.PPD(failure);
            ASSERT_TRUE(itsPPD.text) << failure.reason;
            EXPECT_EQ(*itsPPD.text, PPD);
        },
        QueueScheduler::Patience::untilCancelled, failure);
    EXPECT_EQ(connections, 2);
}

TEST(BrokenSchedulers, APPDInChunksThatIsCutAnywhereIsNone) {
    const std::string whole =
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
        "a\r\n*PPD-Adobe\r\n8\r\n: \"4.3\"\n\r\n0\r\n\r\n";
    QueueFailure failure;
    // Without the last line feeds it is as good as whole.
    const std::size_t end = whole.find("\r\n0\r\n");
    for (std::size_t bytes = 0; bytes <= end; ++bytes) {
        failure = {};
        EXPECT_EQ(PPDOfBrokenScheduler(whole, bytes, failure).text, nullptr) << bytes;
        EXPECT_NE(failure.reason, "") << bytes;
        EXPECT_EQ(failure.cause, &queueSyncCause("no-scheduler")) << bytes;
    }
    const SchedulerPPD PPD = PPDOfBrokenScheduler(whole, whole.size(), failure);
    ASSERT_NE(PPD.text, nullptr) << failure.reason;
    EXPECT_EQ(*PPD.text, "*PPD-Adobe: \"4.3\"\n");
}

TEST_F(RealQueueSync, ASchedulerThatSaysNothingEndsAtTheLimit) {
    HostileIPPResponder silent([](const ResponderConnection& c) { c.waitForClose(); });
    const CUPSScheduler scheduler("127.0.0.1:" + std::to_string(silent.port()),
                                  {.time = std::chrono::milliseconds(200)});
    EXPECT_EQ(QueueSync(scheduler, {}).sync("office").reason,
              "the scheduler cannot be reached: there was no whole answer within 200 ms");
}

TEST_F(RealQueueSync, CancelledBeforeItBeginsItAbandonsTheQueue) {
    startWithQueue();
    const std::atomic<bool> isCancelled{true};
    const QueueSyncOutcome outcome =
        QueueSync(*scheduler_, {.isCancelled = &isCancelled}).sync("office");
    EXPECT_EQ(outcome.result, QueueSyncResult::abandoned);
    EXPECT_EQ(scheduler_->talks, 0);
}

TEST_F(RealQueueSync, OnceInstallingHasBegunItFinishes) {
    startWithQueue();
    std::atomic<bool> isCancelled{false};
    scheduler_->beforeInstallation = [&isCancelled] { isCancelled = true; };
    const QueueSyncOutcome outcome =
        QueueSync(*scheduler_, {.isCancelled = &isCancelled}).sync("office");
    EXPECT_EQ(outcome.result, QueueSyncResult::updated) << outcome.reason;
    EXPECT_TRUE(installedPPD() == *outcome.after);
}

/// Waits until something is so, for a few seconds.
bool comesTrue(const std::function<bool()>& condition) {
    for (int tries = 0; tries < 500; ++tries) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

TEST_F(RealQueueSync, AJobThatIsBeingPrintedReachesThePrinterOnce) {
    startScheduler();
    SlowPrinter printer;
    real_->addQueue("office", printer.URI(), kOfficePPD);
    const std::string before = installedPPD();
    const std::string document = real_->directory().write("document.txt", "one page\n");
    ASSERT_EQ(real_->runClient({"lp", "-d", "office", "-o", "raw", document}).exitStatus, 0);
    ASSERT_TRUE(comesTrue([&] { return printer.documents() == 1; }));

    // It only prints: what it has, is asked elsewhere.
    const std::map<std::string, std::string> statusURIs = {{"office", "fake:office"}};
    QueueSyncOutcome outcome =
        QueueSync(*scheduler_, {.statusURIs = statusURIs, .wait = std::chrono::milliseconds(0)})
            .sync("office");
    EXPECT_EQ(outcome.result, QueueSyncResult::busy) << outcome.reason;
    EXPECT_EQ(outcome.cause, &queueSyncCause("printing"));
    EXPECT_TRUE(installedPPD() == before);

    std::jthread printing([&] {
        comesTrue([&, talks = scheduler_->talks.load()] { return scheduler_->talks > talks + 2; });
        printer.mayPrint = true;
    });
    outcome =
        QueueSync(*scheduler_, {.statusURIs = statusURIs, .pause = std::chrono::milliseconds(50)})
            .sync("office");
    ASSERT_EQ(outcome.result, QueueSyncResult::updated) << outcome.reason;
    EXPECT_TRUE(installedPPD() == *outcome.after);
    EXPECT_THAT(outcome.notes, testing::IsEmpty());
    EXPECT_EQ(printer.documents(), 1);
    EXPECT_EQ(contentsOfFile((real_->directory().path() / "error_log").string()).find("restarted"),
              std::string::npos);
}

TEST_F(RealQueueSync, AJobThatIsHeldOrWaitsDoesNotMatter) {
    startWithQueue();
    const std::string document = real_->directory().write("document.txt", "one page\n");
    ASSERT_EQ(real_->runClient({"cupsdisable", "office"}).exitStatus, 0);
    for (const char* hold : {"no-hold", "indefinite"}) {
        ASSERT_EQ(real_
                      ->runClient({"lp", "-d", "office", "-o",
                                   std::string("job-hold-until=") + hold, document})
                      .exitStatus,
                  0);
    }
    const QueueSyncOutcome outcome =
        QueueSync(*scheduler_, {.wait = std::chrono::milliseconds(0)}).sync("office");
    EXPECT_EQ(outcome.result, QueueSyncResult::updated) << outcome.reason;
}

TEST_F(RealQueueSync, APausedQueueKeepsItsMessageAndTheReasonsOfItsState) {
    startWithQueue();
    ASSERT_EQ(
        real_->runClient({"cupsdisable", "-r", "waits for paper", "--hold", "office"}).exitStatus,
        0);
    ASSERT_EQ(real_->runClient({"cupsdisable", "-r", "waits for paper", "office"}).exitStatus, 0);
    QueueFailure failure;
    const auto before = queueOf(*client_, failure);
    ASSERT_TRUE(before) << failure.reason;
    ASSERT_THAT(before->stateReasons, testing::UnorderedElementsAre("paused", "hold-new-jobs"));
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::updated) << outcome.reason;
    EXPECT_THAT(outcome.notes, testing::IsEmpty());
    const auto after = queueOf(*client_, failure);
    ASSERT_TRUE(after) << failure.reason;
    EXPECT_EQ(after->state, SchedulerQueue::State::stopped);
    EXPECT_THAT(after->stateReasons, testing::UnorderedElementsAre("paused", "hold-new-jobs"));
    EXPECT_THAT(real_->runClient({"lpstat", "-p", "office"}).standardOutput,
                HasSubstr("waits for paper"));
}

TEST_F(RealQueueSync, AQueueThatIsNotPausedDoesNotBecomeSo) {
    startWithQueue();
    EXPECT_EQ(sync().result, QueueSyncResult::updated);
    QueueFailure failure;
    const auto after = queueOf(*client_, failure);
    ASSERT_TRUE(after) << failure.reason;
    EXPECT_EQ(after->state, SchedulerQueue::State::idle);
    EXPECT_THAT(after->stateReasons, testing::IsEmpty());
}

TEST(BrokenSchedulers, ASecondConnectionHasNoTimeOfItsOwn) {
    // Knows the queue, closes the connection, and takes no other: its queue of connections is full.
    const FullListener full(HostileIPPResponder::HTTPAnswer(IPPBytes().end()),
                            "Connection: close\r\n");
    const CUPSScheduler scheduler("127.0.0.1:" + std::to_string(full.port()),
                                  {.time = std::chrono::milliseconds(500)});
    QueueFailure failure;
    const auto begin = std::chrono::steady_clock::now();
    bool isKnown = false;
    // Whether the talk's limit or the connection's share of it ends first is open: both end here.
    (void)scheduler.talkAbout(
        "office",
        [&](QueueTalk& queue) {
            isKnown = queue.queue(failure).has_value();
            EXPECT_FALSE(queue.PPD(failure).text);
        },
        QueueScheduler::Patience::untilCancelled, failure);
    EXPECT_FALSE(failure.reason.empty());
    EXPECT_TRUE(isKnown);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

TEST(BrokenSchedulers, OneWhoseAnswerIsNotHTTPIsNotWaitedFor) {
    // What follows its first line never comes, and it leaves the connection open.
    HostileIPPResponder broken([](const ResponderConnection& c) {
        c.send("220 mail ready\r\n");
        c.waitForClose();
    });
    const CUPSScheduler scheduler("127.0.0.1:" + std::to_string(broken.port()),
                                  {.time = std::chrono::seconds(10)});
    QueueFailure failure;
    auto delivery = QueueTalk::Delivery::taken;
    const auto talk = [&](QueueTalk& queue) {
        EXPECT_FALSE(queue.queue(failure));
        EXPECT_EQ(failure.reason, "the scheduler closed the connection");
        delivery = queue.install("*PPD-Adobe: \"4.3\"\n", failure);
    };
    EXPECT_TRUE(
        scheduler.talkAbout("office", talk, QueueScheduler::Patience::untilCancelled, failure));
    EXPECT_EQ(failure.reason, "the scheduler closed the connection");
    EXPECT_EQ(delivery, QueueTalk::Delivery::unknown);
}

TEST(BrokenSchedulers, OneThatDoesNotAnswerIsNotWaitedForOnceTheRunIsCancelled) {
    HostileIPPResponder silent([](const ResponderConnection& c) { c.waitForClose(); });
    std::atomic<bool> isCancelled{false};
    const CUPSScheduler scheduler("127.0.0.1:" + std::to_string(silent.port()),
                                  {.isCancelled = &isCancelled});
    std::jthread canceller([&] {
        comesTrue([&] { return silent.connections() == 1; });
        isCancelled = true;
    });
    const auto begin = std::chrono::steady_clock::now();
    QueueFailure failure;
    EXPECT_FALSE(queueOf(scheduler, failure));
    EXPECT_EQ(failure.cause, &queueSyncCause("interrupted"));
    EXPECT_FALSE(scheduler.queueNames(failure));
    EXPECT_EQ(failure.cause, &queueSyncCause("interrupted"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

TEST(BrokenSchedulers, OneThatDoesNotAnswerToAnInstallationIsGivenAMomentWhenTheRunIsCancelled) {
    std::atomic<bool> isCancelled{false};
    HostileIPPResponder slow([&](const ResponderConnection& c) {
        c.readRequest();
        isCancelled = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        c.send(HostileIPPResponder::HTTPAnswer(IPPBytes().end()));
    });
    const CUPSScheduler scheduler("127.0.0.1:" + std::to_string(slow.port()),
                                  {.isCancelled = &isCancelled});
    QueueFailure failure;
    auto delivery = QueueTalk::Delivery::notTaken;
    EXPECT_TRUE(scheduler.talkAbout(
        "office", [&](QueueTalk& queue) { delivery = queue.install("*PPD", failure); },
        QueueScheduler::Patience::untilCancelled, failure));
    EXPECT_EQ(delivery, QueueTalk::Delivery::taken) << failure.reason;
}

TEST_F(RealQueueSync, APPDWithCarriageReturnsComesThroughByteForByte) {
    startScheduler();
    std::string text;
    for (const char character : contentsOfFile(kOfficePPD)) {
        text += character == '\n' ? "\r\n" : std::string(1, character);
    }
    real_->addQueue("office", "ipp://127.0.0.1:9/Office",
                    real_->directory().write("crlf.ppd", text));
    QueueFailure failure;
    EXPECT_EQ(*PPDOfQueue(*client_, failure).text, text);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
