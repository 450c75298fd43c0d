#include "tools/InterruptionWatch.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>

namespace TkPPDUpdating {
namespace {

/// How a signal is handled, as it was, at the end of the scope.
class SignalScope {
  public:
    SignalScope(int signal, void (*handler)(int)) : signal_(signal) {
        struct sigaction action = {};
        action.sa_handler = handler;
        sigaction(signal, &action, &before_);
    }
    SignalScope(const SignalScope&) = delete;
    SignalScope& operator=(const SignalScope&) = delete;
    ~SignalScope() { sigaction(signal_, &before_, nullptr); }

  private:
    int signal_;
    struct sigaction before_ = {};
};

class WatchedSignal : public testing::TestWithParam<int> {};

TEST_P(WatchedSignal, BecomesAFlagForTheLifeOfTheWatch) {
    const SignalScope scope(GetParam(), SIG_DFL);
    {
        const InterruptionWatch watch;
        EXPECT_FALSE(InterruptionWatch::isInterrupted());
        (void)std::raise(GetParam());
        EXPECT_TRUE(InterruptionWatch::isInterrupted());
        EXPECT_FALSE(InterruptionWatch::isTimeOver());
        EXPECT_STREQ(InterruptionWatch::reason(), "interrupted");
    }
    struct sigaction after = {};
    sigaction(GetParam(), nullptr, &after);
    EXPECT_EQ(after.sa_handler, SIG_DFL);
}

TEST_P(WatchedSignal, ThatWasIgnoredStaysSo) {
    const SignalScope scope(GetParam(), SIG_IGN);
    const InterruptionWatch watch;
    (void)std::raise(GetParam());
    EXPECT_FALSE(InterruptionWatch::isInterrupted());
}

INSTANTIATE_TEST_SUITE_P(ByNumber, WatchedSignal, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(InterruptionWatchTest, EndsAtItsLimitOfTime) {
    const InterruptionWatch watch(std::chrono::seconds(1));
    EXPECT_FALSE(InterruptionWatch::isInterrupted());
    for (int tries = 0; tries < 1000 && !InterruptionWatch::isInterrupted(); ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(InterruptionWatch::isInterrupted());
    EXPECT_TRUE(InterruptionWatch::isTimeOver());
    EXPECT_STREQ(InterruptionWatch::reason(), "the time limit of the run was over");
}

TEST(InterruptionWatchTest, OfASignalAndTheLimitTheFirstIsTheReason) {
    const SignalScope scope(SIGTERM, SIG_DFL);
    const InterruptionWatch watch(std::chrono::seconds(60));
    (void)std::raise(SIGTERM);
    (void)std::raise(SIGALRM);
    EXPECT_FALSE(InterruptionWatch::isTimeOver());
}

}  // namespace
}  // namespace TkPPDUpdating
