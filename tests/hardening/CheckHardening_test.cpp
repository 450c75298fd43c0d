// scripts/check-hardening and the flags of cmake/TkPPDUpdatingHardening.cmake, on a small object
// that was built with and without them; where everything is, on the tool and its modules.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/RunProgram.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;

ProgramResult check(std::vector<std::string> files) {
    files.insert(files.begin(), TKPPDUPDATING_SOURCE_DIR "/scripts/check-hardening");
    return runProgram(files);
}

TEST(CheckHardening, FindsNothingToSayOfAnObjectBuiltWithOurFlags) {
    const ProgramResult result = check({TKPPDUPDATING_HARDENED_OBJECT});
    EXPECT_EQ(result.exitStatus, 0) << result.standardError;
    EXPECT_EQ(result.standardOutput, "hardened: 1 files\n");
}

TEST(CheckHardening, SaysWhatAnObjectBuiltWithoutThemLacks) {
    const std::string object = TKPPDUPDATING_PLAIN_OBJECT;
    const ProgramResult result = check({TKPPDUPDATING_HARDENED_OBJECT, object});
    EXPECT_EQ(result.exitStatus, 1);
    for (const char* what : {"has no read-only relocations", "binds symbols while it runs",
                             "has a stack that can be run", "has no stack protector",
                             "checks no sizes (_FORTIFY_SOURCE)"
#ifdef __x86_64__
                             ,
                             "has no control-flow protection"
#endif
         }) {
        EXPECT_THAT(result.standardOutput, HasSubstr(object + ": " + what + "\n"));
    }
}

#ifdef TKPPDUPDATING_HARDENED_FILES
TEST(CheckHardening, FindsNothingToSayOfTheToolAndItsModules) {
    const ProgramResult result = check({TKPPDUPDATING_HARDENED_FILES});
    EXPECT_EQ(result.exitStatus, 0) << result.standardOutput << result.standardError;
}
#endif

}  // namespace
}  // namespace TkPPDUpdating::Testing
