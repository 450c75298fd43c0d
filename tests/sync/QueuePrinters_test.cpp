#include "sync/QueuePrinters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>
#include <vector>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/TkCSKeys.h"
#include "tests/support/FakeNetwork.h"
#include "tests/support/ParsedPPD.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Cause = OrbCSError::Cause;
using Clock = std::chrono::steady_clock;

constexpr const char* kPrint = "ipp://host/ipp/print";
constexpr const char* kRoot = "ipp://host/";
constexpr const char* kSNMP = "snmp://host";

std::shared_ptr<const OrbCSDeviceStatus> printerNamed(const char* model) {
    OrbCSPrinterIdentity identity;
    if (model) {
        identity.models = {model};
    }
    return std::make_shared<const ReportedDeviceStatus>(
        ReportedDeviceStatus::Values(), std::vector<std::string>(), OrbCSToldEntries(),
        std::vector<OrbCSStatusSource>(), identity);
}

class QueuePrintersTest : public testing::Test {
  protected:
    void SetUp() override { OrbCoreInterface::setCommunicationServices(network); }

    void answer(const std::string& URI, const char* model) {
        network->places[URI].status = printerNamed(model);
    }
    void fail(const std::string& URI, Cause cause, const std::string& reason) {
        network->places[URI].error = {cause, reason};
    }
    void beSilent(const std::string& URI) {
        fail(URI, Cause::timeout, "no answer");
        network->places[URI].isSlow = true;
    }

    QueuePrinterAnswer ask(const std::string& deviceURI) const { return ask(deviceURI, {}); }
    QueuePrinterAnswer ask(const std::string& deviceURI, QueuePrinters::Options options) const {
        return QueuePrinters(std::move(options)).ask("office", deviceURI, *PPD);
    }

    CoreInterfaceScope scope;
    std::shared_ptr<FakeNetwork> network = std::make_shared<FakeNetwork>();
    std::shared_ptr<const PPDModelFile> PPD =
        parsedPPD("*Manufacturer: \"Zr\"\n*ModelName: \"Zr Office 20 Series\"\n");
};

TEST_F(QueuePrintersTest, ThePlacesOfAHostAreKnownByItsDeviceURI) {
    for (const char* URI :
         {"socket://host", "socket://host:9100", "SOCKET://host:9100/?waiteof=false", "lpd://host",
          "lpd://host/queue", "lpd://me@host:515/queue?format=l"}) {
        EXPECT_THAT(QueuePrinters::placesOfHost(URI), ElementsAre(kPrint, kRoot, kSNMP)) << URI;
    }
    EXPECT_THAT(QueuePrinters::placesOfHost("socket://[fe80::1%25eth0]"),
                ElementsAre("ipp://[fe80::1%25eth0]/ipp/print", "ipp://[fe80::1%25eth0]/",
                            "snmp://[fe80::1%25eth0]"));
    for (const char* URI : {"socket://host:9101", "lpd://host:9100/queue", "socket://",
                            "socket:", "usb://Zr/Office", "ipp://host/ipp/print", ""}) {
        EXPECT_THAT(QueuePrinters::placesOfHost(URI), IsEmpty()) << URI;
    }
}

TEST_F(QueuePrintersTest, APrinterThatHasBothIsAskedByIPPOnly) {
    answer(kPrint, "Zr Office 20");
    answer(kSNMP, "Zr Office 20");
    const auto found = ask("socket://host");
    EXPECT_EQ(found.status, network->places[kPrint].status);
    EXPECT_EQ(found.URI, kPrint);
    EXPECT_THAT(network->asked, ElementsAre(kPrint));
}

TEST_F(QueuePrintersTest, EachPlaceIsAskedWhenThoseBeforeItGaveNothing) {
    answer(kSNMP, "Zr Office 20; V 1.0");
    const auto last = ask("lpd://host/queue");
    EXPECT_NE(last.status, nullptr) << last.failure.reason;
    EXPECT_EQ(last.URI, kSNMP);
    EXPECT_THAT(network->asked, ElementsAre(kPrint, kRoot, kSNMP));
    answer(kRoot, "Zr Office 20");
    network->asked.clear();
    EXPECT_EQ(ask("lpd://host/queue").URI, kRoot);
    EXPECT_THAT(network->asked, ElementsAre(kPrint, kRoot));
}

TEST_F(QueuePrintersTest, AnotherPrinterIsNotBelievedAndNobodyElseIsAskedThen) {
    answer(kPrint, "Axis OfficeBASIC");
    answer(kSNMP, "Zr Office 20");
    const auto found = ask("socket://host");
    EXPECT_EQ(found.status, nullptr);
    EXPECT_EQ(found.URI, kPrint);
    EXPECT_EQ(found.failure.cause, &queueSyncCause("another-printer"));
    EXPECT_EQ(found.failure.cause->result, QueueSyncResult::unsupported);
    EXPECT_EQ(
        found.failure.reason,
        "at ipp://host/ipp/print answers \"Axis OfficeBASIC\", and its PPD is for \"Zr Office "
        "20 Series\"; name another place to ask with --status-uri office=URI");
    EXPECT_THAT(network->asked, ElementsAre(kPrint));
}

TEST_F(QueuePrintersTest, APPDWithoutAModelAgreesWithNobody) {
    PPD = parsedPPD("*NickName: \"Generic\"\n");
    answer(kPrint, "Zr Office 20");
    const auto found = ask("socket://host");
    EXPECT_EQ(found.failure.cause, &queueSyncCause("another-printer"));
    EXPECT_THAT(found.failure.reason, HasSubstr("does not say which printer it is for; name"));
}

TEST_F(QueuePrintersTest, AnAnswerThatDoesNotSayWhoseItIsLeavesTheNextPlaceToTell) {
    answer(kPrint, nullptr);
    answer(kSNMP, "Zr Office 20");
    EXPECT_EQ(ask("socket://host").URI, kSNMP);
    network->places.erase(kSNMP);
    const auto unknown = ask("socket://host");
    EXPECT_EQ(unknown.status, nullptr);
    EXPECT_EQ(unknown.URI, kPrint);
    EXPECT_EQ(unknown.failure.cause, &queueSyncCause("another-printer"));
    EXPECT_THAT(unknown.failure.reason,
                HasSubstr("ipp://host/ipp/print does not say which printer it is; name"));
}

TEST_F(QueuePrintersTest, ASilentPlaceLeavesTimeForThoseBehindIt) {
    beSilent(kPrint);
    beSilent(kRoot);
    answer(kSNMP, "Zr Office 20");
    EXPECT_EQ(ask("socket://host", {.time = milliseconds(600)}).URI, kSNMP);
    ASSERT_EQ(network->limits.size(), 3U);
    EXPECT_LE(network->limits[0], milliseconds(200));
    EXPECT_GT(network->limits[0], milliseconds(150));
    EXPECT_LE(network->limits[1], milliseconds(200));
    EXPECT_LE(network->limits[2], milliseconds(200));
}

TEST_F(QueuePrintersTest, WhereNobodyListensTheOthersGetTheTime) {
    answer(kSNMP, "Zr Office 20");
    EXPECT_EQ(ask("socket://host").URI, kSNMP);
    ASSERT_EQ(network->limits.size(), 3U);
    EXPECT_GT(network->limits[2], std::chrono::seconds(12));
    EXPECT_LE(network->limits[2], std::chrono::seconds(15));
}

TEST_F(QueuePrintersTest, AllPlacesTogetherHaveOneLimitOfTime) {
    for (const char* place : {kPrint, kRoot, kSNMP}) {
        beSilent(place);
    }
    const auto begin = Clock::now();
    const auto silent = ask("socket://host", {.time = milliseconds(300)});
    EXPECT_GE(Clock::now() - begin, milliseconds(290));
    milliseconds sum(0);
    for (const milliseconds each : network->limits) {
        sum += each;
    }
    EXPECT_LE(sum, milliseconds(300));
    EXPECT_EQ(silent.failure.cause, &queueSyncCause("timeout"));
    EXPECT_EQ(silent.URI, "");
    EXPECT_EQ(silent.failure.reason,
              "its printer gives no status: at ipp://host/ipp/print: no answer; at ipp://host/: no "
              "answer; at snmp://host: no answer");
}

TEST_F(QueuePrintersTest, TheCauseIsWhatAPrinterSaidRatherThanSilence) {
    EXPECT_EQ(ask("socket://host").failure.cause, &queueSyncCause("refused"));
    fail(kSNMP, Cause::timeout, "no answer");
    EXPECT_EQ(ask("socket://host").failure.cause, &queueSyncCause("timeout"));
    fail(kRoot, Cause::accessDenied, "wants a password");
    EXPECT_EQ(ask("socket://host").failure.cause, &queueSyncCause("access-denied"));
    fail(kSNMP, Cause::noBackend, "no backend for the scheme \"snmp\"");
    fail(kRoot, Cause::noConnection, "nobody listens");
    EXPECT_EQ(ask("socket://host").failure.cause, &queueSyncCause("refused"));
    for (const char* place : {kPrint, kRoot, kSNMP}) {
        fail(place, Cause::noBackend, "no backend");
    }
    EXPECT_EQ(ask("socket://host").failure.cause->result, QueueSyncResult::unreachable);
}

TEST_F(QueuePrintersTest, AHostWithoutAnAddressIsAskedOnce) {
    fail(kPrint, Cause::unknownHost, "its name is not known");
    EXPECT_EQ(ask("socket://host").failure.cause, &queueSyncCause("unknown-host"));
    EXPECT_THAT(network->asked, ElementsAre(kPrint));
}

TEST_F(QueuePrintersTest, TheQueuesOfOneHostShareItsAnswerAndAreComparedEach) {
    answer(kRoot, "Zr Office 20");
    const QueuePrinters printers({});
    EXPECT_NE(printers.ask("a", "socket://host", *PPD).status, nullptr);
    EXPECT_NE(printers.ask("b", "lpd://host/b", *PPD).status, nullptr);
    const auto other = parsedPPD("*ModelName: \"Zr Office 30\"\n");
    EXPECT_EQ(printers.ask("c", "socket://host:9100", *other).failure.cause,
              &queueSyncCause("another-printer"));
    EXPECT_THAT(network->asked, ElementsAre(kPrint, kRoot));
}

TEST_F(QueuePrintersTest, ANamedPlaceIsBelievedWhoeverAnswersAndTheQueuesOwnIsNotAsked) {
    answer("ipp://box/2", "Axis OfficeBASIC");
    for (const char* URI :
         {"socket://host", "socket://host:9101", "usb://Zr/Office", "ipp://host/"}) {
        network->asked.clear();
        const auto found = ask(URI, {.statusURIs = {{"office", "ipp://box/2"}}});
        EXPECT_NE(found.status, nullptr) << URI;
        EXPECT_EQ(found.URI, "ipp://box/2");
        EXPECT_THAT(network->asked, ElementsAre("ipp://box/2"));
    }
    EXPECT_EQ(ask("ipp://host/", {.statusURIs = {{"other", "ipp://box/2"}}}).failure.cause,
              &queueSyncCause("refused"));
}

TEST_F(QueuePrintersTest, AProductHasToBeThatOfThePPDAsFarAsItIsOne) {
    const auto file = parsedPPD(
        "*Manufacturer: \"Zr\"\n*ModelName: \"Zr Office 20 PS\"\n"
        "*Product: \"(Office 20)\"\n*Product: \"(Office 20d)\"\n");
    const auto judge = QueuePrinters({}).judgeOfProduct("office", "socket://host:9101", *file);
    ASSERT_TRUE(judge);
    for (const char* product :
         {"Office 20", "Office 20d", "Zr Office 20", "zr office-20d", "", "()", "\t", "-- --"}) {
        EXPECT_EQ(judge(product).value_or(""), "") << product;
    }
    EXPECT_EQ(
        judge("GPL Ghostscript"),
        "at socket://host:9101 answers \"GPL Ghostscript\", and its PPD is for \"Zr Office 20 "
        "PS\"; if it is the right one, say so with --status-uri office=socket://host:9101");
    for (const char* product : {"Office 200", "Office 2", "Other Office 20", "\xFF\xFE", "20"}) {
        EXPECT_TRUE(judge(product)) << product;
    }
    EXPECT_LT(judge(std::string(16'384, 'x'))->size(), 300U);
}

TEST_F(QueuePrintersTest, NoProductIsAskedForWhereTheUserNamesThePlaceOrThePPDSaysNone) {
    const auto file = parsedPPD("*Product: \"(Office 20)\"\n");
    const QueuePrinters named({.statusURIs = {{"office", "socket://host"}}});
    EXPECT_FALSE(named.judgeOfProduct("office", "socket://host", *file));
    EXPECT_TRUE(named.judgeOfProduct("lab", "socket://host", *file));
    EXPECT_FALSE(QueuePrinters({}).judgeOfProduct("office", "socket://host", *PPD));
}

TEST_F(QueuePrintersTest, APrinterAtItsOwnDeviceURIIsBelievedAndHasTheUsualTime) {
    answer("ipp://host/2", nullptr);
    const auto found = ask("ipp://host/2");
    EXPECT_NE(found.status, nullptr);
    EXPECT_EQ(found.URI, "ipp://host/2");
    EXPECT_THAT(network->limits, ElementsAre(milliseconds(0)));
}

TEST_F(QueuePrintersTest, WhereNobodyCanBeAskedTheReasonSaysWhatToDo) {
    fail("usb://Zr/Office", Cause::noBackend, "no backend for the scheme \"usb\"");
    const auto cable = ask("usb://Zr/Office");
    EXPECT_EQ(cable.failure.cause, &queueSyncCause("no-backend"));
    EXPECT_EQ(cable.failure.reason,
              "its printer cannot be asked: no backend for the scheme \"usb\"; name another place "
              "to ask with --status-uri office=URI");
    const auto box = ask("socket://host:9102");
    EXPECT_EQ(box.failure.cause, &queueSyncCause("no-backend"));
    EXPECT_THAT(box.failure.reason, HasSubstr("port 9102 may lead to another printer"));
    EXPECT_THAT(box.failure.reason, HasSubstr("--status-uri office=URI"));
    fail("socket://", Cause::malformedURI, "no host");
    EXPECT_EQ(ask("socket://").failure.cause, &queueSyncCause("bad-uri"));
}

TEST_F(QueuePrintersTest, ACancelledRunAsksNobodyElse) {
    const std::atomic<bool> yes{true};
    EXPECT_EQ(ask("socket://host", {.isCancelled = &yes}).status, nullptr);
    EXPECT_THAT(network->asked, IsEmpty());
}

TEST_F(QueuePrintersTest, OneQueueHasTheTurnAtAPlaceHoweverItsURIIsWritten) {
    const QueuePrinters printers({});
    auto first = printers.turnAt("socket://Host");
    const auto other = printers.turnAt("socket://host:9101");
    auto second = std::async(std::launch::async,
                             [&] { return printers.turnAt("socket://host:9100/?x").owns_lock(); });
    EXPECT_EQ(second.wait_for(milliseconds(100)), std::future_status::timeout);
    first.unlock();
    EXPECT_TRUE(second.get());
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
