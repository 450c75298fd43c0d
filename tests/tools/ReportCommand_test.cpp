#ifdef TKPPDUPDATING_WITH_CUPS
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>

#include "tests/support/FileContents.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/ToolRun.h"

namespace TkPPDUpdating::Testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* kUnchanged =
    "{\"queue\": \"office\", \"result\": \"unchanged\", \"server\": \"localhost\"}\n";
constexpr const char* kFailed =
    "{\"queue\": \"lab\", \"result\": \"failed\", \"server\": \"localhost\", \"cause\": "
    "\"no-queue\", \"reason\": \"there is none\"}\n";
constexpr const char* kOldPage = "<!DOCTYPE html>\n<p>old</p>\n";

class ReportCommandTest : public ::testing::Test {
  protected:
    ToolRun report(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"report", "--html", "page.html"});
        return runTool(arguments, {.directory = directory_.path()});
    }
    std::string page() const { return contentsOfFile(directory_.path() / "page.html"); }

    TemporaryDirectory directory_;
};

TEST_F(ReportCommandTest, MakesOnePageOfTheFilesOfManyServers) {
    directory_.write("print1.json", kUnchanged);
    directory_.write("print2.example.json", kFailed);
    directory_.write("print3.json", "");
    const ToolRun run = report({"print1.json", "print2.example.json", "print3.json"});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "");
    EXPECT_THAT(page(),
                AllOf(HasSubstr(">print1<"), HasSubstr(">print2.example<"), HasSubstr(">print3<"),
                      HasSubstr("there is none"), HasSubstr("Nothing was reported.")));
}

TEST_F(ReportCommandTest, MakesAPageOfTheSamples) {
    const std::string folder = TKPPDUPDATING_SOURCE_DIR "/samples/reports/";
    const ToolRun run =
        report({folder + "print1.json", folder + "print2.json", folder + "print3.json"});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_THAT(page(), AllOf(HasSubstr(">M: low<"), HasSubstr(">cause: no-backend<"),
                              HasSubstr("Glossy Brochure (1201)")));
}

TEST_F(ReportCommandTest, KeepsTheSchedulersOfOneFileApart) {
    directory_.write("both.json",
                     std::string(kUnchanged) +
                         "{\"queue\":\"x\",\"result\":\"skipped\",\"server\":\"b\"}\n" + kFailed);
    EXPECT_EQ(report({"both.json"}).exitStatus, 0);
    EXPECT_THAT(page(), AllOf(HasSubstr("id=\"server-2\""), Not(HasSubstr("id=\"server-3\""))));
}

TEST_F(ReportCommandTest, TakesWhatComesThroughAPipe) {
    const ToolRun run =
        runCommand({"sh", "-c",
                    "printf '%s' '" + std::string(kUnchanged) + "' | \"" + TKPPDUPDATING_TOOL +
                        "\" report --html page.html /dev/stdin"},
                   {.directory = directory_.path()});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_THAT(page(), AllOf(HasSubstr("<h2>localhost</h2>"), HasSubstr("office")));
}

TEST_F(ReportCommandTest, WritesThePageToStandardOutputWhenAskedTo) {
    directory_.write("a.json", kUnchanged);
    const ToolRun run =
        runTool({"report", "--html", "/dev/stdout", "a.json"}, {.directory = directory_.path()});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_THAT(run.output, ::testing::StartsWith("<!DOCTYPE html>\n"));
}

TEST_F(ReportCommandTest, ReplacesAPageAndNoOtherFile) {
    directory_.write("a.json", kUnchanged);
    directory_.write("page.html", kOldPage);
    EXPECT_EQ(report({"a.json"}).exitStatus, 0);
    EXPECT_THAT(page(), Not(HasSubstr("<p>old</p>")));
    const ToolRun run =
        runTool({"report", "--html", "a.json", "a.json"}, {.directory = directory_.path()});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.errors,
              "tkppdupdate: a.json: is there already and is no page; give --html another name\n");
    EXPECT_EQ(contentsOfFile(directory_.path() / "a.json"), kUnchanged);
}

TEST_F(ReportCommandTest, HelpHasExamples) {
    const ToolRun run = runTool({"report", "--help"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.output, HasSubstr("Examples:\n  tkppdupdate report --html"));
}

TEST_F(ReportCommandTest, SaysWhatIsMissingOrTooMuch) {
    directory_.write("a.json", kUnchanged);
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {}, {"a.json", "--all"}, {"a.json", "--server", "x"}, {"--server", "x"}}) {
        const ToolRun run = report(arguments);
        EXPECT_EQ(run.exitStatus, 2);
        EXPECT_EQ(lineCount(run.errors), 1U) << run.errors;
    }
    EXPECT_EQ(runTool({"report", "a.json"}, {.directory = directory_.path()}).exitStatus, 2);
    EXPECT_FALSE(std::filesystem::exists(directory_.path() / "page.html"));
}

struct BrokenReport {
    std::string testName;
    std::string contents;
    /// Behind "tkppdupdate: b.json: ".
    std::string told;

    friend void PrintTo(const BrokenReport& report, std::ostream* stream) {
        *stream << report.testName;
    }
};

class BrokenReportTest : public ::testing::TestWithParam<BrokenReport> {};

TEST_P(BrokenReportTest, IsToldWithFileLineAndCauseAndLeavesThePage) {
    const TemporaryDirectory directory;
    directory.write("a.json", kUnchanged);
    directory.write("b.json", GetParam().contents);
    directory.write("page.html", kOldPage);
    const ToolRun run = runTool({"report", "--html", "page.html", "a.json", "b.json"},
                                {.directory = directory.path()});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(lineCount(run.errors), 1U) << run.errors;
    EXPECT_THAT(run.errors, HasSubstr("tkppdupdate: b.json: " + GetParam().told));
    EXPECT_EQ(contentsOfFile(directory.path() / "page.html"), kOldPage);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.path()), {}), 3);
}

std::string queueWith(const std::string& member) {
    return "\n" + std::string(kUnchanged) + "{\"queue\":\"q\",\"result\":\"updated\"," + member +
           "}\n";
}

INSTANTIATE_TEST_SUITE_P(
    Files, BrokenReportTest,
    ::testing::Values(
        BrokenReport{"CutShort", std::string(kUnchanged) + "{\"queue\": \"lab\",\n",
                     "is not JSON at line 2, column 17"},
        BrokenReport{"NoJSON", "*PPD-Adobe: \"4.3\"\n", "is not JSON at line 1, column 1"},
        BrokenReport{"NotUTF8", "{\"queue\": \"\xFF\"}\n", "is not JSON at line 1, column 12"},
        BrokenReport{"TooDeep", std::string(40, '['), "nests deeper than 32 levels at line 1"},
        BrokenReport{"AnArray", "[]\n", "line 1: is an array, not the object of a queue"},
        BrokenReport{"ANumber", "\n7\n", "line 2: is a number, not the object of a queue"},
        BrokenReport{"Null", "null\n", "line 1: is null, not the object of a queue"},
        BrokenReport{"ARecordingOfAPrinter", "{\"MaxSupportedResolution\": 600}\n",
                     "line 1: \"queue\" is missing; \"tkppdupdate sync --json\" writes what"},
        BrokenReport{"NoResult", "{\"queue\": \"q\"}\n", "line 1: \"result\" is missing"},
        BrokenReport{"UnknownResult", "{\"queue\": \"q\", \"result\": \"fine\"}\n",
                     "line 1: \"result\" is none of the results of a queue"},
        BrokenReport{"QueueOfAnotherType", "{\"queue\": 1, \"result\": \"updated\"}\n",
                     "line 1: \"queue\" is a number, not a string"},
        BrokenReport{"ReasonOfAnotherType", queueWith("\"reason\":{}"),
                     "line 3: \"reason\" is an object, not a string"},
        BrokenReport{"NotesOfAnotherType", queueWith("\"notes\":\"x\""),
                     "line 3: \"notes\" is a string, not an array"},
        BrokenReport{"ANoteOfAnotherType", queueWith("\"notes\":[true]"),
                     "line 3: \"notes\" is a boolean, not a string in each element"},
        BrokenReport{"AChangeOfAnotherType", queueWith("\"changes\":[[]]"),
                     "line 3: \"changes\" is an array, not an object in each element"},
        BrokenReport{"AChangeOfNothing", queueWith("\"changes\":[{}]"),
                     "line 3: \"keyword\" is missing"},
        BrokenReport{"AnAnswerOfAnotherType", queueWith("\"answers\":[\"x\"]"),
                     "line 3: \"answers\" is a string, not an object in each element"},
        BrokenReport{"AStatusOfAnotherType", queueWith("\"status\":{\"DeviceAccessories\":1}"),
                     "line 3: \"status\": "}),
    [](const auto& test) { return test.param.testName; });

TEST_F(ReportCommandTest, SaysWhichFileCannotBeReadOrWritten) {
    directory_.write("a.json", kUnchanged);
    std::filesystem::create_directory(directory_.path() / "folder");
    EXPECT_EQ(report({"a.json", "nothing.json"}).errors,
              "tkppdupdate: nothing.json: No such file or directory\n");
    EXPECT_EQ(report({"folder"}).errors, "tkppdupdate: folder: Is a directory\n");
    EXPECT_FALSE(std::filesystem::exists(directory_.path() / "page.html"));
    const ToolRun run = runTool({"report", "--html", "nowhere/page.html", "a.json"},
                                {.directory = directory_.path()});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr("nowhere/page.html: "));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
#endif
