#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "backends/snmp/SNMPStatusMapping.h"
#include "tests/support/CodeBlocks.h"

namespace TkPPDUpdating::Testing {
namespace {

/// The lines of the page's tables.
std::vector<std::string> tableLines() {
    std::vector<std::string> lines;
    std::istringstream page(textOfSource("docs/snmp-mapping.md"));
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("| ")) {
            lines.push_back(line);
        }
    }
    return lines;
}

bool contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

TEST(SNMPMappingTable, NamesEachColumnUnderItsKeyWithItsIdentifierAndStandard) {
    const auto lines = tableLines();
    for (const auto& row : SNMPStatusMapping::rows()) {
        for (const SNMPColumn& column : row.columns) {
            const std::string name = "`" + std::string(column.name) + "`";
            EXPECT_TRUE(std::ranges::any_of(
                lines,
                [&](const std::string& line) {
                    return contains(line, "`" + std::string(row.statusKey) + "`") &&
                           contains(line, name);
                }))
                << row.statusKey << ": " << name;
            EXPECT_TRUE(std::ranges::any_of(lines, [&](const std::string& line) {
                return line.starts_with("| " + name + " | `" + std::string(column.identifier) +
                                        "` | " + std::string(column.standard) + " |");
            })) << name;
        }
    }
}

TEST(SNMPMappingTable, NamesEachColumnThatSaysWhichPrinterItIs) {
    const auto lines = tableLines();
    for (const SNMPColumn& column : SNMPStatusMapping::identityColumns()) {
        EXPECT_TRUE(std::ranges::any_of(lines, [&](const std::string& line) {
            return line.starts_with("| `" + std::string(column.name) + "` | `" +
                                    std::string(column.identifier) + "` | " +
                                    std::string(column.standard) + " |");
        })) << column.name;
    }
}

TEST(SNMPMappingTable, NamesNoColumnThatIsNotAskedFor) {
    std::size_t named = 0;
    for (const std::string& line : tableLines()) {
        if (!line.starts_with("| `prt")) {
            continue;
        }
        ++named;
        const std::string name = line.substr(3, line.find('`', 3) - 3);
        const auto isOf = [&name](std::span<const SNMPColumn> columns) {
            return std::ranges::find(columns, name, &SNMPColumn::name) != columns.end();
        };
        EXPECT_TRUE(std::ranges::any_of(SNMPStatusMapping::tables(), isOf) ||
                    isOf(SNMPStatusMapping::identityColumns()))
            << name;
    }
    EXPECT_GT(named, 0U);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
