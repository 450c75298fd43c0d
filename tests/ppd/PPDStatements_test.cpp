#include "ppd/PPDStatements.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace TkPPDUpdating::Testing {
namespace {

using testing::ElementsAre;

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    for (const PPDStatement& statement : PPDStatementsOfText(text)) {
        lines.push_back(statement.lines);
    }
    return lines;
}

/// The only statement of the text; the text must outlive it.
PPDStatement statementOf(std::string_view text) {
    const auto statements = PPDStatementsOfText(text);
    EXPECT_EQ(statements.size(), 1U) << text;
    return statements.empty() ? PPDStatement() : statements.front();
}

TEST(PPDStatements, LineFeedsCarriageReturnsAndBothEndLines) {
    EXPECT_THAT(linesOf("*A: 1\n*B: 2\r\n*C: 3\r*D: 4\n\r*E: 5"),
                ElementsAre("*A: 1", "*B: 2", "*C: 3", "*D: 4", "*E: 5"));
}

TEST(PPDStatements, BlankLinesAreNone) {
    EXPECT_THAT(linesOf("\n\n*A: 1\n \t \n\r\r\n*B: 2\n\n"), ElementsAre("*A: 1", "*B: 2"));
    EXPECT_THAT(linesOf(""), ElementsAre());
}

TEST(PPDStatements, AQuotedValueGoesOnToItsEnd) {
    EXPECT_THAT(linesOf("*A: \"one\ntwo\n\nthree\"\n*End\n*B: 2\n"),
                ElementsAre("*A: \"one\ntwo\n\nthree\"\n*End", "*B: 2"));
    EXPECT_THAT(linesOf("*A: \"one\r\ntwo\"\r\n*B: 2\r\n"),
                ElementsAre("*A: \"one\r\ntwo\"", "*B: 2"));
    EXPECT_THAT(linesOf("*A: \"one\n*cupsFilter: x\n"), ElementsAre("*A: \"one\n*cupsFilter: x\n"))
        << "without an end it is all that follows";
}

TEST(PPDStatements, AnEndAloneBelongsToAValueOfSeveralLinesOnly) {
    EXPECT_THAT(linesOf("*A: \"one\"\n*End\n"), ElementsAre("*A: \"one\"", "*End"));
    for (const std::string end : {"\n", "\r", "\r\n"}) {
        const std::string value = "*A: \"one" + end + "two\"" + end + "*End";
        EXPECT_THAT(linesOf(value + end + "*B: 2" + end), ElementsAre(value, "*B: 2")) << value;
    }
}

TEST(PPDStatements, ALongBlankLineTakesLinearTime) {
    EXPECT_THAT(linesOf(std::string(300000, ' ') + "\n*A: 1\n"), ElementsAre("*A: 1"));
}

TEST(PPDStatements, QuotesCountBehindTheFirstColonAndNotInComments) {
    EXPECT_THAT(linesOf("*A b\"/c: 1\n*B: 2\n"), ElementsAre("*A b\"/c: 1", "*B: 2"));
    EXPECT_THAT(linesOf("*% a: \"b\n*B: 2\n"), ElementsAre("*% a: \"b", "*B: 2"));
    EXPECT_THAT(linesOf("*A b\"\n*B: 2\n"), ElementsAre("*A b\"", "*B: 2")) << "without a colon";
}

TEST(PPDStatements, HasKeywordOptionKeywordTextAndValue) {
    const PPDStatement statement = statementOf(
        "*MediaType  custom1 / Glossy paper: \"<</MediaType(custom1)>>setpagedevice\" \n");
    EXPECT_EQ(statement.keyword, "MediaType");
    EXPECT_EQ(statement.optionKeyword, "custom1");
    EXPECT_EQ(statement.text, " Glossy paper");
    EXPECT_EQ(statement.value, "<</MediaType(custom1)>>setpagedevice");
    EXPECT_TRUE(statement.isQuoted);
}

TEST(PPDStatements, TheFirstColonEndsTheText) {
    const PPDStatement statement = statementOf(
        "*MediaType custom1/Glossy:  (/etc/passwd)(r)file: \"<</MediaType(custom1)>>\"");
    EXPECT_EQ(statement.text, "Glossy");
    EXPECT_EQ(statement.value, "/etc/passwd)(r)file: \"<</MediaType(custom1)>>");
    EXPECT_FALSE(statement.isQuoted);
}

TEST(PPDStatements, AnUnquotedValueLosesOnlyTheBlanksAround) {
    EXPECT_EQ(statementOf("*A: \t b c: d \t\r\n").value, "b c: d");
    EXPECT_EQ(statementOf("*A:\n").value, "");
    EXPECT_EQ(statementOf("*A\n").value, "");
    EXPECT_EQ(statementOf("*A\n").keyword, "A");
    EXPECT_EQ(statementOf("*A B\n").optionKeyword, "B");
}

TEST(PPDStatements, ACommentOrAnotherLineHasNoKeyword) {
    EXPECT_EQ(statementOf("*% MediaType: x").keyword, "");
    EXPECT_EQ(statementOf("MediaType: x").keyword, "");
}

TEST(PPDStatements, OnlyWhatHasAValueIsQuoted) {
    for (const char* const line : {"*% MediaType: \"x\"", "MediaType: \"x\"", "*A", "*A B/\"C\""}) {
        EXPECT_FALSE(statementOf(line).isQuoted) << line;
    }
}

TEST(PPDStatements, AValueIsQuotedBetweenTwoQuotes) {
    struct {
        const char* line;
        const char* value;
        bool isQuoted;
    } const cases[] = {
        {"*A: \"\"", "", true},         {"*A: \"b\"", "b", true}, {"*A: \"b\" c", "\"b\" c", false},
        {"*A: b \"c\"", " \"c", false}, {"*A: \"", "\"", false},  {"*A: b", "b", false},
    };
    for (const auto& [line, value, isQuoted] : cases) {
        EXPECT_EQ(statementOf(line).value, value) << line;
        EXPECT_EQ(statementOf(line).isQuoted, isQuoted) << line;
    }
}

TEST(PPDStatements, AValueOfSeveralLinesIsWithoutItsEnd) {
    EXPECT_EQ(statementOf("*A b/c: \"one\ntwo\"\n*End\n").value, "one\ntwo");
    EXPECT_EQ(statementOf("*A b/c: \"one\ntwo\"\n").value, "one\ntwo");
    EXPECT_EQ(statementOf("*A: one *End\n").value, "one *End");
}

TEST(PPDStatements, TellsADefault) {
    EXPECT_TRUE(statementOf("*DefaultMediaType: Plain").isDefault());
    EXPECT_EQ(statementOf("*DefaultMediaType: Plain").optionOfDefault(), "MediaType");
    EXPECT_FALSE(statementOf("*DefaultMediaType Plain/x: y").isDefault());
    EXPECT_FALSE(statementOf("*DefaultMediaType Plain: y").isDefault());
    EXPECT_FALSE(statementOf("*DefaultMediaType /x: y").isDefault());
    EXPECT_FALSE(statementOf("*MediaType: Plain").isDefault());
    EXPECT_EQ(statementOf("*MediaType: Plain").optionOfDefault(), "");
}

TEST(PPDStatements, StandInTheirOptionAndGroup) {
    const auto statements = PPDStatementsOfText(
        "*A: 1\n*OpenGroup: G/Group\n*OpenUI *X/Option: PickOne\n*X a/A: \"\"\n*CloseUI: *X\n"
        "*OpenSubGroup: H\n*B: 2\n*CloseSubGroup: H\n*C: 3\n*CloseGroup: G\n*CloseGroup: G\n*D: "
        "4\n");
    std::vector<std::string> places;
    for (const PPDStatement& each : statements) {
        places.push_back(std::string(each.group) + ":" + std::string(each.option));
    }
    EXPECT_THAT(places, ElementsAre(":", "G:", "G:X", "G:X", "G:X",
                                    "H:", "H:", "H:", "G:", "G:", ":", ":"));
    EXPECT_EQ(statements.back().index, statements.size() - 1);
}

TEST(PPDStatements, AnOptionOfTheJobControlLanguageOpensAndClosesLikeAnyOther) {
    const auto statements = PPDStatementsOfText(
        "*JCLOpenUI *JCLX/Option: PickOne\n*% comment\n*JCLX a: \"\"\n*JCLCloseUI: *JCLX\n*A: 1\n");
    std::vector<std::string_view> options;
    for (const PPDStatement& each : statements) {
        options.push_back(each.option);
    }
    EXPECT_THAT(options, ElementsAre("JCLX", "JCLX", "JCLX", "JCLX", ""));
}

TEST(PPDStatements, ACommentNeitherOpensNorClosesAnOption) {
    const auto statements = PPDStatementsOfText("*OpenUI *X: PickOne\n*% comment\n*X a: \"\"\n");
    EXPECT_EQ(statements.back().option, "X");
}

TEST(PPDStatements, AnOptionMayBeOpenedWithoutItsAsterisk) {
    EXPECT_EQ(statementOf("*OpenUI X/Option: PickOne\n").option, "X");
}

TEST(PPDStatements, DecodesHexadecimalPartsOfATranslation) {
    EXPECT_EQ(decodedPPDTranslation("a<0A>b"), "a\nb");
    EXPECT_EQ(decodedPPDTranslation("caf<C3a9>"), "caf\xC3\xA9");
    EXPECT_EQ(decodedPPDTranslation("<41 42>x"), "Ax") << "a blank ends the digits";
    EXPECT_EQ(decodedPPDTranslation("a<4>b<414>c"), "abAc") << "a digit alone is nothing";
    EXPECT_EQ(decodedPPDTranslation("<41"), "A");
    EXPECT_EQ(decodedPPDTranslation("<g> a<b"), "<g> a");
    EXPECT_EQ(decodedPPDTranslation("<>"), "<>");
    EXPECT_EQ(decodedPPDTranslation("a<"), "a<");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
