// The completion of bash offers what the tool takes, and nothing else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "tests/tools/ToolRun.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr const char* kCompletion = TKPPDUPDATING_SOURCE_DIR "/administration/tkppdupdate.bash";

/// What the completion's function writes, words apart.
std::set<std::string> wordsOf(const std::string& function) {
    const ToolRun run =
        runCommand({"bash", "-c", "source " + std::string(kCompletion) + "; " + function});
    EXPECT_EQ(run.errors, "");
    std::istringstream words(run.output);
    return {std::istream_iterator<std::string>(words), {}};
}

std::set<std::string> optionsInHelpOf(const std::string& command) {
    const std::string help = runTool({command, "--help"}).output;
    // The examples below the options may name some of them again.
    const std::string options = help.substr(0, help.find("Example"));
    const std::regex pattern("--[a-z][a-z-]*");
    std::set<std::string> names;
    for (std::sregex_iterator each(options.begin(), options.end(), pattern), end; each != end;
         ++each) {
        names.insert(each->str());
    }
    return names;
}

class Completion : public ::testing::TestWithParam<std::string> {};

TEST_P(Completion, OffersTheOptionsOfTheHelp) {
    EXPECT_EQ(wordsOf("_tkppdupdate_options " + GetParam()), optionsInHelpOf(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Commands, Completion,
                         ::testing::Values("update", "values", "updaters", "status"),
                         [](const auto& test) { return test.param; });
#ifdef TKPPDUPDATING_WITH_CUPS
INSTANTIATE_TEST_SUITE_P(CommandsForQueues, Completion,
                         ::testing::Values("sync", "restore", "report"),
                         [](const auto& test) { return test.param; });
#endif

TEST(CompletionOfClasses, OffersThoseThatTheToolLists) {
    const std::string folder =
        std::string(TKPPDUPDATING_TOOL).substr(0, std::string(TKPPDUPDATING_TOOL).rfind('/'));
    const auto offered = wordsOf("PATH=" + folder +
                                 ":$PATH; _tkppdupdate_values --only OrbPPDMax; echo "
                                 "${COMPREPLY[@]}");
    EXPECT_EQ(offered, std::set<std::string>{"OrbPPDMaxResolutionUpdater"});
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
