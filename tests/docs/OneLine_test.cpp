#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>

#include "tests/support/CodeBlocks.h"

namespace TkPPDUpdating::Testing {
namespace {

TEST(OneLine, PassesThroughFunctionsThatAreInTheirFiles) {
    // | `file` | `Class::function` | what happens |
    const std::regex row("\n\\| `([^`]+)` \\| `([^`]+)` \\| ");
    const std::string page = textOfSource("docs/one-line.md");
    int rows = 0;
    for (std::sregex_iterator each(page.begin(), page.end(), row), end; each != end; ++each) {
        const std::string file = (*each)[1];
        const std::string function = (*each)[2];
        ASSERT_TRUE(std::filesystem::exists(TKPPDUPDATING_SOURCE_DIR "/" + file)) << file;
        EXPECT_TRUE(std::regex_search(textOfSource(file), std::regex("\\b" + function + "\\b")))
            << file << " has no " << function;
        ++rows;
    }
    EXPECT_EQ(rows, 16);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
