#include "tests/support/RunProgram.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>

#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

TEST(RunProgram, KeepsTheTwoOutputsApartAndGivesTheExitStatus) {
    const ProgramResult result = runProgram({"sh", "-c", "echo out; echo err >&2; exit 7"});
    EXPECT_EQ(result.exitStatus, 7);
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(result.standardOutput, "out\n");
    EXPECT_EQ(result.standardError, "err\n");
}

TEST(RunProgram, PassesArgumentsWithoutAShell) {
    EXPECT_EQ(runProgram({"printf", "%s", "a b;$HOME*'\""}).standardOutput, "a b;$HOME*'\"");
}

TEST(RunProgram, GivesTheStandardInput) {
    const std::string text(300'000, 'x');
    ProgramSurroundings surroundings;
    surroundings.standardInput = text;
    EXPECT_EQ(runProgram({"cat"}, surroundings).standardOutput, text);
}

TEST(RunProgram, TheStandardInputIsEmptyUnlessGiven) {
    EXPECT_EQ(runProgram({"cat"}).standardOutput, "");
}

TEST(RunProgram, ReadsBothOutputsWhenBothAreLargerThanAPipeHolds) {
    const ProgramResult result =
        runProgram({"sh", "-c", "head -c 500000 /dev/zero >&2; head -c 400000 /dev/zero"});
    EXPECT_EQ(result.standardError.size(), 500'000U);
    EXPECT_EQ(result.standardOutput.size(), 400'000U);
}

TEST(RunProgram, SetsAndRemovesVariablesOfTheProgramOnly) {
    ProgramSurroundings surroundings;
    surroundings.environment = {{"TKPPDUPDATING_A", "1"}, {"HOME", std::nullopt}};
    EXPECT_EQ(
        runProgram({"sh", "-c", "echo $TKPPDUPDATING_A,${HOME-none},${PATH:+path}"}, surroundings)
            .standardOutput,
        "1,none,path\n");
    EXPECT_EQ(runProgram({"sh", "-c", "echo ${TKPPDUPDATING_A-none}"}).standardOutput, "none\n");
}

TEST(RunProgram, RunsInTheFolderGiven) {
    const TemporaryDirectory folder;
    ProgramSurroundings surroundings;
    surroundings.workingDirectory = folder.path().string();
    EXPECT_EQ(runProgram({"pwd", "-P"}, surroundings).standardOutput,
              std::filesystem::canonical(folder.path()).string() + "\n");
}

TEST(RunProgram, AProgramThatASignalEndsHasTheStatusThatAShellGives) {
    EXPECT_EQ(runProgram({"sh", "-c", "kill -TERM $$"}).exitStatus, 128 + 15);
}

TEST(RunProgram, AProgramOverItsTimeIsKilledWithWhatItStarted) {
    ProgramSurroundings surroundings;
    surroundings.timeLimit = milliseconds(200);
    const auto start = steady_clock::now();
    const ProgramResult result =
        runProgram({"sh", "-c", "echo begun; sleep 60 & sleep 60; echo done"}, surroundings);
    EXPECT_TRUE(result.timedOut);
    EXPECT_EQ(result.exitStatus, 128 + 9);
    EXPECT_EQ(result.standardOutput, "begun\n");
    EXPECT_LT(steady_clock::now() - start, seconds(30));
}

TEST(RunProgram, DoesNotWaitForAProcessThatTheProgramLeftBehind) {
    const auto start = steady_clock::now();
    const ProgramResult result = runProgram({"sh", "-c", "sleep 20 & echo $!"});
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_LT(steady_clock::now() - start, seconds(15));
    const std::string left = result.standardOutput.substr(0, result.standardOutput.find('\n'));
    EXPECT_EQ(runProgram({"sh", "-c", "kill " + left}).exitStatus, 0)
        << "the process was not left behind";
}

TEST(RunProgram, AProgramThatIsNotThereIsAnError) {
    EXPECT_THROW(runProgram({"/nonexistent/program"}), std::system_error);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
