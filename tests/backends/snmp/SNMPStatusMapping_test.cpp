#include "backends/snmp/SNMPStatusMapping.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core_interface/TkCSKeys.h"
#include "tests/backends/snmp/SNMPTestRows.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

std::shared_ptr<const ReportedDeviceStatus> statusOfText(const std::string& text) {
    OrbCSError error;
    auto status = SNMPStatusMapping::statusForRows(rowsOfText(text), error);
    EXPECT_NE(status, nullptr) << error.reason;
    return status;
}

/// "installed", "not installed" or "not told".
std::string accessory(const std::string& text, std::string_view name) {
    const auto status = statusOfText(text);
    const bool isTold = OrbCSPartialStatus::isTold(
        status->toldEntries(), OrbCSPartialStatus::entryForPart(kTkCSDeviceAccessoriesKey, name));
    const auto* all = status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey);
    const auto found =
        std::find_if(all ? all->begin() : OrbCSDeviceAccessories::const_iterator(),
                     all ? all->end() : OrbCSDeviceAccessories::const_iterator(),
                     [name](const OrbCSDeviceAccessory& each) { return each.name == name; });
    const bool isThere = all && found != all->end();
    EXPECT_EQ(isTold, isThere);
    return !isThere ? "not told" : found->isInstalled ? "installed" : "not installed";
}

std::string duplexer(const std::string& text) {
    return accessory(text, kTkCSDeviceAccessoryDuplexer);
}

std::string lowerTray(const std::string& text) {
    return accessory(text, kTkCSDeviceAccessoryTray2);
}

std::string pensValue(const std::string& text, std::string_view keyword) {
    const auto status = statusOfText(text);
    const bool isTold = OrbCSPartialStatus::isTold(
        status->toldEntries(),
        OrbCSPartialStatus::entryForPart(kTkCSInstalledPensConfigurationKey, keyword));
    const auto* pens =
        status->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey);
    const bool isThere = pens && pens->PPDAttributeValues.contains(keyword);
    EXPECT_EQ(isTold, isThere);
    return isThere ? pens->PPDAttributeValues.find(keyword)->second : "not told";
}

std::string dyes(const std::string& text) {
    return pensValue(text, kTkCSPPDPenDyesKey);
}

std::string levels(const std::string& text) {
    return pensValue(text, kTkCSPPDPenInkSufficientKey);
}

std::string resolution(const std::string& text) {
    const auto status = statusOfText(text);
    const auto* value =
        status->statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey);
    EXPECT_EQ(OrbCSPartialStatus::isTold(status->toldEntries(), kTkCSMaxSupportedResolutionKey),
              value != nullptr);
    return value ? value->stringValue() : "not told";
}

/// An input with its three cells.
std::string input(int number, int type, const std::string& name, int status = 0) {
    const std::string row = ".1." + std::to_string(number) + " = ";
    return "prtInputType" + row + std::to_string(type) + "\nprtInputName" + row + name +
           "\nprtInputStatus" + row + std::to_string(status) + "\n";
}

std::string paths(const std::vector<int>& types) {
    std::string text;
    for (std::size_t index = 0; index < types.size(); ++index) {
        text += "prtMediaPathType.1." + std::to_string(index + 1) + " = " +
                std::to_string(types[index]) + "\n";
    }
    return text;
}

struct Supply {
    int type = 5;
    std::string colorant;
    std::string name;
    int level = 50;
    int supplyClass = 3;
};

std::string supplies(const std::vector<Supply>& list) {
    std::string text;
    for (std::size_t index = 0; index < list.size(); ++index) {
        const std::string row = ".1." + std::to_string(index + 1) + " = ";
        const Supply& each = list[index];
        text += "prtMarkerSuppliesType" + row + std::to_string(each.type) + "\n";
        text += "prtMarkerSuppliesClass" + row + std::to_string(each.supplyClass) + "\n";
        text += "prtMarkerSuppliesLevel" + row + std::to_string(each.level) + "\n";
        text += "prtMarkerSuppliesDescription" + row + each.name + "\n";
        text += "prtMarkerSuppliesColorantIndex" + row +
                (each.colorant.empty() ? "0" : std::to_string(index + 1)) + "\n";
        if (!each.colorant.empty()) {
            text += "prtMarkerColorantValue" + row + each.colorant + "\n";
        }
    }
    return text;
}

std::string marker(int number, int unit, int feed, int cross) {
    const std::string row = ".1." + std::to_string(number) + " = ";
    return "prtMarkerAddressabilityUnit" + row + std::to_string(unit) +
           "\nprtMarkerAddressabilityFeedDir" + row + std::to_string(feed) +
           "\nprtMarkerAddressabilityXFeedDir" + row + std::to_string(cross) + "\n";
}

std::string without(std::string text, const std::string& cell) {
    const std::size_t begin = text.find(cell);
    EXPECT_NE(begin, std::string::npos);
    return text.erase(begin, text.find('\n', begin) + 1 - begin);
}

TEST(SNMPStatusMapping, ALaserPrinter) {
    EXPECT_EQ(duplexer(SNMPTables::kLaser), "installed");
    EXPECT_EQ(lowerTray(SNMPTables::kLaser), "installed");
    EXPECT_EQ(dyes(SNMPTables::kLaser), "K,C,M,Y");
    EXPECT_EQ(levels(SNMPTables::kLaser), "1,1,0,1");
    EXPECT_EQ(resolution(SNMPTables::kLaser), "1200");
    EXPECT_THAT(statusOfText(SNMPTables::kLaser)->droppedValues(), IsEmpty());
}

TEST(SNMPStatusMapping, AnInkjetPrinter) {
    EXPECT_EQ(duplexer(SNMPTables::kInkjet), "not installed");
    EXPECT_EQ(lowerTray(SNMPTables::kInkjet), "not installed");
    EXPECT_EQ(dyes(SNMPTables::kInkjet), "C,M,Y,Photo black ink,Matte black ink,orange");
    EXPECT_EQ(levels(SNMPTables::kInkjet), "1,1,1,1,1,0");
    EXPECT_EQ(resolution(SNMPTables::kInkjet), "4800");
}

TEST(SNMPStatusMapping, ALabelPrinter) {
    EXPECT_EQ(duplexer(SNMPTables::kLabel), "not told");
    EXPECT_EQ(lowerTray(SNMPTables::kLabel), "not installed");
    EXPECT_EQ(dyes(SNMPTables::kLabel), "not told");
    EXPECT_EQ(levels(SNMPTables::kLabel), "not told");
    EXPECT_EQ(resolution(SNMPTables::kLabel), "203");
}

TEST(SNMPStatusMapping, WhatNoTableTellsIsNotTold) {
    const auto status = statusOfText(SNMPTables::kLaser);
    ASSERT_TRUE(status->toldEntries());
    EXPECT_THAT(*status->toldEntries(),
                UnorderedElementsAre("DeviceAccessories.Duplexer", "DeviceAccessories.Tray2",
                                     "InstalledPensConfiguration.ZrPenDyes",
                                     "InstalledPensConfiguration.ZrPenInkSufficient",
                                     "MaxSupportedResolution"));
}

TEST(SNMPStatusMapping, NoRowsAreNoStatus) {
    OrbCSError error;
    EXPECT_EQ(SNMPStatusMapping::statusForRows(SNMPRows(), error), nullptr);
    EXPECT_EQ(error.reason, "it has none of a printer's tables");
    // A computer has devices, too.
    EXPECT_EQ(SNMPStatusMapping::statusForRows(rowsOfText("hrDeviceDescr.1 = CPU\n"), error),
              nullptr);
    EXPECT_EQ(error.reason, "it has none of a printer's tables");
}

TEST(SNMPStatusMapping, RowsOfTwoPrintersAreNoStatus) {
    OrbCSError error;
    const SNMPRows rows = rowsOfText("prtMediaPathType.1.1 = 5\nprtInputType.2.1 = 3\n");
    EXPECT_EQ(SNMPStatusMapping::statusForRows(rows, error), nullptr);
    EXPECT_EQ(error.reason, "several printers answer there");
}

TEST(SNMPStatusMapping, TheDuplexerByTheKindsOfMediaPaths) {
    const std::map<std::vector<int>, std::string> cases = {{{3}, "installed"},
                                                           {{4}, "installed"},
                                                           {{5, 4}, "installed"},
                                                           {{1, 2, 3}, "installed"},
                                                           {{5}, "not installed"},
                                                           {{5, 5}, "not installed"},
                                                           {{5, 2}, "not told"},
                                                           {{1}, "not told"},
                                                           {{2}, "not told"},
                                                           {{0}, "not told"},
                                                           {{6}, "not told"},
                                                           {{-3}, "not told"},
                                                           {{5, 2147483647}, "not told"}};
    for (const auto& [types, expected] : cases) {
        EXPECT_EQ(duplexer(paths(types)), expected) << paths(types);
    }
    EXPECT_EQ(duplexer(input(1, 3, "Tray 1")), "not told");
}

TEST(SNMPStatusMapping, TheLowerTrayByTypeNameAndStatus) {
    const std::string first = input(1, 3, "Tray 1");
    const std::map<std::string, std::string> cases = {
        {"", "not installed"},
        {input(2, 3, "Tray 2"), "installed"},
        {input(2, 4, "Tray 2"), "installed"},
        {input(2, 3, "Rear Auto Sheet Feeder"), "installed"},
        {input(2, 3, "Manuals"), "installed"},
        {input(2, 5, "Tray 2"), "not installed"},
        {input(2, 6, "Roll"), "not installed"},
        {input(2, 7, "Fanfold"), "not installed"},
        {input(2, 1, "Tray 2"), "not installed"},
        {input(2, 4, "MP Tray"), "not installed"},
        {input(2, 4, "Multi-Purpose Feeder"), "not installed"},
        {input(2, 3, "Bypass"), "not installed"},
        {input(2, 3, "By Pass Tray"), "not installed"},
        {input(2, 3, "Manual Feed"), "not installed"},
        {input(2, 3, "Envelope Feeder"), "not installed"},
        {input(2, 3, "Auto"), "not installed"},
        {input(2, 2, "Tray 2"), "not told"},
        {input(2, 99, "Tray 2"), "not told"},
        {input(2, -3, "Tray 2"), "not told"},
        {input(2, 3, ""), "not told"},
        {input(2, 3, "Tray 1"), "not told"},
        {input(2, 3, "Tray \xE9"), "not told"},
        {input(2, 3, "Tray \"2\""), "not told"},
        {input(2, 2, "Tray 2") + input(3, 3, "Tray 3"), "installed"}};
    for (const auto& [second, expected] : cases) {
        EXPECT_EQ(lowerTray(first + second), expected) << second;
    }
}

TEST(SNMPStatusMapping, ATrayCountsUnlessItsStatusIsUnknownOrBroken) {
    // Availability, and with it alerts, off-line, in transition.
    const std::map<int, std::string> cases = {
        {0, "installed"},         {1, "installed"},         {2, "installed"},
        {4, "installed"},         {6, "installed"},         {8 + 4, "installed"},
        {16 + 1, "installed"},    {32 + 64, "installed"},   {3, "not told"},
        {5, "not told"},          {7, "not told"},          {16 + 3, "not told"},
        {32 + 5, "not told"},     {128, "not told"},        {-1, "not told"},
        {2147483640, "not told"}, {-2147483647, "not told"}};
    for (const auto& [status, expected] : cases) {
        EXPECT_EQ(lowerTray(input(1, 3, "Tray 1") + input(2, 3, "Tray 2", status)), expected)
            << status;
    }
}

TEST(SNMPStatusMapping, ACellThatIsMissingLeavesTheLowerTrayOpen) {
    const std::string two = input(1, 3, "Tray 1") + input(2, 4, "Tray 2");
    for (const char* cell : {"prtInputType.1.2", "prtInputName.1.2", "prtInputStatus.1.2"}) {
        EXPECT_EQ(lowerTray(without(two, cell)), "not told") << cell;
    }
}

TEST(SNMPStatusMapping, InksAndTonersAreNamedByTheirColorants) {
    EXPECT_EQ(dyes(supplies({{3, "cyan", ""},
                             {5, "MAGENTA", ""},
                             {6, "Yellow", ""},
                             {21, "black", ""},
                             {5, "light cyan", ""}})),
              "C,M,Y,K,light cyan");
    // Not a waste box, a drum, a ribbon, nor what is filled.
    EXPECT_EQ(dyes(supplies({{4, "black", ""},
                             {9, "black", ""},
                             {7, "black", ""},
                             {5, "black", "", 50, 4},
                             {21, "cyan", ""}})),
              "C");
    EXPECT_EQ(dyes(supplies({{21, "black", "", 50, 1}})), "K");
    EXPECT_EQ(dyes(supplies({{15, "", "Fuser"}})), "not told");
}

TEST(SNMPStatusMapping, AnInkWithoutAColorantIsNamedByItself) {
    EXPECT_EQ(dyes(supplies({{5, "", "Photo ink"}, {5, "cyan", "x"}})), "Photo ink,C");
    EXPECT_EQ(dyes(supplies({{5, "unknown", "Photo ink"}})), "Photo ink");
    EXPECT_EQ(dyes(supplies({{5, "Other", "Photo ink"}})), "Photo ink");
    EXPECT_EQ(dyes(supplies({{5, "none", ""}})), "not told");
    EXPECT_EQ(dyes(supplies({{5, "", ""}})), "not told");
    EXPECT_EQ(dyes(supplies({{5, "", "Ink, cyan"}})), "not told");
}

TEST(SNMPStatusMapping, ColorantsAreReadAsColoursAreOverIPP) {
    const auto three = supplies({{5, "#39D2E7#D945DD#DFD31D", "", 0}, {5, "#231F20", "", 9}});
    EXPECT_EQ(dyes(three), "C,M,Y,K");
    EXPECT_EQ(levels(three), "0,0,0,1");
    // Near no primary: it says nothing, so that the supply's own name does.
    EXPECT_EQ(dyes(supplies({{5, "#808080", "Grey"}, {5, "#808080", "BLACK"}})), "Grey,K");
    EXPECT_EQ(dyes(supplies({{5, "#808080", ""}})), "not told");
    EXPECT_EQ(dyes(supplies({{5, "", "Cyan"}})), "C");
}

TEST(SNMPStatusMapping, LevelsOfInksThatAreNotKnownAreNotTold) {
    EXPECT_EQ(levels(supplies({{5, "cyan", "", 0}, {5, "", "", 50}})), "not told");
    EXPECT_EQ(levels(supplies({{5, std::string(200, 'a'), ""}, {5, std::string(43, 'b'), ""}})),
              "not told");
}

TEST(SNMPStatusMapping, InksOfOneColorantAreToldApartByTheirNames) {
    EXPECT_EQ(dyes(supplies({{5, "black", "Photo"}, {5, "cyan", "Cyan"}, {5, "black", "Matte"}})),
              "Photo,C,Matte");
    EXPECT_EQ(dyes(supplies({{5, "black", "Ink"}, {5, "black", "Ink"}})), "K,K");
    EXPECT_EQ(dyes(supplies({{5, "black", "Photo"}, {5, "black", ""}})), "not told");
}

TEST(SNMPStatusMapping, AColorantThatIsMissingOrRefusedIsNotReplacedByAName) {
    const std::string one = supplies({{5, "black", "Photo ink"}});
    EXPECT_EQ(dyes(one), "K");
    for (const char* cell : {"prtMarkerColorantValue.1.1", "prtMarkerSuppliesColorantIndex.1.1",
                             "prtMarkerSuppliesType.1.1", "prtMarkerSuppliesClass.1.1"}) {
        EXPECT_EQ(dyes(without(one, cell)), "not told") << cell;
    }
    EXPECT_EQ(dyes(supplies({{5, "bl\"ck", "Photo ink"}})), "not told");
    EXPECT_EQ(dyes(supplies({{5, "<0A>*cupsFilter", "Photo ink"}})), "not told");
    EXPECT_EQ(dyes(supplies({{5,
                              "\xFF\xFE"
                              "b",
                              "Photo ink"}})),
              "not told");
    EXPECT_EQ(dyes(supplies({{2, "black", "Photo ink"}})), "not told");
}

TEST(SNMPStatusMapping, AColorantIndexThatIsNoneIsNotFollowed) {
    const std::string one =
        without(supplies({{5, "black", "Ink"}}), "prtMarkerSuppliesColorantIndex.1.1");
    for (const char* index : {"-1", "2", "4294967297", "-9223372036854775807"}) {
        EXPECT_EQ(dyes(one + "prtMarkerSuppliesColorantIndex.1.1 = " + index + "\n"), "not told")
            << index;
    }
}

TEST(SNMPStatusMapping, DyesThatWouldMakeALineTooLongAreNotTold) {
    // "*ZrPenDyes: " and 243 bytes are a line of 255.
    EXPECT_EQ(dyes(supplies({{5, std::string(200, 'a'), ""}, {5, std::string(42, 'b'), ""}})),
              std::string(200, 'a') + "," + std::string(42, 'b'));
    EXPECT_EQ(dyes(supplies({{5, std::string(200, 'a'), ""}, {5, std::string(43, 'b'), ""}})),
              "not told");
    EXPECT_EQ(dyes(supplies({{5, std::string(256, 'a'), ""}})), "not told");
}

TEST(SNMPStatusMapping, InkIsSufficientAboveEmpty) {
    const std::map<int, std::string> cases = {{1, "1"},           {100, "1"},
                                              {2147483647, "1"},  {0, "0"},
                                              {-1, "1"},          {-3, "1"},
                                              {-2, "not told"},   {-4, "not told"},
                                              {-100, "not told"}, {-2147483647, "not told"}};
    for (const auto& [level, expected] : cases) {
        EXPECT_EQ(levels(supplies({{5, "black", "", level}})), expected) << level;
    }
    EXPECT_EQ(levels(supplies({{5, "cyan", "", 5}, {5, "black", "", -2}})), "not told");
    EXPECT_EQ(dyes(supplies({{5, "cyan", "", 5}, {5, "black", "", -2}})), "C,K");
    EXPECT_EQ(levels(without(supplies({{5, "black", ""}}), "prtMarkerSuppliesLevel")), "not told");
}

TEST(SNMPStatusMapping, TheResolutionIsTheFinerDirectionOfTheFinestMarker) {
    const std::map<std::string, std::string> cases = {
        {marker(1, 3, 600, 600), "600"},
        {marker(1, 3, 600, 1200), "1200"},
        {marker(1, 3, 2400, 1200), "2400"},
        {marker(1, 3, 600, 600) + marker(2, 3, 1200, 600), "1200"},
        {marker(1, 4, 236, 236), "600"},
        {marker(1, 4, 80, 80), "203"},
        {marker(1, 3, 100000, 600), "100000"},
        {marker(1, 3, 100001, 600), "not told"},
        {marker(1, 3, 600, -2), "not told"},
        {marker(1, 3, -1, 600), "not told"},
        {marker(1, 3, 0, 600), "not told"},
        {marker(1, 1, 600, 600), "not told"},
        {marker(1, 3, 2147483647, 2147483647), "not told"},
        {marker(1, 3, 600, 600) + marker(2, 3, -2, -2), "not told"}};
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(resolution(text), expected) << text;
    }
    for (const char* cell : {"prtMarkerAddressabilityUnit", "prtMarkerAddressabilityFeedDir",
                             "prtMarkerAddressabilityXFeedDir"}) {
        EXPECT_EQ(resolution(without(marker(1, 3, 600, 600), cell)), "not told") << cell;
    }
}

TEST(SNMPStatusMapping, AColumnThatWasCutShortTellsNothing) {
    for (const auto& row : SNMPStatusMapping::rows()) {
        for (const SNMPColumn& column : row.columns) {
            SNMPRows rows = rowsOfText(SNMPTables::kLaser);
            rows.setCutShort(column);
            OrbCSError error;
            const auto status = SNMPStatusMapping::statusForRows(rows, error);
            ASSERT_NE(status, nullptr);
            SNMPStatusValues expected;
            for (const auto& other : SNMPStatusMapping::rows()) {
                if (other.read != row.read) {
                    other.read(rows, expected);
                }
            }
            EXPECT_EQ(status->toldEntries(), expected.takeStatus()->toldEntries()) << column.name;
            EXPECT_THAT(status->droppedValues(),
                        ElementsAre(std::string(column.name) +
                                    ": was not read to its end, so nothing is made of it"));
        }
    }
}

TEST(SNMPStatusMapping, AReasonNamesThePlaceAndHoldsNoneOfTheText) {
    const auto status = statusOfText(supplies({{5, "cyan", ""}, {5, "evil\x1B[2Jtext", ""}}));
    ASSERT_FALSE(status->droppedValues().empty());
    const std::string reason = status->droppedValues().front();
    EXPECT_THAT(reason, HasSubstr("prtMarkerColorantValue.1.2: "));
    EXPECT_THAT(reason, HasSubstr("U+001B"));
    EXPECT_EQ(reason.find("evil"), std::string::npos);
}

TEST(SNMPStatusMapping, KnowsFromWhichCellsAValueWasRead) {
    const auto status = statusOfText(paths({5, 3}) + input(1, 3, "Tray 1"));
    const auto sources = OrbCSStatusSources::sourcesOf(*status, "DeviceAccessories.Duplexer");
    EXPECT_THAT(
        sources,
        ElementsAre(OrbCSStatusSource{"DeviceAccessories.Duplexer", "prtMediaPathType.1.1", "5"},
                    OrbCSStatusSource{"DeviceAccessories.Duplexer", "prtMediaPathType.1.2", "3"}));
    const auto trays = OrbCSStatusSources::sourcesOf(*status, "DeviceAccessories.Tray2");
    EXPECT_THAT(trays, Contains(OrbCSStatusSource{"DeviceAccessories.Tray2", "prtInputName.1.1",
                                                  "Tray 1"}));
}

TEST(SNMPStatusMapping, KnowsWhichOfTheHostsDevicesThePrinterIs) {
    SNMPRows rows = rowsOfText(paths({3}));
    rows.set(PrinterMIB::hrDeviceDescr, {1}, "Zr Office 20; V 1.0");
    rows.set(PrinterMIB::hrDeviceDescr, {2}, "Ethernet");
    rows.set(PrinterMIB::prtGeneralPrinterName, {1}, "Office 20");
    rows.set(PrinterMIB::ppmPrinterIEEE1284DeviceId, {7}, "MFG:Zr;MDL:Office 20;");
    OrbCSError error;
    const auto status = SNMPStatusMapping::statusForRows(rows, error);
    ASSERT_NE(status, nullptr);
    EXPECT_THAT(status->identity().models, ElementsAre("Zr Office 20; V 1.0", "Office 20"));
    EXPECT_THAT(status->identity().deviceIDs, ElementsAre("MFG:Zr;MDL:Office 20;"));
}

TEST(SNMPStatusMapping, OfSeveralDeviceIDsNoneIsKnownToBeThePrinters) {
    SNMPRows rows = rowsOfText(paths({3}));
    rows.set(PrinterMIB::ppmPrinterIEEE1284DeviceId, {1}, "MDL:Office 20;");
    rows.set(PrinterMIB::ppmPrinterIEEE1284DeviceId, {2}, "MDL:Office 30;");
    OrbCSError error;
    const auto status = SNMPStatusMapping::statusForRows(rows, error);
    ASSERT_NE(status, nullptr);
    EXPECT_THAT(status->identity().deviceIDs, IsEmpty());
    EXPECT_THAT(status->identity().models, IsEmpty());
}

TEST(SNMPStatusMapping, NamesAloneAreNoPrinter) {
    SNMPRows rows;
    rows.set(PrinterMIB::hrDeviceDescr, {1}, "Zr Office 20");
    OrbCSError error;
    EXPECT_EQ(SNMPStatusMapping::statusForRows(rows, error), nullptr);
    EXPECT_EQ(error.cause, OrbCSError::Cause::notAPrinter);
}

TEST(SNMPStatusMapping, AsksForEachColumnOfItsTableOnce) {
    std::map<std::string_view, int> asked;
    for (const auto& table : SNMPStatusMapping::tables()) {
        for (const SNMPColumn& column : table) {
            ++asked[column.name];
        }
    }
    std::map<std::string_view, int> read;
    for (const auto& row : SNMPStatusMapping::rows()) {
        for (const SNMPColumn& column : row.columns) {
            ++read[column.name];
        }
    }
    EXPECT_EQ(asked, read);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
