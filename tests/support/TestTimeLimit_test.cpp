#include "tests/support/TestTimeLimit.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>

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

}  // namespace
}  // namespace TkPPDUpdating::Testing
