#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/FileContents.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/SmallPPD.h"
#include "tests/tools/ToolRun.h"

namespace TkPPDUpdating::Testing {
namespace {

struct UsageError {
    std::string testName;
    /// "PPD" stands for the file.
    std::vector<std::string> arguments;
};

std::ostream& operator<<(std::ostream& stream, const UsageError& error) {
    return stream << error.testName;
}

class UsageErrorTest : public ::testing::TestWithParam<UsageError> {};

TEST_P(UsageErrorTest, EndsWithTwoAndOneLineAndLeavesTheFileAlone) {
    const TemporaryDirectory directory;
    const std::string ppd = directory.write("printer.ppd", kSmallPPD);
    directory.write("printer.json", kDuplexerIn);
    std::vector<std::string> arguments = GetParam().arguments;
    for (std::string& argument : arguments) {
        argument = argument == "PPD" ? ppd : argument;
    }
    const ToolRun run = runTool(arguments, {.directory = directory.path()});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(lineCount(run.errors), 1U) << run.errors;
    EXPECT_TRUE(run.errors.starts_with("tkppdupdate: ")) << run.errors;
    EXPECT_EQ(contentsOfFile(ppd), kSmallPPD);
}

const std::string kDevice = "file:printer.json";

INSTANTIATE_TEST_SUITE_P(
    Arguments, UsageErrorTest,
    ::testing::Values(
        UsageError{"NoCommand", {}}, UsageError{"UnknownCommand", {"upgrade"}},
        UsageError{"TwoCommands", {"updaters", "PPD", "updaters"}},
        UsageError{"UnknownOption", {"update", "PPD", "--device-uri", kDevice, "--colour"}},
        UsageError{"NoFile", {"update", "--device-uri", kDevice}},
        UsageError{"TwoFiles", {"update", "PPD", "PPD", "--device-uri", kDevice}},
        UsageError{"NeitherDeviceNorQueue", {"update", "PPD"}},
        UsageError{"BothDeviceAndQueue",
                   {"update", "PPD", "--device-uri", kDevice, "--queue", "q"}},
        UsageError{"OptionWithoutItsValue", {"update", "PPD", "--device-uri"}},
        UsageError{"OutputAndInPlace",
                   {"update", "PPD", "--device-uri", kDevice, "--in-place", "--output", "x"}},
        UsageError{"OnlyAnUnknownClass",
                   {"update", "PPD", "--device-uri", kDevice, "--in-place", "--only", "Orb"}},
        UsageError{"SkipAnUnknownClass",
                   {"update", "PPD", "--device-uri", kDevice, "--in-place", "--skip", ""}},
        UsageError{"RequiredDeviceOfAQueue", {"update", "PPD", "--queue", "q", "--require-device"}},
        UsageError{
            "WithoutARequiredDevice",
            {"update", "PPD", "--device-uri", kDevice, "--require-device", "--without-device"}},
        UsageError{"WithoutTheDeviceOfAQueue",
                   {"update", "PPD", "--queue", "q", "--without-device"}},
        UsageError{"ValuesOfNothing", {"values", "--device-uri", kDevice}},
        UsageError{"ValuesOfQueueAndFile",
                   {"values", "--ppd", "PPD", "--queue", "q", "--device-uri", kDevice}},
        UsageError{"ValuesWithoutADevice", {"values", "--ppd", "PPD"}},
        UsageError{"ValuesOfAnUnknownClass",
                   {"values", "--ppd", "PPD", "--device-uri", kDevice, "--only", "Orb\nPPD"}},
        UsageError{"UpdatersOfTwoFiles", {"updaters", "PPD", "PPD"}},
        UsageError{"SyncWithAnEmptyServer", {"sync", "--all", "--server", ""}},
        UsageError{"SyncWithAnEmptyServerBehindTheSign", {"sync", "--all", "--server="}}),
    [](const auto& test) { return test.param.testName; });

/// What the help must say, without how the library that lays it out does so.
struct Help {
    std::vector<std::string> arguments;
    std::vector<std::string> told;
};

TEST(UsageTest, HelpGoesToStandardOutput) {
    for (const Help& help :
         std::vector<Help>{{{"--help"}, {"update", "values", "updaters", "status", "--version"}},
                           {{"update", "--help"},
                            {"--device-uri", "--in-place", "--require-device", "--without-device",
                             "--all-updaters"}},
                           {{"values", "--help"}, {"--queue", "--ppd"}},
                           {{"updaters", "--help"}, {"updaters"}},
                           {{"status", "--help"}, {"status"}}}) {
        const ToolRun run = runTool(help.arguments);
        EXPECT_EQ(run.exitStatus, 0);
        EXPECT_NE(run.output.find("tkppdupdate"), std::string::npos) << run.output;
        for (const std::string& told : help.told) {
            EXPECT_NE(run.output.find(told), std::string::npos) << told << "\n" << run.output;
        }
        EXPECT_EQ(run.errors, "");
    }
}

TEST(UsageTest, EachCommandsHelpHasExamples) {
    for (const std::string command : {"update", "values", "updaters", "status"}) {
        const std::string help = runTool({command, "--help"}).output;
        // Each CLI11 lays it out in its own way.
        EXPECT_THAT(help, testing::ContainsRegex("Examples: *\n *tkppdupdate " + command));
    }
}

TEST(UsageTest, AnErrorPointsToTheHelpOfItsCommand) {
    EXPECT_NE(runTool({"values"}).errors.find("\"tkppdupdate values --help\""), std::string::npos);
    EXPECT_NE(runTool({}).errors.find("\"tkppdupdate --help\""), std::string::npos);
}

#ifdef TKPPDUPDATING_WITH_CUPS
TEST(UsageTest, AnEmptyServerIsToldAsTheError) {
    EXPECT_NE(
        runTool({"sync", "--all", "--server", ""}).errors.find("--server: \"\" is no scheduler"),
        std::string::npos);
}
#endif

TEST(UsageTest, VersionIsTheProjects) {
    const ToolRun run = runTool({"--version"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, "tkppdupdate " TKPPDUPDATING_VERSION "\n");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
