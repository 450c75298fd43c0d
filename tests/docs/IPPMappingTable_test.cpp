#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "backends/cups/IPPStatusMapping.h"
#include "tests/support/CodeBlocks.h"

namespace TkPPDUpdating::Testing {
namespace {

/// One row of the table for people. An empty cell for the key stands for the key above.
struct DocumentedRow {
    std::string statusKey;
    std::string attributes;
    std::string standards;
};

std::vector<DocumentedRow> documentedRows() {
    std::vector<DocumentedRow> rows;
    std::istringstream lines(textOfSource("docs/ipp-mapping.md"));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("| ")) {
            std::istringstream cells(line.substr(1));
            DocumentedRow row;
            std::getline(cells, row.statusKey, '|');
            std::getline(cells, row.attributes, '|');
            std::getline(cells, row.standards, '|');
            if (row.statusKey.find('`') == std::string::npos && !rows.empty()) {
                row.statusKey = rows.back().statusKey;
            }
            rows.push_back(row);
        }
    }
    return rows;
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(IPPMappingTable, NamesEachAttributeUnderItsKeyWithItsStandard) {
    const auto documented = documentedRows();
    for (const IPPStatusMapping::Row& row : IPPStatusMapping::rows()) {
        for (const IPPStatusMapping::Attribute& attribute : row.attributes) {
            const bool isNamed = std::ranges::any_of(documented, [&](const DocumentedRow& each) {
                return contains(each.statusKey, "`" + std::string(row.statusKey) + "`") &&
                       contains(each.attributes, "`" + std::string(attribute.name) + "`") &&
                       contains(each.standards, std::string(attribute.standard));
            });
            EXPECT_TRUE(isNamed) << row.statusKey << ": " << attribute.name << ", "
                                 << attribute.standard;
        }
    }
}

TEST(IPPMappingTable, BeginsEachCellOfAttributesWithOneThatIsAskedFor) {
    const auto asked = IPPStatusMapping::requestedAttributes();
    std::size_t cells = 0;
    for (const DocumentedRow& row : documentedRows()) {
        if (row.attributes.starts_with(" `")) {
            const std::string name = row.attributes.substr(2, row.attributes.find('`', 2) - 2);
            EXPECT_TRUE(std::ranges::find(asked, name) != asked.end()) << name;
            ++cells;
        }
    }
    EXPECT_GE(cells, IPPStatusMapping::rows().size());
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
