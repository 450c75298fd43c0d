#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ipp/IPPStandardMediaTypes.h"
#include "backends/ipp/IPPStatusMapping.h"
#include "backends/schemes/InkColours.h"
#include "core_interface/TkCSKeys.h"
#include "tests/backends/ipp/IPPTestMessage.h"
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

TEST(IPPMappingTable, NamesTheAttributesThatSayWhichPrinterItIs) {
    for (const std::string_view name : IPPStatusMapping::identityAttributes()) {
        EXPECT_TRUE(contains(textOfSource("docs/ipp-mapping.md"), "`" + std::string(name) + "`"))
            << name;
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

TEST(IPPMappingTable, NamesNoAttributeAsAskedForThatIsNot) {
    const auto asked = IPPStatusMapping::requestedAttributes();
    for (const char* name : {"marker-low-levels", "marker-message", "printer-icc-profiles"}) {
        EXPECT_TRUE(std::ranges::find(asked, std::string_view(name)) == asked.end()) << name;
    }
    for (const DocumentedRow& row : documentedRows()) {
        EXPECT_FALSE(contains(row.attributes, "marker-low-levels"));
    }
}

TEST(IPPMappingTable, HasTheColoursOfTheCode) {
    std::vector<std::string> expected;
    for (const PrimaryInkColour& colour : primaryInkColours()) {
        expected.push_back(
            std::string(colour.dye) + ": " +
            (colour.firstHue > colour.lastHue
                 ? std::string("any")
                 : std::to_string(colour.firstHue) + " to " + std::to_string(colour.lastHue)));
    }
    std::vector<std::string> documented;
    const std::regex row("\\| ([A-Z]) \\| ([^|]+) \\|");
    const std::string page = textOfSource("docs/ipp-mapping.md");
    for (std::sregex_iterator each(page.begin(), page.end(), row), end; each != end; ++each) {
        documented.push_back(each->str(1) + ": " + each->str(2));
    }
    EXPECT_EQ(documented, expected);
}

/// The words between backticks in the item of the page that begins so.
std::vector<std::string> wordsOfItem(const std::string& begin) {
    const std::string page = textOfSource("docs/ipp-mapping.md");
    const std::size_t at = page.find(begin);
    const std::string item =
        at == std::string::npos ? "" : page.substr(at, page.find("\n-", at) - at);
    std::vector<std::string> words;
    const std::regex word("`([^`]+)`");
    for (std::sregex_iterator each(item.begin(), item.end(), word), end; each != end; ++each) {
        words.push_back(each->str(1));
    }
    return words;
}

TEST(IPPMappingTable, NamesSourcesThatAreNoTrays) {
    const auto words = wordsOfItem("- its source is none of");
    ASSERT_GE(words.size(), 10U);
    for (const std::string& word : words) {
        IPPTestMessage answer;
        answer.keywords("media-source-supported", {"main", word.c_str()})
            .octets("printer-input-tray", {"type=sheetFeedAutoRemovableTray;name=A;",
                                           "type=sheetFeedAutoRemovableTray;name=B;"});
        const auto status = answer.status();
        const auto* accessories =
            status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey);
        ASSERT_NE(accessories, nullptr) << word;
        EXPECT_EQ(*accessories, (OrbCSDeviceAccessories{{"Tray2", false}})) << word;
    }
}

TEST(IPPMappingTable, TellsHowManyMediaTypesAreRegistered) {
    EXPECT_TRUE(contains(textOfSource("docs/ipp-mapping.md"),
                         "the " + std::to_string(standardMediaTypes().size()) + " keywords"));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
