// What holds of all tables that a printer can have, tried with random ones. How many is set by the
// environment variable SNMP_MAPPING_ROWS, the first seed by SNMP_MAPPING_SEED.
#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "backends/snmp/SNMPStatusMapping.h"
#include "core_interface/TkCSKeys.h"
#include "tests/support/HarmlessText.h"
#include "tests/support/NumberFromEnvironment.h"

namespace TkPPDUpdating::Testing {
namespace {

/// One cell of a random printer.
struct Cell {
    const SNMPColumn* column = nullptr;
    SNMPRows::Row row;
    SNMPRows::Cell value;
};

class RandomPrinters {
  public:
    explicit RandomPrinters(unsigned seed) : random_(seed) {}

    std::vector<Cell> next() {
        std::vector<Cell> cells;
        const bool isTame = below(3) > 0;
        for (const auto& table : SNMPStatusMapping::tables()) {
            const int rows = below(isTame ? 4 : 9);
            for (int row = 1; row <= rows; ++row) {
                for (const SNMPColumn& column : table) {
                    if (isTame || below(12) > 0) {
                        cells.push_back({&column, rowNumbers(row, isTame), value(column, isTame)});
                    }
                }
            }
        }
        return cells;
    }

    std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
    }

  private:
    int below(int limit) { return static_cast<int>(below(static_cast<std::size_t>(limit))); }

    SNMPRows::Row rowNumbers(int row, bool isTame) {
        const auto last = static_cast<std::uint32_t>(row);
        if (isTame || below(40) > 0) {
            return {1, last};
        }
        const std::vector<SNMPRows::Row> odd = {{2, last}, {1, 0}, {0, last},   {1, 4294967295U},
                                                {1},       {},     {1, last, 1}};
        return odd[below(odd.size())];
    }

    SNMPRows::Cell value(const SNMPColumn& column, bool isTame) {
        const bool isOfItsSyntax = isTame || below(20) > 0;
        const bool isNumber = (column.syntax == SNMPColumn::Syntax::number) == isOfItsSyntax;
        return isNumber ? SNMPRows::Cell(number(isTame)) : SNMPRows::Cell(text(isTame));
    }

    std::int64_t number(bool isTame) {
        if (isTame || below(4) > 0) {
            return std::vector<int>{3, 3, 4, 5, 6, 21, 0, 1, 2, 600, -3}[below(std::size_t{11})];
        }
        const std::vector<std::int64_t> wild = {-1,
                                                -2,
                                                -4,
                                                7,
                                                127,
                                                100'001,
                                                2'147'483'647,
                                                -2'147'483'648LL,
                                                4'294'967'296LL,
                                                std::numeric_limits<std::int64_t>::max(),
                                                std::numeric_limits<std::int64_t>::min()};
        return wild[below(wild.size())];
    }

    std::string text(bool isTame) {
        static const std::vector<std::string> kTame = {"Tray 1", "Tray 2", "black", "cyan",
                                                       "Photo",  "Matte",  "MP",    "unknown"};
        static const std::vector<std::string> kWild = {"\"",
                                                       "\n*cupsFilter: \"x\"",
                                                       "\r",
                                                       "<0A>",
                                                       "*",
                                                       ",",
                                                       ":",
                                                       "/",
                                                       "\xC3",
                                                       "\xE9",
                                                       "\xFE\xFF",
                                                       "\xE2\x80\xA8",
                                                       "\xC2\x85",
                                                       "\xC0\xAF",
                                                       "\xED\xA0\x80",
                                                       "\x1B[2J",
                                                       "%n%s",
                                                       "\xE3\x82\xA4\xE3\x83\xB3\xE3\x82\xAF",
                                                       std::string(3, '\0'),
                                                       std::string(254, 'x'),
                                                       std::string(1024, 'y')};
        if (isTame) {
            return kTame[below(kTame.size())];
        }
        std::string made;
        for (int parts = below(4); parts > 0; --parts) {
            made += below(2) == 0 ? kTame[below(kTame.size())] : kWild[below(kWild.size())];
        }
        return made;
    }

    std::mt19937 random_;
};

/// What may stand as a value without quotes.
bool isHarmless(std::string_view text) {
    return isHarmlessText(text, "\"*<>");
}

SNMPRows rowsOf(const std::vector<Cell>& cells, std::size_t leftOut) {
    SNMPRows rows;
    for (std::size_t index = 0; index < cells.size(); ++index) {
        if (index != leftOut) {
            rows.set(*cells[index].column, cells[index].row, cells[index].value);
        }
    }
    return rows;
}

/// What a status told, entry by entry, as text.
using ToldValues = std::map<std::string, std::string>;

ToldValues toldValues(const SNMPRows& rows) {
    ToldValues told;
    OrbCSError error;
    const auto status = SNMPStatusMapping::statusForRows(rows, error);
    if (!status) {
        EXPECT_FALSE(error.reason.empty());
        return told;
    }
    for (const std::string& reason : status->droppedValues()) {
        EXPECT_TRUE(isHarmless(reason) && reason.size() < 200) << reason;
    }
    if (const auto* all =
            status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey)) {
        for (const OrbCSDeviceAccessory& each : *all) {
            told["DeviceAccessories." + each.name.value_or("?")] =
                each.isInstalled ? "installed" : "not installed";
        }
    }
    if (const auto* pens =
            status->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey)) {
        for (const auto& [keyword, value] : pens->PPDAttributeValues) {
            EXPECT_TRUE(isHarmless(value)) << value;
            EXPECT_LE(keyword.size() + value.size() + 3, 255U);
            told["InstalledPensConfiguration." + keyword] = value;
        }
    }
    if (const auto* resolution =
            status->statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey)) {
        told["MaxSupportedResolution"] = resolution->stringValue();
    }
    EXPECT_TRUE(status->toldEntries());
    for (const std::string& entry : *status->toldEntries()) {
        EXPECT_TRUE(told.contains(entry)) << entry;
    }
    EXPECT_EQ(status->toldEntries()->size(), told.size());
    return told;
}

TEST(SNMPMappingProperties, TextsAreHarmlessAndAMissingCellNeverMakesAnotherValue) {
    const unsigned long printers = numberFromEnvironment("SNMP_MAPPING_ROWS", 1500);
    RandomPrinters random(static_cast<unsigned>(numberFromEnvironment("SNMP_MAPPING_SEED", 1)));
    std::map<std::string, unsigned long> timesTold;
    for (unsigned long number = 0; number < printers && !testing::Test::HasFailure(); ++number) {
        const auto cells = random.next();
        const ToldValues whole = toldValues(rowsOf(cells, cells.size()));
        for (const auto& [entry, value] : whole) {
            ++timesTold[entry];
        }
        if (cells.empty()) {
            continue;
        }
        const std::size_t missing = random.below(cells.size());
        if (cells[missing].column->name == PrinterMIB::prtMediaPathType.name) {
            continue;  // Nothing else tells that the path exists.
        }
        for (const auto& [entry, value] : toldValues(rowsOf(cells, missing))) {
            const auto before = whole.find(entry);
            EXPECT_TRUE(before == whole.end() || before->second == value)
                << "printer " << number << ": " << entry << " was " << before->second << " and is "
                << value << " without " << cells[missing].column->name;
        }
    }
    // The printers are not so wild that nothing gets through.
    EXPECT_EQ(timesTold.size(), 5U);
    for (const auto& [entry, times] : timesTold) {
        EXPECT_GT(times, printers / 50) << entry;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
