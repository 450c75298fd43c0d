#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "backends/snmp/SNMPStatusMapping.h"
#include "core_interface/TkCSKeys.h"
#include "tests/backends/snmp/SNMPTestRows.h"
#include "tests/support/CodeBlocks.h"

namespace TkPPDUpdating::Testing {
namespace {

/// A row of docs/printers.md.
struct KindOfPrinter {
    std::string kind;
    std::string whatIPPTells;
    std::string statusOverIPP;
    std::string statusOverSNMP;
};

std::vector<KindOfPrinter> kindsOfPrinters() {
    std::vector<KindOfPrinter> kinds;
    std::istringstream page(textOfSource("docs/printers.md"));
    for (std::string line; std::getline(page, line);) {
        if (!line.starts_with("| ") || line.starts_with("| Kind")) {
            continue;
        }
        std::istringstream row(line.substr(2));
        std::vector<std::string> cells;
        for (std::string cell; std::getline(row, cell, '|');) {
            cells.push_back(cell.substr(0, cell.find_last_not_of(' ') + 1));
        }
        EXPECT_EQ(cells.size(), 6U) << line;
        cells.resize(6);
        kinds.push_back({cells[0], cells[2], cells[3], cells[5]});
    }
    return kinds;
}

using Statuses = std::map<std::string, std::string>;

/// The parts between backticks: "Duplexer: installed".
Statuses statusesIn(const std::string& cell) {
    Statuses statuses;
    const std::regex part("`([A-Za-z0-9]+): ([^`]*)`");
    for (std::sregex_iterator each(cell.begin(), cell.end(), part), end; each != end; ++each) {
        statuses[each->str(1)] = each->str(2);
    }
    return statuses;
}

/// What is told by the status of an answer's file.
Statuses statusesOfAnswer(const std::string& name) {
    std::istringstream file(textOfSource("tests/backends/ipp/answers/" + name + ".txt"));
    Statuses statuses;
    bool isStatus = false;
    for (std::string line; std::getline(file, line);) {
        const std::size_t colon = line.find(": ");
        if (isStatus && colon != std::string::npos && line.front() != ' ' &&
            line.substr(colon + 2) != "not reported") {
            statuses[line.substr(0, colon)] = line.substr(colon + 2);
        }
        isStatus = isStatus || line == "status";
    }
    return statuses;
}

TEST(PrintersTable, GivesTheStatusesOfTheAnswersThatItNames) {
    std::size_t named = 0;
    for (const KindOfPrinter& kind : kindsOfPrinters()) {
        const std::regex name("\\(`([a-z0-9-]+)`\\)");
        std::smatch answer;
        if (std::regex_search(kind.whatIPPTells, answer, name)) {
            ++named;
            EXPECT_EQ(statusesIn(kind.statusOverIPP), statusesOfAnswer(answer.str(1))) << kind.kind;
        }
    }
    EXPECT_GE(named, 12U);
}

std::string inputs(const std::vector<std::pair<int, std::string>>& typesAndNames) {
    std::string rows;
    int number = 0;
    for (const auto& [type, name] : typesAndNames) {
        const std::string row = ".1." + std::to_string(++number) + " = ";
        rows += "prtInputType" + row + std::to_string(type) + "\nprtInputName" + row + name +
                "\nprtInputStatus" + row + "0\n";
    }
    return rows;
}

std::string ink(int number, const std::string& colorant, const std::string& name, int level) {
    const std::string row = ".1." + std::to_string(number) + " = ";
    return "prtMarkerSuppliesType" + row + "5\nprtMarkerSuppliesClass" + row +
           "3\nprtMarkerSuppliesDescription" + row + name + "\nprtMarkerSuppliesLevel" + row +
           std::to_string(level) + "\nprtMarkerSuppliesColorantIndex" + row +
           (colorant.empty()
                ? "0\n"
                : std::to_string(number) + "\nprtMarkerColorantValue" + row + colorant + "\n");
}

std::string engine(int dotsPerInch) {
    const std::string dots = std::to_string(dotsPerInch);
    return "prtMarkerAddressabilityUnit.1.1 = 3\nprtMarkerAddressabilityFeedDir.1.1 = " + dots +
           "\nprtMarkerAddressabilityXFeedDir.1.1 = " + dots + "\n";
}

Statuses statusesOfRows(const std::string& rows) {
    OrbCSError error;
    const auto status = SNMPStatusMapping::statusForRows(rowsOfText(rows), error);
    Statuses statuses;
    if (!status) {
        return statuses;
    }
    if (const auto* all =
            status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey)) {
        for (const OrbCSDeviceAccessory& each : *all) {
            statuses[each.name.value_or("?")] = each.isInstalled ? "installed" : "not installed";
        }
    }
    if (const auto* pens =
            status->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey)) {
        statuses.insert(pens->PPDAttributeValues.begin(), pens->PPDAttributeValues.end());
    }
    if (const auto* resolution =
            status->statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey)) {
        statuses["MaxSupportedResolution"] = resolution->stringValue();
    }
    return statuses;
}

TEST(PrintersTable, GivesTheStatusesOfTheTablesThatItSpeaksOf) {
    const std::map<std::string, std::string> printers = {
        {"Office laser printer with two cassettes", SNMPTables::kLaser},
        {"The same without the second cassette", inputs({{4, "MP Tray"}, {3, "Tray 1"}})},
        {"Laser printer that does not describe its second input",
         inputs({{3, "Main"}, {2, "Alternate"}})},
        {"Ink-jet printer with a cartridge of three dyes",
         ink(1, "", "Tri-color", 30) + ink(2, "black", "Black", 0) + engine(4800)},
        {"Photo printer with two blacks", SNMPTables::kInkjet},
        {"Laser printer with a toner that has no sensor",
         ink(1, "cyan", "Cyan", 40) + ink(2, "black", "Black", -2)},
        {"Wide-format printer with two rolls",
         inputs({{6, "Roll 1"}, {6, "Roll 2"}, {5, "Manual"}})},
        {"Label printer", SNMPTables::kLabel},
        {"Dye-sublimation printer",
         "prtMarkerSuppliesType.1.1 = 7\nprtMarkerSuppliesClass.1.1 = 3\n"},
        {"Press behind a print controller", ""},
        {"Printers behind a print-server box",
         "prtMediaPathType.1.1 = 3\nprtMediaPathType.2.1 = 5\n"},
        {"Old printer", inputs({{3, "Tray"}}) + engine(600) + "prtMediaPathType.1.1 = 5\n"},
        {"Printer at a USB port, or with neither protocol", ""}};
    const auto kinds = kindsOfPrinters();
    EXPECT_EQ(kinds.size(), printers.size());
    for (const KindOfPrinter& kind : kinds) {
        const auto printer = printers.find(kind.kind);
        ASSERT_NE(printer, printers.end()) << kind.kind;
        EXPECT_EQ(statusesIn(kind.statusOverSNMP), statusesOfRows(printer->second)) << kind.kind;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
