#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/support/CodeBlocks.h"

namespace TkPPDUpdating::Testing {
namespace {

std::string withoutWhiteSpace(std::string text) {
    std::erase_if(text, [](char each) { return each == ' ' || each == '\n'; });
    return text;
}

TEST(AddingAScheme, ShowsCodeThatIsCompiledAndRun) {
    const std::string tested =
        withoutWhiteSpace(textOfSource("tests/backends/schemes/OwnScheme_test.cpp") +
                          textOfSource("tests/tools/modules/BoxModule.cpp"));
    const auto blocks = codeBlocksOf(textOfSource("docs/adding-a-scheme.md"), "cpp");
    EXPECT_EQ(blocks.size(), 4U);
    for (const std::string& block : blocks) {
        EXPECT_NE(tested.find(withoutWhiteSpace(block)), std::string::npos) << block;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
