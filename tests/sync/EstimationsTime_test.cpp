#include "sync/EstimationsTime.h"

#include <gtest/gtest.h>

#include <string_view>

namespace TkPPDUpdating {
namespace {

TEST(EstimationsTime, TellsTextsThatDifferInNothingElse) {
    const auto differ = [](std::string_view before, std::string_view after) {
        return differInTimeOfEstimationsOnly(before, after);
    };
    EXPECT_TRUE(
        differ("*A: 1\n*ZrEPRLastUpdate: 1\n*B: 2\n", "*A: 1\n*ZrEPRLastUpdate: 22\n*B: 2\n"));
    EXPECT_TRUE(differ("*A: 1\n*ZrEPRLastUpdate: 1", "*A: 1\n*ZrEPRLastUpdate: 2"));
    EXPECT_TRUE(differ("*ZrEPRLastUpdate: 1\r\n", "*ZrEPRLastUpdate: 2\n"));
    EXPECT_FALSE(differ("*A: 1\n*ZrEPRLastUpdate: 1\n", "*A: 1\n*ZrEPRLastUpdate: 1\n"));
    EXPECT_FALSE(differ("*A: 1\n*ZrEPRLastUpdate: 1\n", "*A: 2\n*ZrEPRLastUpdate: 2\n"));
    EXPECT_FALSE(differ("*ZrEPRLastUpdate: 1\n", "*ZrEPRLastUpdate: 2\n*B: 2\n"));
    EXPECT_FALSE(differ("*ZrEPRLastUpdate: 1\n*B: 2\n", "*ZrEPRLastUpdate: 2\n"));
    EXPECT_FALSE(differ("*A: 1\n", "*A: 1\n*ZrEPRLastUpdate: 2\n"));
    EXPECT_FALSE(differ("*ZrEPRLastUpdate: 1\n", "*ZrEPRLastUpdate: 2"));
    EXPECT_FALSE(differ("*ZrEPRLastUpdateBy: 1\n", "*ZrEPRLastUpdateBy: 2\n"));
    EXPECT_FALSE(differ("", ""));
    EXPECT_FALSE(differ("", "*ZrEPRLastUpdate: 2\n"));
}

}  // namespace
}  // namespace TkPPDUpdating
