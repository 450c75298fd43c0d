#include "tools/SystemLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace TkPPDUpdating {
namespace {

TEST(SystemLogTest, TellsQueueAndKeywordsInOneLine) {
    EXPECT_EQ(SystemLog::lineForReplacement("office", "updated", {"DefaultA", "B"}),
              "queue office: PPD updated: DefaultA, B");
    EXPECT_EQ(SystemLog::lineForReplacement("office", "restored", {}),
              "queue office: PPD restored");
}

TEST(SystemLogTest, NothingInItLooksLikeAnotherLine) {
    EXPECT_EQ(SystemLog::lineForReplacement("a\nb", "updated", {"C\x1B[2J"}),
              "queue a\\x0Ab: PPD updated: C\\x1B[2J");
}

TEST(SystemLogTest, IsNoLongerThanALogTakes) {
    const std::vector<std::string> keywords(1000, "DefaultMediaType");
    const std::string line = SystemLog::lineForReplacement("office", "updated", keywords);
    EXPECT_LT(line.size(), 1900U);
    EXPECT_THAT(line, testing::EndsWith("DefaultMediaType, ..."));
}

}  // namespace
}  // namespace TkPPDUpdating
