#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>

#include "tests/support/CodeBlocks.h"
#include "tests/support/RunProgram.h"

namespace TkPPDUpdating::Testing {
namespace {

std::set<std::string> matches(const std::string& text, const char* expression) {
    const std::regex regex(expression, std::regex::multiline);
    std::set<std::string> found;
    for (std::sregex_iterator each(text.begin(), text.end(), regex), end; each != end; ++each) {
        found.insert(each->str(1));
    }
    return found;
}

std::string help(const std::string& command) {
    std::vector<std::string> arguments = {TKPPDUPDATING_TOOL};
    if (!command.empty()) {
        arguments.push_back(command);
    }
    arguments.emplace_back("--help");
    return runProgram(arguments).standardOutput;
}

std::set<std::string> commands() {
    return matches(help(""), "^  ([a-z]+)  ");
}

TEST(ManualPage, DescribesTheCommandsThatTheHelpLists) {
    const std::string page = textOfSource("docs/tkppdupdate.1");
    EXPECT_EQ(matches(page, "^\\.It Cm ([a-z]+)$"), commands());
    EXPECT_EQ(matches(page, "^\\.Cm ([a-z]+)$"), commands()) << "in the synopsis and elsewhere";
}

TEST(ManualPage, DescribesTheOptionsThatTheHelpLists) {
    std::set<std::string> options = {"version"};
    for (const std::string& command : commands()) {
        options.merge(matches(help(command), "--([a-z-]+)"));
    }
    EXPECT_EQ(matches(textOfSource("docs/tkppdupdate.1"), "^\\.It Fl (?:h , Fl )?-([a-z-]+)"),
              options);
}

TEST(ManualPage, ShowsTheOptionsOfEachCommandInItsSynopsis) {
    const std::string page = textOfSource("docs/tkppdupdate.1");
    for (const std::string& command : commands()) {
        const std::size_t start = page.find(".Cm " + command + "\n");
        ASSERT_NE(start, std::string::npos) << command;
        const std::string synopsis = page.substr(start, page.find(".Nm", start) - start);
        auto options = matches(help(command), "--([a-z-]+)");
        options.erase("help");
        EXPECT_EQ(matches(synopsis, "Fl -([a-z-]+)"), options) << command;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
