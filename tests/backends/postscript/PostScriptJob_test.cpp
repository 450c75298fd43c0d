#include "backends/postscript/PostScriptJob.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;
using testing::Not;

const PostScriptMark kMark{"00112233", "aabbccdd"};

TEST(PostScriptJob, StandsBetweenTheCommandsOfThePrintersJobLanguage) {
    const OrbCSPostScriptQuestions questions{"\x1B%-12345X@PJL\n", "\x1B%-12345X", {}};
    const PostScriptJob job(questions, kMark);
    EXPECT_TRUE(job.beginning().starts_with("\x1B%-12345X@PJL\n%!PS"));
    EXPECT_EQ(job.end(), "\x1B%-12345X");
}

TEST(PostScriptJob, NeverHasTheMarkAsAWhole) {
    const OrbCSPostScriptQuestions questions{"", "", {{"Option1", "(x) =", {"x"}}}};
    const PostScriptJob job(questions, kMark);
    const std::string text = job.beginning() + job.question(0) + job.end();
    EXPECT_THAT(text, HasSubstr(kMark.first));
    EXPECT_THAT(text, HasSubstr(kMark.second));
    EXPECT_THAT(text, Not(HasSubstr(kMark.text())));
}

TEST(PostScriptJob, SendsAQuestionAsDigitsWhateverIsInIt) {
    std::string code(1'000'000, ')');
    code.replace(0, 6, std::string("(\0\x1B\x04\n{", 6));
    const OrbCSPostScriptQuestions questions{"", "", {{"Option1", code, {"x"}}}};
    const std::string text = PostScriptJob(questions, kMark).question(0);
    EXPECT_TRUE(text.starts_with("(0) <28001b040a7b2929")) << text.substr(0, 40);
    EXPECT_EQ(text.find_first_not_of("0123456789abcdef<>() TkQ\n"), std::string::npos);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        ASSERT_LT(line.size(), 200U);
    }
    EXPECT_THROW((void)PostScriptJob(questions, kMark).question(1), std::out_of_range);
}

TEST(PostScriptJob, AsksForTheProductAsForAnythingElse) {
    const OrbCSPostScriptQuestions questions;
    const std::string text = PostScriptJob(questions, kMark).productQuestion();
    EXPECT_TRUE(text.starts_with("(product) <")) << text;
    EXPECT_EQ(text.find_first_not_of("0123456789abcdef<>() TkQproduct\n"), std::string::npos);
}

TEST(PostScriptJob, FindsTheNamesThatNoQuestionMayHave) {
    for (const char* code : {"quit", "systemdict /quit get exec", "true{quit}if", "(quit) cvx exec",
                             "/add where{pop}if % quit", "//quit exec", "1[quit]", "<<quit>>",
                             "a\tquit\rb", "quit%", "\fquit\f"}) {
        EXPECT_EQ(PostScriptJob::operatorNoQuestionMayName(code), "quit") << code;
    }
    for (const char* name :
         {"showpage", "copypage", "startjob", "exitserver", "serverdict", "currentfile"}) {
        EXPECT_EQ(PostScriptJob::operatorNoQuestionMayName(std::string("0 ") + name + " quit"),
                  name);
    }
    EXPECT_EQ(PostScriptJob::operatorNoQuestionMayName(std::string("1\0quit\0", 7)), "quit");
    for (const char* code :
         {"", "(True) = flush", "quits", "noquit", "qu it", "Quit", "quit.", "{}[]"}) {
        EXPECT_EQ(PostScriptJob::operatorNoQuestionMayName(code), "") << code;
    }
}

TEST(PostScriptJob, MarksAreNeverTheSame) {
    const PostScriptMark one = PostScriptMark::random();
    const PostScriptMark other = PostScriptMark::random();
    EXPECT_NE(one.text(), other.text());
    EXPECT_EQ(one.text().size(), 32U);
    EXPECT_NE(one.first, one.second);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
