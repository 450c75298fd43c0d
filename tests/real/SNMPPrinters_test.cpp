// Printers whose tables a real SNMP agent serves.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "tests/backends/snmp/SNMPTestRows.h"
#include "tests/real/SNMPPrinter.h"
#include "tests/support/RunProgram.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class SNMPPrinters : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(SNMPPrinter::missingPrograms(), ""); }

    ProgramResult status(const std::string& URI) const {
        ProgramSurroundings surroundings;
        surroundings.environment = {{"CUPS_SERVERROOT", serverRoot_.path().string()},
                                    {"LC_ALL", "C"}};
        return runProgram({TKPPDUPDATING_TOOL, "status", URI}, surroundings);
    }

    TemporaryDirectory serverRoot_;
};

TEST_F(SNMPPrinters, ALaserPrinterWithADuplexerAndTwoTrays) {
    const SNMPPrinter printer(SNMPTables::kLaser);
    const ProgramResult result = status(printer.URI());
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.standardError, "");
    EXPECT_THAT(result.standardOutput, StartsWith(R"({
  "DeviceAccessories": [
    {
      "name": "Duplexer",
      "isInstalled": true
    },
    {
      "name": "Tray2",
      "isInstalled": true
    }
  ],
  "InstalledPensConfiguration": {
    "PPDAttributeValues": {
      "ZrPenDyes": "K,C,M,Y",
      "ZrPenInkSufficient": "1,1,0,1"
    }
  },
  "MaxSupportedResolution": 1200)"));
}

TEST_F(SNMPPrinters, AnInkjetPrinterWithSixInks) {
    const SNMPPrinter printer(SNMPTables::kInkjet);
    const std::string text = status(printer.URI()).standardOutput;
    EXPECT_THAT(text, HasSubstr("\"ZrPenDyes\": "
                                "\"C,M,Y,Photo black ink,Matte black ink,orange\""));
    EXPECT_THAT(text, HasSubstr("\"ZrPenInkSufficient\": \"1,1,1,1,1,0\""));
    EXPECT_THAT(text, HasSubstr("\"MaxSupportedResolution\": 4800"));
}

TEST_F(SNMPPrinters, ALabelPrinterThatDoesNotTellItsPaths) {
    const SNMPPrinter printer(SNMPTables::kLabel);
    const std::string text = status(printer.URI()).standardOutput;
    EXPECT_EQ(text.find("Duplexer"), std::string::npos);
    EXPECT_EQ(text.find("ZrPen"), std::string::npos);
    EXPECT_THAT(text, HasSubstr("\"MaxSupportedResolution\": 203"));
}

TEST_F(SNMPPrinters, APrinterWithACommunityOfItsOwn) {
    const SNMPPrinter printer(SNMPTables::kLabel, 0, "ours");
    serverRoot_.write("snmp.conf", "Community ours\n");
    EXPECT_THAT(status(printer.URI()).standardOutput, HasSubstr("\"MaxSupportedResolution\": 203"));
}

TEST_F(SNMPPrinters, NoConfigurationOfTheLibraryIsRead) {
    const SNMPPrinter printer(SNMPTables::kInkjet);
    // With this, net-snmp would ask as version 3 only and write every packet down.
    const std::string home = serverRoot_.path().string();
    serverRoot_.write("snmp/snmp.conf", "defVersion 3\ndumpPacket yes\ndoDebugging 1\n");
    serverRoot_.write(".snmp/snmp.conf", "dumpPacket yes\nclientaddr 192.0.2.1\n");
    ProgramSurroundings surroundings;
    surroundings.environment = {{"CUPS_SERVERROOT", home},
                                {"HOME", home},
                                {"SNMPCONFPATH", home + "/snmp"},
                                {"MIBS", "ALL"},
                                {"MIBDIRS", "/nonexistent"}};
    const auto result = runProgram({TKPPDUPDATING_TOOL, "status", printer.URI()}, surroundings);
    EXPECT_EQ(result.standardError, "");
    EXPECT_THAT(result.standardOutput, HasSubstr("\"MaxSupportedResolution\": 4800"));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
