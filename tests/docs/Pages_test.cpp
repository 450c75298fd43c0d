#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "manager/ITkPPDLineOwnership.h"
#include "ppd/PPDStatements.h"
#include "tests/support/CodeBlocks.h"

namespace TkPPDUpdating::Testing {
namespace {

class FirmwareUpdater : public ITkPPDLineOwnership {
  public:
    OrbPPDOwnedLines ownedLines(std::span<const PPDStatement>,
                                std::span<const PPDStatement>) override {
        OrbPPDOwnedLines owned;
        owned.attributes = {"MyFirmwareVersion"};  // *MyFirmwareVersion: ...
        owned.choices = {{"MediaType", "MyFelt", "<</MediaType(felt)>>setpagedevice"}};
        return owned;
    }
};

/// Without white space, so that lines may be broken elsewhere, and without comments.
std::string plain(const std::string& code) {
    std::string plain;
    std::istringstream lines(code);
    for (std::string line; std::getline(lines, line);) {
        plain += line.substr(0, line.find("// "));
    }
    std::erase_if(plain, [](char each) { return each == ' '; });
    return plain;
}

TEST(ArchitecturePage, ShowsCodeThatIsCompiledAndRun) {
    const auto blocks = codeBlocksOf(textOfSource("docs/architecture.md"), "cpp");
    ASSERT_EQ(blocks.size(), 1U);
    EXPECT_NE(plain(textOfSource("tests/docs/Pages_test.cpp")).find(plain(blocks[0])),
              std::string::npos)
        << blocks[0];
    const OrbPPDOwnedLines owned = FirmwareUpdater().ownedLines({}, {});
    EXPECT_EQ(owned.attributes.size(), 1U);
    EXPECT_EQ(owned.choices.at(0).keyword, "MyFelt");
}

TEST(DocumentationIndex, LeadsToEveryPage) {
    const std::string index = textOfSource("docs/README.md");
    int pages = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(TKPPDUPDATING_SOURCE_DIR "/docs")) {
        const std::string name = entry.path().filename().string();
        const bool isPage = name.ends_with(".md") || name.ends_with(".1");
        if (isPage && name != "README.md") {
            EXPECT_NE(index.find("(" + name + ")"), std::string::npos) << name;
            ++pages;
        }
    }
    EXPECT_GT(pages, 10);
}

TEST(FleetPage, ShowsAnInventoryLikeTheExample) {
    const auto blocks = codeBlocksOf(textOfSource("docs/fleet.md"), "ini");
    ASSERT_EQ(blocks.size(), 1U);
    const std::string example = textOfSource("examples/ansible/inventory.example");
    std::istringstream lines(blocks[0]);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_NE(example.find(line + "\n"), std::string::npos) << line;
    }
}

TEST(Readme, ShowsLinesThatTheSampleHasBeforeAndAfter) {
    const auto pictures = codeBlocksOf(textOfSource("README.md"), "text");
    ASSERT_EQ(pictures.size(), 1U);
    const std::string before = textOfSource("samples/ppd/zr-inkjet.ppd");
    std::istringstream lines(pictures[0]);
    int shown = 0;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t left = line.find("  *");
        if (left == 0) {
            const std::string first = line.substr(2, line.find("  ", 2) - 2);
            EXPECT_NE(before.find("\n" + first + "\n"), std::string::npos) << first;
            ++shown;
        }
    }
    EXPECT_EQ(shown, 5);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
