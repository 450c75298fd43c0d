// Printers that answer SNMP at the usual port, and the queues that lead to them, in a network that
// is the test's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/backends/snmp/SNMPTestRows.h"
#include "tests/real/ChildProcess.h"
#include "tests/real/PrivateNetwork.h"
#include "tests/real/PrivateScheduler.h"
#include "tests/real/SNMPPrinter.h"
#include "tests/real/SimulatedPrinter.h"
#include "tests/support/FileContents.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr int kIPPPort = 631;
constexpr int kSNMPPort = 161;

constexpr const char* kOfficePPD = TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-office.ppd";

/// The laser printer, of the model that the PPD is for.
std::string officePrinter() {
    std::string rows = SNMPTables::kLaser;
    for (std::size_t at = rows.find("Office 1"); at != std::string::npos;
         at = rows.find("Office 1", at + 1)) {
        rows.replace(at, std::string_view("Office 1").size(), "Office 20");
    }
    return rows;
}

class SNMPQueues : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(PrivateScheduler::missingPrograms() + SimulatedPrinter::missingPrograms() +
                      SNMPPrinter::missingPrograms(),
                  "");
        ASSERT_EQ(PrivateNetwork::enter(), "");
    }

    ProgramResult runTool(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), TKPPDUPDATING_TOOL);
        ProgramSurroundings surroundings;
        surroundings.environment = {{"CUPS_SERVERROOT", folder_.path().string()},
                                    {"HOME", folder_.path().string()},
                                    {"LC_ALL", "C"},
                                    {"CUPS_SERVER", std::nullopt}};
        return runProgram(arguments, surroundings);
    }

    std::string statusOf(const std::string& URI) const {
        const ProgramResult run = runTool({"status", URI});
        EXPECT_EQ(run.exitStatus, 0) << URI << ": " << run.standardError;
        return run.standardOutput;
    }

    ProgramResult sync(const PrivateScheduler& scheduler,
                       std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"sync", "--server", scheduler.server()});
        return runTool(arguments);
    }

    TemporaryDirectory folder_;
};

void expectIn(const std::string& status, std::initializer_list<const char*> texts) {
    for (const char* text : texts) {
        EXPECT_THAT(status, HasSubstr(text));
    }
}

TEST_F(SNMPQueues, ALaserPrinterAtTheUsualPort) {
    const SNMPPrinter printer(SNMPTables::kLaser, kSNMPPort);
    for (const char* URI : {"snmp://127.0.0.1", "snmp://[::1]"}) {
        expectIn(statusOf(URI),
                 {"\"Duplexer\",\n      \"isInstalled\": true",
                  "\"Tray2\",\n      \"isInstalled\": true", "\"ZrPenDyes\": \"K,C,M,Y\"",
                  "\"ZrPenInkSufficient\": \"1,1,0,1\"", "\"MaxSupportedResolution\": 1200"});
    }
}

TEST_F(SNMPQueues, AnInkjetPrinterAtTheUsualPort) {
    const SNMPPrinter printer(SNMPTables::kInkjet, kSNMPPort);
    expectIn(
        statusOf("snmp://127.0.0.1"),
        {"\"Duplexer\",\n      \"isInstalled\": false", "\"Tray2\",\n      \"isInstalled\": false",
         "\"C,M,Y,Photo black ink,Matte black ink,orange\"",
         "\"ZrPenInkSufficient\": \"1,1,1,1,1,0\"", "\"MaxSupportedResolution\": 4800"});
}

TEST_F(SNMPQueues, ALabelPrinterAtTheUsualPort) {
    const SNMPPrinter printer(SNMPTables::kLabel, kSNMPPort);
    const std::string status = statusOf("snmp://127.0.0.1");
    EXPECT_THAT(status, Not(HasSubstr("Duplexer")));
    EXPECT_THAT(status, HasSubstr("\"Tray2\",\n      \"isInstalled\": false"));
    EXPECT_THAT(status, Not(HasSubstr("ZrPen")));
    EXPECT_THAT(status, HasSubstr("\"MaxSupportedResolution\": 203"));
}

TEST_F(SNMPQueues, ASocketQueueGetsWhatItsPrinterSaysOverSNMP) {
    const SNMPPrinter printer(officePrinter(), kSNMPPort);
    const PrivateScheduler scheduler;
    scheduler.addQueue("office", "socket://127.0.0.1", kOfficePPD);
    const ProgramResult run = sync(scheduler, {"office", "--json"});
    EXPECT_EQ(run.exitStatus, 0) << run.standardOutput << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr("{\"queue\":\"office\",\"result\":\"updated\","));
    EXPECT_THAT(run.standardOutput, HasSubstr("\"statusURI\":\"snmp://127.0.0.1\""));
    const std::string installed = contentsOfFile(scheduler.PPDPath("office"));
    EXPECT_THAT(contentsOfFile(kOfficePPD), HasSubstr("\n*DefaultZrLowerTrayInstalled: False\n"));
    EXPECT_THAT(installed, HasSubstr("\n*DefaultZrLowerTrayInstalled: True\n"));
    EXPECT_THAT(installed, HasSubstr("\n*ZrMaxSupportedResolution: 1200\n"));
    EXPECT_THAT(sync(scheduler, {"office"}).standardOutput, HasSubstr("office: unchanged\n"));
    EXPECT_EQ(contentsOfFile(scheduler.PPDPath("office")), installed);
}

/// The office printer's PPD with a question that one of its objects answers.
std::string PPDWithObject() {
    std::string PPD = contentsOfFile(kOfficePPD);
    const std::string end = "*CloseGroup: InstallableOptions";
    EXPECT_NE(PPD.find(end), std::string::npos);
    PPD.insert(PPD.find(end),
               "*OpenUI *OptionFeeder/Feeder: PickOne\n*DefaultOptionFeeder: None\n"
               "*OptionFeeder None/Not Installed: \"\"\n*OptionFeeder Tray/A Tray: \"\"\n"
               // prtInputType.1.2
               "*?OIDOptionFeeder: \".1.3.6.1.2.1.43.8.2.1.2.1.2\"\n"
               "*OIDOptionFeeder None: \"2\"\n*OIDOptionFeeder Tray: \"3\"\n"
               "*CloseUI: *OptionFeeder\n");
    return PPD;
}

TEST_F(SNMPQueues, AnObjectThatThePPDAsksForSetsItsOption) {
    const SNMPPrinter printer(officePrinter(), kSNMPPort);
    const PrivateScheduler scheduler;
    scheduler.addQueue("office", "socket://127.0.0.1",
                       folder_.write("object.ppd", PPDWithObject()));
    const ProgramResult run = sync(scheduler, {"office"});
    EXPECT_EQ(run.exitStatus, 0) << run.standardOutput << run.standardError;
    EXPECT_THAT(run.standardOutput,
                HasSubstr("  Feeder: asked over SNMP: Not Installed -> A Tray\n"));
    EXPECT_THAT(contentsOfFile(scheduler.PPDPath("office")),
                HasSubstr("\n*DefaultOptionFeeder: Tray\n"));
    const ProgramResult values = runTool(
        {"values", "--ppd", scheduler.PPDPath("office"), "--device-uri", "snmp://127.0.0.1"});
    EXPECT_THAT(values.standardOutput, HasSubstr("\"DefaultOptionFeeder\": \"Tray\""));
    EXPECT_THAT(values.standardError, HasSubstr("Feeder: asked over SNMP: A Tray, as before"));
}

TEST_F(SNMPQueues, AnObjectOfAnotherPrinterSetsNothing) {
    const SNMPPrinter printer(SNMPTables::kInkjet, kSNMPPort);
    const PrivateScheduler scheduler;
    scheduler.addQueue("office", "socket://127.0.0.1",
                       folder_.write("object.ppd", PPDWithObject()));
    const std::string before = contentsOfFile(scheduler.PPDPath("office"));
    EXPECT_EQ(sync(scheduler, {"office"}).exitStatus, 4);
    EXPECT_EQ(contentsOfFile(scheduler.PPDPath("office")), before);
}

TEST_F(SNMPQueues, AnotherPrinterBehindTheSocketChangesNothing) {
    const SNMPPrinter printer(SNMPTables::kInkjet, kSNMPPort);
    const PrivateScheduler scheduler;
    scheduler.addQueue("office", "socket://127.0.0.1", kOfficePPD);
    const std::string before = contentsOfFile(scheduler.PPDPath("office"));
    const ProgramResult run = sync(scheduler, {"office", "--json"});
    EXPECT_EQ(run.exitStatus, 4) << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr("{\"queue\":\"office\",\"result\":\"unsupported\","));
    EXPECT_THAT(run.standardOutput, HasSubstr("\"another-printer\""));
    EXPECT_THAT(run.standardOutput, HasSubstr("ZR Inkjet 6"));
    EXPECT_EQ(contentsOfFile(scheduler.PPDPath("office")), before);
}

TEST_F(SNMPQueues, APrinterThatHasBothIsAskedOverIPPOnly) {
    const SNMPPrinter slow(officePrinter(), kSNMPPort);
    const SimulatedPrinter printer(
        "ATTR text printer-make-and-model \"Zr Office 20\"\n"
        "ATTR keyword sides-supported one-sided\n"
        "ATTR keyword media-source-supported tray-1\n",
        {.port = kIPPPort});
    const PrivateScheduler scheduler;
    scheduler.addQueue("office", "socket://127.0.0.1", kOfficePPD);
    const std::size_t before = slow.requests();
    const ProgramResult run = sync(scheduler, {"office", "--json"});
    EXPECT_EQ(run.exitStatus, 0) << run.standardOutput << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr("\"statusURI\":\"ipp://127.0.0.1/ipp/print\""));
    EXPECT_THAT(contentsOfFile(scheduler.PPDPath("office")),
                HasSubstr("\n*DefaultZrLowerTrayInstalled: False\n"));
    EXPECT_EQ(slow.requests(), before);
    statusOf("snmp://127.0.0.1");
    EXPECT_GT(slow.requests(), before);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
