#include "tests/support/TestTimeLimit.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>

namespace TkPPDUpdating::Testing {
namespace {

void loopForEver() {
    volatile bool goesOn = true;
    while (goesOn) {
    }
}

TEST(TestTimeLimit, EndsATestThatLoopsForEverWithAMessageThatNamesIt) {
    EXPECT_EXIT(
        {
            limitProcessorTime("Suite.Name", std::chrono::milliseconds(20));
            loopForEver();
        },
        testing::ExitedWithCode(1),
        "^Suite\\.Name has used 20 ms of the processor: it seems to loop for ever\n");
}

TEST(TestTimeLimit, IsTakenAway) {
    EXPECT_EXIT(
        {
            limitProcessorTime("Suite.Name", std::chrono::milliseconds(20));
            limitProcessorTime({}, {});
            const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(200);
            while (std::chrono::steady_clock::now() < end) {
            }
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "^$");
}

TEST(TestTimeLimit, IsLongerForARunThatSaysSo) {
    const auto longestWith = [](const char* value) {
        (void)::setenv("TKPPDUPDATING_LONGEST_TEST", value, 1);
        const auto longest = longestTest();
        (void)::unsetenv("TKPPDUPDATING_LONGEST_TEST");
        return longest;
    };
    const char* const given = std::getenv("TKPPDUPDATING_LONGEST_TEST");
    const std::string kept = given ? given : "";
    EXPECT_EQ(longestWith("3600"), std::chrono::seconds(3600));
    for (const char* const wrong : {"", "0", "-1", "long"}) {
        EXPECT_EQ(longestWith(wrong), std::chrono::seconds(90)) << wrong;
    }
    EXPECT_EQ(longestTest(), std::chrono::seconds(90));
    if (given) {
        (void)::setenv("TKPPDUPDATING_LONGEST_TEST", kept.c_str(), 1);
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
