#include "tools/SchedulerOptions.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

TEST(SchedulerOptionsTest, OneSchedulerHasOneLockWhateverItIsCalled) {
    const std::string own = SchedulerOptions::lockPath("localhost");
    for (const char* name : {"localhost:631", "127.0.0.1", "127.0.0.1:631", "[::1]:631",
                             "/run/cups/cups.sock", "/var/run/cups/cups.sock"}) {
        EXPECT_EQ(SchedulerOptions::lockPath(name), own) << name;
    }
    EXPECT_NE(SchedulerOptions::lockPath("localhost:8631"), own);
    EXPECT_NE(SchedulerOptions::lockPath("printserver"), own);
    EXPECT_EQ(SchedulerOptions::lockPath("printserver:631"),
              SchedulerOptions::lockPath("printserver"));
}

TEST(SchedulerOptionsTest, TheNameOfASocketStaysInTheFolder) {
    const std::string folder =
        SchedulerOptions::lockPath("a").substr(0, SchedulerOptions::lockPath("a").rfind('/'));
    const std::string path = SchedulerOptions::lockPath("/tmp/../own/cups.sock");
    EXPECT_EQ(path.substr(0, path.rfind('/')), folder);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
