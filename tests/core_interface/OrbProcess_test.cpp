#include "core_interface/OrbProcess.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace TkPPDUpdating {
namespace {

/// Seconds from 1 January 1970 to 1 January 2001, UTC: 31 years of 365 days with 8 leap days.
constexpr double kReferenceDateInUnixTime = (31 * 365 + 8) * 86400.0;

// The only tests that change the process's own environment, each under a name of its own.

TEST(ProcessEnvironment, GivesTheValueOfAVariable) {
    ASSERT_EQ(setenv("ZrTestOfAVariable", "a value", 1), 0);
    EXPECT_EQ(OrbEnvironment::processEnvironment()->valueForVariable("ZrTestOfAVariable"),
              "a value");
}

TEST(ProcessEnvironment, GivesTheEmptyValueOfAVariableThatIsSetToIt) {
    ASSERT_EQ(setenv("ZrTestOfAnEmptyVariable", "", 1), 0);
    EXPECT_EQ(OrbEnvironment::processEnvironment()->valueForVariable("ZrTestOfAnEmptyVariable"),
              "");
}

TEST(ProcessEnvironment, GivesNothingForAVariableThatIsNotSet) {
    ASSERT_EQ(unsetenv("ZrTestOfNoVariable"), 0);
    EXPECT_EQ(OrbEnvironment::processEnvironment()->valueForVariable("ZrTestOfNoVariable"),
              std::nullopt);
}

TEST(ProcessEnvironment, FollowsAChange) {
    ASSERT_EQ(setenv("ZrTestOfAChange", "before", 1), 0);
    const auto environment = OrbEnvironment::processEnvironment();
    ASSERT_EQ(setenv("ZrTestOfAChange", "after", 1), 0);
    EXPECT_EQ(environment->valueForVariable("ZrTestOfAChange"), "after");
}

/// Seconds since 1970. Not time(), which may be a clock tick behind.
double unixTime() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

TEST(SystemClock, CountsSecondsFromTheYear2001) {
    const double before = unixTime();
    const double seconds = OrbClock::systemClock()->secondsSinceReferenceDate();
    const double after = unixTime();
    // A thousandth to either side for what rounding takes at this size.
    EXPECT_GE(seconds + kReferenceDateInUnixTime, before - 0.001);
    EXPECT_LE(seconds + kReferenceDateInUnixTime, after + 0.001);
}

}  // namespace
}  // namespace TkPPDUpdating
