// The synchronisation of a queue against a real scheduler, with what may happen meanwhile.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cups/ipp.h>

#include <atomic>
#include <functional>
#include <string>

#include "backends/cups/CUPSScheduler.h"
#include "backends/cups/QueueSync.h"
#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/TkCSKeys.h"
#include "sync/QueueSyncCauses.h"
#include "tests/real/ChildProcess.h"
#include "tests/real/HostileIPPResponder.h"
#include "tests/real/PrivateScheduler.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

const std::string kOfficePPD = TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-office.ppd";

/// Hands everything to a scheduler, and does something before a PPD is asked for or installed.
class MeddledScheduler : public QueueScheduler {
  public:
    explicit MeddledScheduler(const QueueScheduler& scheduler) : scheduler_(scheduler) {}

    std::optional<std::vector<std::string>> queueNames(QueueFailure& failure) const override {
        return scheduler_.queueNames(failure);
    }
    SchedulerQueueAndPPD queueAndPPDWithName(const std::string& name,
                                             QueueFailure& failure) const override {
        ++looks;
        if (looks == 2 && beforeSecondLook) {
            beforeSecondLook();
        }
        return scheduler_.queueAndPPDWithName(name, failure);
    }
    SchedulerPPD PPDOfQueue(const std::string& name, QueueFailure& failure) const override {
        return scheduler_.PPDOfQueue(name, failure);
    }
    bool installPPD(const std::string& name, const std::string& text,
                    QueueFailure& failure) const override {
        ++installations;
        if (beforeInstallation) {
            beforeInstallation();
        }
        if (!scheduler_.installPPD(name, text, failure)) {
            return false;
        }
        failure = {&queueSyncCause("no-scheduler"), "the answer was lost"};
        return !answerLost;
    }

    /// Whether the answer to an installation does not arrive.
    bool answerLost = false;
    std::function<void()> beforeSecondLook;
    std::function<void()> beforeInstallation;
    mutable int looks = 0;
    mutable int installations = 0;

  private:
    const QueueScheduler& scheduler_;
};

class RealQueueSync : public testing::Test {
  protected:
    void SetUp() override {
        const std::string missing = PrivateScheduler::missingPrograms();
        if (!missing.empty()) {
            GTEST_SKIP() << missing;
        }
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
    EXPECT_EQ(installedPPD(), *outcome.after);
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
    EXPECT_EQ(installedPPD(), before);
}

TEST_F(RealQueueSync, ASchedulerThatStopsBetweenReadAndInstallIsAFailure) {
    startWithQueue();
    const std::string before = installedPPD();
    scheduler_->beforeInstallation = [this] { real_->stop(); };
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::failed);
    EXPECT_EQ(outcome.reason,
              "the updated PPD was not installed: the scheduler cannot be reached: it does not "
              "take a connection");
    EXPECT_EQ(installedPPD(), before);
}

TEST_F(RealQueueSync, ASchedulerThatWantsAPasswordIsAFailureAndNobodyIsAsked) {
    startWithQueue();
    const std::string before = installedPPD();
    real_->lock();
    client_ = std::make_unique<CUPSScheduler>(real_->server());
    scheduler_ = std::make_unique<MeddledScheduler>(*client_);
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::failed);
    EXPECT_THAT(outcome.reason,
                StartsWith("the updated PPD was not installed: the scheduler refuses it: "));
    EXPECT_EQ(installedPPD(), before);
}

TEST_F(RealQueueSync, ASchedulerThatForbidsIsAFailure) {
    startWithQueue();
    const std::string before = installedPPD();
    // It knows the queue and answers what follows with 403.
    HostileIPPResponder forbidding([](const ResponderConnection& c) {
        c.readRequest();
        c.send(HostileIPPResponder::HTTPAnswer(IPPBytes().end()));
        c.readRequest();
        c.send("HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n");
        c.waitForClose();
    });
    const CUPSScheduler scheduler("127.0.0.1:" + std::to_string(forbidding.port()));
    QueueFailure failure;
    EXPECT_FALSE(scheduler.installPPD("office", before, failure));
    EXPECT_EQ(failure.cause, &queueSyncCause("scheduler-refuses"));
    EXPECT_EQ(failure.reason, "the scheduler refuses it: Forbidden");
}

TEST_F(RealQueueSync, AnInstallationWhoseAnswerWasLostIsToldAsTheUpdateThatItIs) {
    startWithQueue();
    scheduler_->answerLost = true;
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::updated) << outcome.reason;
    EXPECT_EQ(installedPPD(), *outcome.after);
}

TEST_F(RealQueueSync, AQueueThatWasChangedMeanwhileIsNotTouched) {
    startWithQueue();
    scheduler_->beforeSecondLook = [this] {
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
    scheduler_->beforeSecondLook = [this] {
        ASSERT_EQ(real_->runClient({"lpadmin", "-p", "office", "-v", "ipp://127.0.0.1:9/Other"})
                      .exitStatus,
                  0);
    };
    EXPECT_EQ(sync().reason, "it was changed meanwhile; nothing was installed");
    EXPECT_EQ(scheduler_->installations, 0);
}

TEST_F(RealQueueSync, AQueueThatWasDeletedMeanwhileIsNotCreatedAgain) {
    startWithQueue();
    scheduler_->beforeSecondLook = [this] {
        ASSERT_EQ(real_->runClient({"lpadmin", "-x", "office"}).exitStatus, 0);
    };
    const QueueSyncOutcome outcome = sync();
    EXPECT_EQ(outcome.result, QueueSyncResult::failed);
    EXPECT_EQ(outcome.reason, "it can no longer be looked up: there is no queue of that name");
    QueueFailure failure;
    EXPECT_EQ(client_->queueNames(failure), std::vector<std::string>());
}

TEST_F(RealQueueSync, AQueueThatWasDeletedJustBeforeTheInstallationIsNotCreatedAgain) {
    startWithQueue();
    scheduler_->beforeInstallation = [this] {
        ASSERT_EQ(real_->runClient({"lpadmin", "-x", "office"}).exitStatus, 0);
    };
    EXPECT_EQ(sync().reason, "the updated PPD was not installed: there is no queue of that name");
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
    const CUPSScheduler impatient(real_->server(), {std::chrono::seconds(30), 1000});
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
    return CUPSScheduler("127.0.0.1:" + std::to_string(broken.port()))
        .PPDOfQueue("office", failure);
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
    const SchedulerQueueAndPPD both = scheduler.queueAndPPDWithName("office", failure);
    ASSERT_TRUE(both.queue) << failure.reason;
    EXPECT_EQ(both.queue->deviceURI, "ipp://printer/ipp/print");
    ASSERT_TRUE(both.PPD.text) << failure.reason;
    EXPECT_EQ(*both.PPD.text, PPD);
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
                                  {std::chrono::milliseconds(200), 1U << 20U});
    EXPECT_EQ(QueueSync(scheduler, {}).sync("office").reason,
              "the scheduler cannot be reached: there was no whole answer within 200 ms");
}

TEST_F(RealQueueSync, CancelledBeforeItBeginsItAbandonsTheQueue) {
    startWithQueue();
    const std::atomic<bool> isCancelled{true};
    const QueueSyncOutcome outcome =
        QueueSync(*scheduler_, {.isCancelled = &isCancelled}).sync("office");
    EXPECT_EQ(outcome.result, QueueSyncResult::abandoned);
    EXPECT_EQ(scheduler_->looks, 0);
}

TEST_F(RealQueueSync, OnceInstallingHasBegunItFinishes) {
    startWithQueue();
    std::atomic<bool> isCancelled{false};
    scheduler_->beforeInstallation = [&isCancelled] { isCancelled = true; };
    const QueueSyncOutcome outcome =
        QueueSync(*scheduler_, {.isCancelled = &isCancelled}).sync("office");
    EXPECT_EQ(outcome.result, QueueSyncResult::updated) << outcome.reason;
    EXPECT_EQ(installedPPD(), *outcome.after);
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
    EXPECT_EQ(*client_->PPDOfQueue("office", failure).text, text);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
