// The page on the C interface shows lines of the examples, which are compiled and run.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/support/CodeBlocks.h"

namespace TkPPDUpdating::Testing {
namespace {

TEST(CInterfacePage, ShowsLinesOfTheExamples) {
    const std::string examples = textOfSource("examples/c/update_ppd.c") +
                                 textOfSource("examples/c/own_updater.c") +
                                 textOfSource("examples/c/values_filter.c");
    const auto blocks = codeBlocksOf(textOfSource("docs/c-interface.md"), "c");
    ASSERT_FALSE(blocks.empty());
    for (const std::string& block : blocks) {
        std::istringstream lines(block);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t start = line.find_first_not_of(' ');
            if (start != std::string::npos) {
                EXPECT_NE(examples.find(line.substr(start) + "\n"), std::string::npos) << line;
            }
        }
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
