#include "backends/postscript/PostScriptAnswers.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace TkPPDUpdating::Testing {
namespace {

const PostScriptMark kMark{"0011", "aabb"};

/// What is between the marker lines of the question 1, and how it ended.
std::string answered(const std::string& text, const std::string& error = "none") {
    return "\naabb0011 1 begin\n" + text + "\naabb0011 1 end " + error + "\n";
}

std::optional<PostScriptAnswer> answerIn(const std::string& received) {
    return postScriptAnswer(received, kMark, "1");
}

TEST(PostScriptAnswers, AreWithoutMessagesQuotesAndWhiteSpaceAround) {
    for (const char* text :
         {"True", " True \r\n", "\"True\"", "\" True \"\n\n", "%%[ status: idle ]%%\nTrue",
          "True%%[ status: busy; source: Network ]%%\r\n", "%%[ a ]%%True%%[ b ]%%%%[ c ]%%"}) {
        const auto answer = answerIn(answered(text));
        ASSERT_TRUE(answer) << text;
        EXPECT_EQ(answer->text, "True") << text;
        EXPECT_TRUE(answer->isWhole);
    }
}

TEST(PostScriptAnswers, AreFoundWhateverEndsALineAndStandsBefore) {
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        std::string text =
            "noise" + end + "aabb0011 1 begin" + end + "True" + end + "aabb0011 1 end none" + end;
        EXPECT_EQ(answerIn(text).value_or(PostScriptAnswer{}).text, "True");
        EXPECT_EQ(answerIn("%%[ status: idle ]%%" + text.substr(5 + end.size()))
                      .value_or(PostScriptAnswer{})
                      .text,
                  "True");
    }
}

TEST(PostScriptAnswers, AreNotThereBeforeTheirLastLineIsWhole) {
    const std::string whole = answered("True");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(answerIn(whole.substr(0, length))) << length;
    }
    EXPECT_TRUE(answerIn(whole));
}

TEST(PostScriptAnswers, OfOtherQuestionsAndOtherMarksDoNotCount) {
    for (const char* received :
         {"", "True\n", "\naabb0011 2 begin\nTrue\n\naabb0011 2 end none\n",
          "\n0011aabb 1 begin\nTrue\n\n0011aabb 1 end none\n",
          "\naabb0011 1 end none\nTrue\naabb0011 1 begin\n",
          "x aabb0011 1 begin\nTrue\nx aabb0011 1 end none\n",
          "(\naabb) print (0011 1 begin) print\nTrue\n(aabb) (0011 1 end none)\n"}) {
        EXPECT_FALSE(answerIn(received)) << received;
    }
    EXPECT_EQ(answerIn("\naabb0011 0 end none\n" + answered("True"))->text, "True");
}

TEST(PostScriptAnswers, TellTheLanguagesOwnErrorsOnly) {
    EXPECT_EQ(answerIn(answered("", "undefined"))->error, "undefined");
    EXPECT_FALSE(answerIn(answered("", "undefined"))->isWhole);
    EXPECT_EQ(answerIn(answered("", "*cupsFilter: evil"))->error, "");
    EXPECT_FALSE(answerIn(answered("", "*cupsFilter: evil"))->isWhole);
}

TEST(PostScriptAnswers, TheFirstSignIsOneLine) {
    EXPECT_TRUE(postScriptAnswer("\r\naabb0011 ready end none\r\n", kMark, PostScriptJob::kReady));
    EXPECT_FALSE(postScriptAnswer("aabb0011 ready end none", kMark, PostScriptJob::kReady));
    EXPECT_FALSE(postScriptAnswer("ready end none\n", kMark, PostScriptJob::kReady));
}

TEST(PostScriptAnswers, BytesOfAnyKindAreNoAnswerAndNoHarm) {
    for (const std::string& received :
         {std::string(100, '\0'), std::string(5000, '%'), std::string("%%[\n%%[ ]%%\n"),
          std::string("\n\n\naabb0011 1 begin\n\xFF\xFE"), "%%[" + answered("True")}) {
        (void)answerIn(received);
    }
    EXPECT_EQ(answerIn(answered(std::string("\0\xFF", 2)))->text, std::string("\0\xFF", 2));
}

TEST(PostScriptAnswers, AreFoundInTimeBehindMessagesThatAreNone) {
    std::string beginnings;
    while (beginnings.size() < 16'000) {
        beginnings += "%%[";
    }
    const auto start = std::chrono::steady_clock::now();
    for (int times = 0; times < 100; ++times) {
        ASSERT_EQ(answerIn(beginnings + answered("True"))->text, "True");
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(PostScriptAnswers, OnlyAChoiceIsAnAnswer) {
    const std::vector<std::string> choices = {"None", "Tray500"};
    const auto reason = [&choices](const std::string& text, const std::string& error = "none") {
        return reasonForNoChoice(*answerIn(answered(text, error)), choices);
    };
    EXPECT_EQ(reason("Tray500"), std::nullopt);
    EXPECT_EQ(reason("Tray500", "invalidrestore"), std::nullopt) << "said before it broke";
    EXPECT_EQ(reason("Unknown"), "the printer does not know");
    EXPECT_EQ(reason(""), "the printer answers nothing");
    EXPECT_EQ(reason("", "typecheck"),
              "the question ends in an error of the printer's (typecheck)");
    EXPECT_EQ(reason("", "(x)"), "the question ends in an error of the printer's");
    for (const char* text : {"tray500", "Tray 500", "Tray\n500", "None\nTray500", "True",
                             "Tray500 None", "*Default", "Tray500\"x"}) {
        EXPECT_EQ(reason(text), "the answer is none of the option's choices") << text;
    }
    EXPECT_EQ(reasonForNoChoice({"Unknown", true, ""}, {"Unknown"}), std::nullopt);
    EXPECT_EQ(reasonForNoChoice({"", true, ""}, {""}), "the printer answers nothing");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
