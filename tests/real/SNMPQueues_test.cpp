// Printers that answer SNMP at the usual port, and the queues that lead to them, in a network that
// is the test's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/backends/snmp/SNMPTestRows.h"
#include "tests/real/PrivateNetwork.h"
#include "tests/real/SNMPPrinter.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr int kSNMPPort = 161;

class SNMPQueues : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(SNMPPrinter::missingPrograms(), "");
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

    TemporaryDirectory folder_;
};

TEST_F(SNMPQueues, ALaserPrinterAtTheUsualPort) {
    const SNMPPrinter printer(SNMPTables::kLaser, kSNMPPort);
    for (const char* URI : {"snmp://127.0.0.1", "snmp://[::1]"}) {
        const std::string status = statusOf(URI);
        EXPECT_THAT(status, HasSubstr("\"Duplexer\",\n      \"isInstalled\": true")) << URI;
        EXPECT_THAT(status, HasSubstr("\"Tray2\",\n      \"isInstalled\": true"));
        EXPECT_THAT(status, HasSubstr("\"ZrPenDyes\": \"K,C,M,Y\""));
        EXPECT_THAT(status, HasSubstr("\"ZrPenInkSufficient\": \"1,1,0,1\""));
        EXPECT_THAT(status, HasSubstr("\"MaxSupportedResolution\": 1200"));
    }
}

TEST_F(SNMPQueues, AnInkjetPrinterAtTheUsualPort) {
    const SNMPPrinter printer(SNMPTables::kInkjet, kSNMPPort);
    const std::string status = statusOf("snmp://127.0.0.1");
    EXPECT_THAT(status, HasSubstr("\"Duplexer\",\n      \"isInstalled\": false"));
    EXPECT_THAT(status, HasSubstr("\"Tray2\",\n      \"isInstalled\": false"));
    EXPECT_THAT(status, HasSubstr("\"C,M,Y,Photo black ink,Matte black ink,orange\""));
    EXPECT_THAT(status, HasSubstr("\"ZrPenInkSufficient\": \"1,1,1,1,1,0\""));
    EXPECT_THAT(status, HasSubstr("\"MaxSupportedResolution\": 4800"));
}

TEST_F(SNMPQueues, ALabelPrinterAtTheUsualPort) {
    const SNMPPrinter printer(SNMPTables::kLabel, kSNMPPort);
    const std::string status = statusOf("snmp://127.0.0.1");
    EXPECT_THAT(status, Not(HasSubstr("Duplexer")));
    EXPECT_THAT(status, HasSubstr("\"Tray2\",\n      \"isInstalled\": false"));
    EXPECT_THAT(status, Not(HasSubstr("ZrPen")));
    EXPECT_THAT(status, HasSubstr("\"MaxSupportedResolution\": 203"));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
