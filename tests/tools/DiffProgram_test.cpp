#include "tools/DiffProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <string>

#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/SmallPPD.h"
#include "tests/tools/ToolRun.h"
#include "tools/Failure.h"
#include "tools/UnifiedDiff.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;

/// A program of the test's own in the place of diff(1).
class OtherDiff : public testing::Test {
  protected:
    DiffProgram programWithScript(const std::string& commands) const {
        const auto path = directory_.path() / "diff";
        directory_.write("diff", "#!/bin/sh\n" + commands);
        fs::permissions(path, fs::perms::owner_all);
        return DiffProgram(path.string());
    }

    static std::string complaintOf(const DiffProgram& diff) {
        try {
            return "no complaint, but " + diff.hunks("a.ppd", "a\n", "b\n");
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.place(), "a.ppd");
            EXPECT_EQ(failure.status(), ExitStatus::noResult);
            return failure.what();
        }
    }

    TemporaryDirectory directory_;
};

TEST(DiffProgramTest, GivesWhatFollowsTheHeader) {
    EXPECT_EQ(DiffProgram().hunks("a.ppd", "a\n", "b\n"), "@@ -1 +1 @@\n-a\n+b\n");
    EXPECT_EQ(DiffProgram().hunks("a.ppd", "a\n", "a\n"), "");
}

TEST(DiffProgramTest, TakesTextsThatAreLargerThanAPipe) {
    const std::string large(3'000'000, 'x');
    EXPECT_EQ(DiffProgram().hunks("a.ppd", large + "\n", large + "y\n"),
              "@@ -1 +1 @@\n-" + large + "\n+" + large + "y\n");
}

TEST(DiffProgramTest, TakesBytesOfAnyKind) {
    const std::string odd("a\0\xFF\r", 4);
    EXPECT_EQ(DiffProgram().hunks("a.ppd", odd, "b"),
              "@@ -1 +1 @@\n-" + odd +
                  "\n\\ No newline at end of file\n+b\n\\ No newline at end of file\n");
}

TEST(DiffProgramTest, LeavesNoFileOpen) {
    const auto openFiles = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    };
    const auto before = openFiles();
    (void)DiffProgram().hunks("a.ppd", "a\n", "b\n");
    EXPECT_EQ(openFiles(), before);
}

TEST_F(OtherDiff, ThatIsMissingIsTold) {
    EXPECT_EQ(complaintOf(DiffProgram("/nowhere/diff")),
              "cannot be compared by /nowhere/diff: No such file or directory");
}

TEST_F(OtherDiff, ThatFailsIsToldInItsOwnWords) {
    EXPECT_THAT(complaintOf(programWithScript("echo 'diff: memory exhausted' >&2\nexit 2\n")),
                testing::EndsWith(": diff: memory exhausted"));
    EXPECT_THAT(complaintOf(programWithScript("exit 3\n")),
                testing::EndsWith(": it ends with status 3"));
    EXPECT_THAT(complaintOf(programWithScript("kill -9 $$\n")),
                testing::EndsWith(": signal 9 ended it"));
}

TEST_F(OtherDiff, HasNoEnvironmentOfTheCaller) {
    const std::string output =
        programWithScript("echo; echo; echo \"$LC_ALL,$HOME,$LD_LIBRARY_PATH\"; exit 1\n")
            .hunks("a.ppd", "a\n", "b\n");
    EXPECT_EQ(output, "C,,\n");
}

TEST(DiffProgramTest, WorksForACallerThatIgnoresTheEndOfItsChildren) {
    const TemporaryDirectory directory;
    directory.write("a.ppd", kSmallPPD);
    directory.write("a.json", kDuplexerIn);
    const ToolRun run = runCommand({"env", "--ignore-signal=CHLD", TKPPDUPDATING_TOOL, "update",
                                    "a.ppd", "--device-uri", "file:a.json", "--diff"},
                                   {.directory = directory.path().string()});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_THAT(run.output, testing::HasSubstr("+*DefaultZrAutoDuplexerInstalled: True\n"));
}

TEST_F(OtherDiff, IsNotStartedForEqualTexts) {
    const DiffProgram missing("/nowhere/diff");
    EXPECT_EQ(unifiedDiff("a.ppd", "a\n", "a\n", DiffStyle::forPrograms, missing), "");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
