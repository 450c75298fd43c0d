#include "tools/EndWithoutMemory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <exception>
#include <new>
#include <stdexcept>
#include <thread>
#include <vector>

namespace TkPPDUpdating::Testing {
namespace {

using testing::Eq;
using testing::ExitedWithCode;

constexpr const char* kError = "tkppdupdate: there is not enough memory\n";

/// Ends the process as a thread does whose exception nobody catches; all of them at once, as far as
/// chance has it.
template <typename Exception>
void raiseInThreads(int count, const Exception& exception) {
    std::set_terminate(endWithoutMemory);
    std::atomic<int> missing{count};
    std::vector<std::jthread> threads;
    for (int started = 0; started < count; ++started) {
        threads.emplace_back([&missing, &exception] {
            --missing;
            while (missing > 0) {
            }
            throw exception;
        });
    }
}

class EndWithoutMemory : public testing::Test {
  protected:
    EndWithoutMemory() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(EndWithoutMemory, IsToldAsAnError) {
    EXPECT_EXIT(raiseInThreads(1, std::bad_alloc()), ExitedWithCode(1), Eq(kError));
}

TEST_F(EndWithoutMemory, IsToldOnceWhenSeveralThreadsEnd) {
    for (int time = 0; time < 10; ++time) {
        EXPECT_EXIT(raiseInThreads(4, std::bad_alloc()), ExitedWithCode(1), Eq(kError));
    }
}

TEST_F(EndWithoutMemory, IsNotWhatAnotherExceptionIsTakenFor) {
    EXPECT_EXIT(raiseInThreads(1, std::runtime_error("mistake")), testing::KilledBySignal(SIGABRT),
                Eq(""));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
