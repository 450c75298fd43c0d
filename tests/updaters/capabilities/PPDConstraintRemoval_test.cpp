#include "updaters/capabilities/PPDConstraintRemoval.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "ppd/OrbPPDLines.h"
#include "tests/updaters/capabilities/ConstraintRemovalModel.h"

namespace TkPPDUpdating::Testing {
namespace {

using namespace std::string_view_literals;

struct Case {
    const char* name;
    std::string_view text;
    std::string_view expected;
};

void PrintTo(const Case& each, std::ostream* out) {
    *out << each.text;
}

class ConstraintRemovalCase : public testing::TestWithParam<Case> {};

/// The expected texts are worked out by hand; the word-by-word model is held to them, too.
TEST_P(ConstraintRemovalCase, GivesTheExpectedText) {
    const std::string text(GetParam().text);
    EXPECT_EQ(*PPDTextByRemovingConstraints(makePPDText(text), "Duplex"), GetParam().expected);
    EXPECT_EQ(ConstraintRemovalModel::removed(text, "Duplex"), GetParam().expected) << "the model";
}

constexpr Case kConstraintLines[] = {
    {"EmptyText", "", ""},
    {"OptionWithoutChoiceAtLineEnd", "a\n*UIConstraints: *MediaType Glossy *Duplex\nb\n", "a\nb\n"},
    {"OptionFirst", "a\n*UIConstraints: *Duplex DuplexTumble *MediaType Glossy\nb\n", "a\nb\n"},
    {"OptionLastWithChoice", "a\n*UIConstraints: *MediaType Glossy *Duplex None\nb\n", "a\nb\n"},
    {"AdjoiningLinesThenAnotherOptionThenOneMore",
     "*UIConstraints: *Duplex A *X\n*UIConstraints: *Duplex B *X\n*UIConstraints: *Duplex C *X\n"
     "*UIConstraints: *Y A *X\n*UIConstraints: *X *Duplex\n",
     "*UIConstraints: *Y A *X\n"},
    {"LinesThatDoNotAdjoin", "*UIConstraints: *Duplex A\nkept\n*UIConstraints: *Duplex B\n",
     "kept\n"},
    {"FirstCharacterOfTheText", "*UIConstraints: *Duplex A *X\nb\n", "b\n"},
    {"NothingButConstraintLines",
     "*UIConstraints: *Duplex A *X\n*UIConstraints: *X *Duplex\n*UIConstraints: *Duplex \n", ""},
    {"LongerKeywordStays", "*UIConstraints: *DuplexUnit False *X\n",
     "*UIConstraints: *DuplexUnit False *X\n"},
    {"LongerKeywordAndTheOptionItself", "*UIConstraints: *DuplexUnit False *Duplex\n", ""},
    {"OtherCaseStays", "*UIConstraints: *duplex A *X\n*uiconstraints: *Duplex A\n",
     "*UIConstraints: *duplex A *X\n*uiconstraints: *Duplex A\n"},
    {"CarriageReturnAfterTheOptionStays", "*UIConstraints: *X A *Duplex\r\n",
     "*UIConstraints: *X A *Duplex\r\n"},
    {"CarriageReturnAfterAChoiceGoes", "a\r\n*UIConstraints: *X A *Duplex None\r\nb\r\n",
     "a\r\nb\r\n"},
    {"TabAfterTheOptionStays", "*UIConstraints: *Duplex\tA\n", "*UIConstraints: *Duplex\tA\n"},
    {"LastLineWithoutLineFeedStays", "a\n*UIConstraints: *Duplex A",
     "a\n*UIConstraints: *Duplex A"},
    {"RunBeforeALastLineWithoutLineFeed",
     "*UIConstraints: *Duplex A\n*UIConstraints: *Duplex B\n*UIConstraints: *Duplex C",
     "*UIConstraints: *Duplex C"},
    {"ConstraintInTheMiddleOfALine", "before *UIConstraints: *Duplex A\nafter\n", "before after\n"},
    {"TwoConstraintsOnALineOfWhichTheSecondNamesIt",
     "a *UIConstraints: *X *UIConstraints: *Duplex A\nb\n", "a b\n"},
    {"OptionBeforeTheConstraintOnItsLineStays", "*Duplex A *UIConstraints: *X\n",
     "*Duplex A *UIConstraints: *X\n"},
    {"CUPSConstraintsStay", "*cupsUIConstraints X: \"*Duplex A *Y\"\n",
     "*cupsUIConstraints X: \"*Duplex A *Y\"\n"},
    {"NonUIConstraintsStay", "*NonUIConstraints: *Duplex A *Y\n",
     "*NonUIConstraints: *Duplex A *Y\n"},
    {"AsteriskBeforeARunFormsAConstraintWithWhatFollows",
     "**UIConstraints: *Duplex A\nUIConstraints: *Duplex B\nb\n", "b\n"},
    {"AsterisksBeforeARunFormOneConstraintAfterAnother",
     "***UIConstraints: *Duplex A\nUIConstraints: *Duplex B\nUIConstraints: *Duplex C\n", ""},
    {"MoreThanOneCharacterBeforeARunIsNotLookedAtAgain",
     "*U*UIConstraints: *Duplex A\nIConstraints: *Duplex B\n", "*UIConstraints: *Duplex B\n"},
    {"LineWithNUL", "*UIConstraints: \0 *Duplex A\n*UIConstraints: *Duplex\0\n"sv,
     "*UIConstraints: *Duplex\0\n"sv},
};

INSTANTIATE_TEST_SUITE_P(Constraints, ConstraintRemovalCase, testing::ValuesIn(kConstraintLines),
                         [](const auto& each) { return std::string(each.param.name); });

constexpr Case kComments[] = {
    {"CommentLine", "a\n*% Duplex <-> MediaType\nb\n", "a\nb\n"},
    {"SeveralCommentLines", "*% Duplex <-> A\n*% Duplex <-> B\nx\n*% Duplex <-> \n", "x\n"},
    {"OtherOptionStays", "*% DuplexUnit <-> A\n*% A <-> Duplex\n",
     "*% DuplexUnit <-> A\n*% A <-> Duplex\n"},
    {"WithoutTheLastSpaceStays", "*% Duplex <->\nb\n", "*% Duplex <->\nb\n"},
    {"OtherCommentsStay", "*% Duplex\n*%% Duplex <-> A\n", "*% Duplex\n*%% Duplex <-> A\n"},
    {"CarriageReturnGoesWithTheLine", "a\r\n*% Duplex <-> A\r\nb\r\n", "a\r\nb\r\n"},
    {"InTheMiddleOfALineJoinsItWithTheNext", "before *% Duplex <-> A\nafter\n", "before after\n"},
    {"JoinedLineFormsAnotherComment", "*% Dup*% Duplex <-> A\nlex <-> B\nb\n", "b\n"},
    {"JoinedLinesFormCommentsOverAndOver", "*% *% Dup*% Duplex <-> A\nlex <-> B\nDuplex <-> C\nb\n",
     "b\n"},
    {"JoinedLineFormsAConstraint", "*UICon*% Duplex <-> A\nstraints: *Duplex B\nb\n", "b\n"},
    {"JoinedLineIsNamedByWhatFollows", "*UIConstraints: *Dup*% Duplex <-> A\nlex B\nb\n", "b\n"},
    {"LastLineWithoutLineFeedStays", "a\n*% Duplex <-> A\n*% Duplex <-> B", "a\n*% Duplex <-> B"},
    {"ConstraintsGoAlsoAfterACommentThatStays", "*UIConstraints: *Duplex A\nb\nx *% Duplex <-> A",
     "b\nx *% Duplex <-> A"},
    {"CommentFormedByARemovedConstraintStays", "*% *UIConstraints: *Duplex A\nDuplex <-> B\n",
     "*% Duplex <-> B\n"},
    {"TwoCommentsOnOneLine", "x*% Duplex <-> *% Duplex <-> A\ny\n", "xy\n"},
    {"JoinedLineFormsACommentWithItsLastSpaceOnly", "*% Duplex <->*% Duplex <-> A\n B\nb\n", "b\n"},
    {"JoinedLineFormsACommentAfterAnAsteriskFormedNoConstraint",
     "**UIConstraints: *Duplex A\nz\n*% Dup*% Duplex <-> A\nlex <-> B\nb\n", "*z\nb\n"},
};

INSTANTIATE_TEST_SUITE_P(Comments, ConstraintRemovalCase, testing::ValuesIn(kComments),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(ConstraintRemoval, GivesTheTextItselfWhenNothingGoes) {
    const PPDText text = makePPDText("*UIConstraints: *DuplexUnit False *X\n");
    EXPECT_EQ(PPDTextByRemovingConstraints(text, "Duplex"), text);
}

/// The text with a line before the one at `index`, as an updater hands it on.
PPDText withLine(std::string_view text, std::size_t index, std::string_view line) {
    OrbPPDLines lines(makePPDText(std::string(text)));
    lines.insert(index, line);
    return lines.text();
}

std::string withoutDuplex(const PPDText& text) {
    return *PPDTextByRemovingConstraints(text, "Duplex");
}

TEST(ConstraintRemoval, TakesLinesThatWereInserted) {
    for (const std::string_view line :
         {"*UIConstraints: *Duplex A"sv, "*UIConstraints: *X A *Duplex"sv, "*% Duplex <-> A"sv}) {
        EXPECT_EQ(withoutDuplex(withLine("a\nb\nc\n", 1, line)), "a\nb\nc\n");
        EXPECT_EQ(withoutDuplex(withLine("a\nb\n", 2, line)), "a\nb\n");
        EXPECT_EQ(withoutDuplex(withLine("a\nb", 1, line)), "a\nb");
    }
    EXPECT_EQ(withoutDuplex(withLine("a\nc\n", 1, "b *UIConstraints: *Duplex A")), "a\nb c\n");
}

TEST(ConstraintRemoval, LeavesAnInsertedLastLineWithoutLineFeed) {
    const PPDText text = withLine("a", 1, "*UIConstraints: *Duplex A");
    EXPECT_EQ(PPDTextByRemovingConstraints(text, "Duplex"), text);
    EXPECT_EQ(*text, "a\n*UIConstraints: *Duplex A");
}

TEST(ConstraintRemoval, TakesALineThatGotItsLineFeedLater) {
    constexpr std::string_view kText = "a\n*UIConstraints: *X A *Duplex";
    EXPECT_EQ(withoutDuplex(withLine(kText, 2, "b")), "a\nb");
    OrbPPDLines lines(makePPDText(std::string(kText)));
    lines.setEndsWithLineFeed(true);
    EXPECT_EQ(withoutDuplex(lines.text()), "a\n");
}

TEST(ConstraintRemoval, LeavesALineThatLostItsLineFeed) {
    OrbPPDLines lines(makePPDText("a\n*UIConstraints: *Duplex A\n*UIConstraints: *Duplex B"));
    lines.erase(2, 1);
    const PPDText text = lines.text();
    EXPECT_EQ(PPDTextByRemovingConstraints(text, "Duplex"), text);
    EXPECT_EQ(*text, "a\n*UIConstraints: *Duplex A");
}

TEST(ConstraintRemoval, TakesALineOfAMegabyte) {
    const std::string filler(1U << 20U, '*');
    const std::string kept = filler + "*UIConstraints: " + filler + "\n";
    const std::string text = kept + "*UIConstraints: " + filler + "*Duplex \nb\n";
    EXPECT_EQ(*PPDTextByRemovingConstraints(makePPDText(text), "Duplex"), kept + "b\n");
}

TEST(ConstraintRemoval, TakesAMegabyteOfCommentsThatFormEachOther) {
    constexpr std::size_t kDepth = 50000;
    std::string text;
    std::string rest;
    for (std::size_t i = 0; i < kDepth; ++i) {
        text += "*% Dup";
        rest += "lex <-> \n";
    }
    text += "*% Duplex <-> \n" + rest + "b\n";
    EXPECT_EQ(*PPDTextByRemovingConstraints(makePPDText(text), "Duplex"), "b\n");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
