// The page on updaters shows what stands in the example, which is compiled and run.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/support/CodeBlocks.h"

namespace TkPPDUpdating::Testing {
namespace {

std::string text(const std::string& file) {
    return textOfSource("examples/updater/" + file);
}

TEST(WritingAnUpdater, ShowsTheClassAndTheModuleOfTheExample) {
    const auto blocks = codeBlocksOf(textOfSource("docs/writing-an-updater.md"), "cpp");
    EXPECT_EQ(blocks.size(), 2U);
    for (const std::string& block : blocks) {
        EXPECT_NE(text("StaplerUpdater.cpp").find(block), std::string::npos) << block;
    }
}

TEST(WritingAnUpdater, ShowsLinesOfThePPDOfTheExample) {
    const auto blocks = codeBlocksOf(textOfSource("docs/writing-an-updater.md"), "");
    ASSERT_EQ(blocks.size(), 1U);
    std::istringstream lines(blocks.front());
    for (std::string line; std::getline(lines, line);) {
        EXPECT_NE(text("finisher.ppd").find("\n" + line + "\n"), std::string::npos) << line;
    }
}

TEST(WritingAnUpdater, ShowsTheCommandsOfTheExample) {
    const std::string page = textOfSource("docs/writing-an-updater.md");
    std::istringstream lines(text("README.md"));
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("    ")) {
            EXPECT_NE(page.find("\n" + line + "\n"), std::string::npos) << line;
            ++count;
        }
    }
    EXPECT_EQ(count, 2U);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
