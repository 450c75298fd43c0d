#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ppd/OrbPPDProcessor.h"
#include "tests/ppd/ProcessorTesting.h"

namespace TkPPDUpdating::Testing {
namespace {

using Texts = std::vector<std::string>;

// Splitting

TEST(OrbPPDProcessorLines, TheTextIsSplitAtLineFeedsAndOneEmptyLastPartIsDropped) {
    struct {
        const char* content;
        Texts lines;
    } const cases[] = {
        {"A\nB\n", {"A", "B"}},
        {"A\nB", {"A", "B"}},
        {"A\n\n", {"A", ""}},
        {"A\n\n\n", {"A", "", ""}},
        {"\n\nA", {"", "", "A"}},
        {"A", {"A"}},
        {"\n", {""}},
        {"", {}},
    };
    for (const auto& [content, lines] : cases) {
        EXPECT_EQ(linesOf(*processorOver(content)), lines) << '[' << content << ']';
    }
}

TEST(OrbPPDProcessorLines, CarriageReturnsAndOtherBreaksStayInTheirLines) {
    EXPECT_EQ(linesOf(*processorOver("A\r\nB\rC\r\n\v\f\xE2\x80\xA8"
                                     "D\n")),
              (Texts{"A\r", "B\rC\r",
                     "\v\f\xE2\x80\xA8"
                     "D"}));
}

TEST(OrbPPDProcessorLines, TheLinesAreSplitOnceWhateverTextIsStoredLater) {
    const auto processor = processorOver("A\nB\n");
    const OrbPPDLines* lines = processor->lines();
    processor->setContent(makePPDText("C\n"));
    EXPECT_EQ(processor->lines(), lines);
    EXPECT_EQ(linesOf(*processor), (Texts{"A", "B"}));
    EXPECT_EQ(*processor->content(), "C\n");
    processor->clearContent();
    EXPECT_EQ(*processor->content(), "A\nB\n");
}

TEST(OrbPPDProcessorLines, ATextStoredBeforeTheFirstSplitIsTheOneThatIsSplit) {
    const auto processor = processorOver("A\nB\n");
    processor->setContent(makePPDText("C\n"));
    EXPECT_EQ(linesOf(*processor), Texts{"C"});
}

TEST(OrbPPDProcessorLines, ATextClearedBeforeTheFirstSplitIsLost) {
    const auto processor = processorOver("A\n");
    processor->clearContent();
    EXPECT_EQ(processor->lines(), nullptr);
    EXPECT_EQ(processor->content(), nullptr);
}

TEST(OrbPPDProcessorLines, InitReplacesTheTextAndGivesTheProcessorItself) {
    OrbPPDProcessor processor;
    EXPECT_EQ(processor.content(), nullptr);
    EXPECT_EQ(&processor.initWithPDDContent(makePPDText("A\n")), &processor);
    EXPECT_EQ(linesOf(processor), Texts{"A"});
    EXPECT_EQ(processor.insertLocation(), 0U);
}

// Joining

TEST(OrbPPDProcessorLines, JoiningEndsEveryLineWithALineFeed) {
    struct {
        const char* content;
        const char* joined;
    } const cases[] = {
        {"A\nB\n", "A\nB\n"}, {"A\nB", "A\nB\n"}, {"A\n\n", "A\n\n"},
        {"A\r\n", "A\r\n"},   {"\n", "\n"},       {"", ""},
    };
    for (const auto& [content, joined] : cases) {
        const auto processor = processorOver(content);
        processor->lines();
        processor->clearContent();
        EXPECT_EQ(*processor->content(), joined) << '[' << content << ']';
    }
}

TEST(OrbPPDProcessorLines, TheTextThatWasGivenComesBackItselfAsLongAsNothingIsEdited) {
    const PPDText text = makePPDText("A\nB");
    const auto processor = OrbPPDProcessor::processorWithPPDContent(text);
    processor->lines();
    processor->setInsertLocation(1);
    processor->localizations();
    EXPECT_EQ(processor->content(), text);
}

TEST(OrbPPDProcessorLines, ContentTakenTwiceIsTheSameText) {
    const auto processor = processorOver("A\nB\n");
    insertAtEnd(*processor, "Foo", "1");
    const PPDText joined = processor->content();
    EXPECT_EQ(*joined, "A\nB\n*Foo: 1\n");
    EXPECT_EQ(processor->content(), joined);
    EXPECT_EQ(linesOf(*processor), (Texts{"A", "B", "*Foo: 1", ""}));
}

TEST(OrbPPDProcessorLines, EachJoinAfterAnEditAddsOneMoreLineFeedAtTheEnd) {
    const auto processor = processorOver("A\n");
    insertAt(*processor, 0, "One", "1");
    EXPECT_EQ(*processor->content(), "*One: 1\nA\n");
    insertAt(*processor, 0, "Two", "2");
    EXPECT_EQ(*processor->content(), "*Two: 2\n*One: 1\nA\n\n");
    insertAt(*processor, 0, "Three", "3");
    EXPECT_EQ(*processor->content(), "*Three: 3\n*Two: 2\n*One: 1\nA\n\n\n");
}

TEST(OrbPPDProcessorLines, TheEmptyLineOfAJoinIsALineLikeAnyOther) {
    const auto processor = processorOver("A\n");
    insertAtEnd(*processor, "One", "1");
    EXPECT_EQ(*processor->content(), "A\n*One: 1\n");
    insertAtEnd(*processor, "Two", "2");
    EXPECT_EQ(*processor->content(), "A\n*One: 1\n\n*Two: 2\n");
}

TEST(OrbPPDProcessorLines, LinesThatACallerEditsAreJoinedOnceTheContentIsCleared) {
    const auto processor = processorOver("A\nB\nC\n");
    processor->lines()->erase(1, 1);
    processor->lines()->insert(2, "D");
    EXPECT_EQ(*processor->content(), "A\nB\nC\n");
    processor->clearContent();
    EXPECT_EQ(*processor->content(), "A\nC\nD\n");
}

// No text

TEST(OrbPPDProcessorLines, WithoutATextThereAreNoLinesAndNothingIsFound) {
    const auto processor = OrbPPDProcessor::processorWithPPDContent(nullptr);
    EXPECT_EQ(processor->content(), nullptr);
    EXPECT_EQ(processor->lines(), nullptr);
    EXPECT_EQ(processor->rangeOfAttributeWithKeyword_spec_value("Key", std::nullopt, std::nullopt),
              kNotFound);
    EXPECT_EQ(processor->valueForAttributeWithKeyword_spec("Key", std::nullopt), std::nullopt);
    EXPECT_TRUE(processor->localizations().empty());
    EXPECT_EQ(processor->deleteAttributeWithKeyword_spec_value("Key", std::nullopt, std::nullopt),
              kTkPPDProcessorPPDEndLocation);
    processor->setInsertLocation(5);
    EXPECT_EQ(processor->insertLocation(), 0U);
    EXPECT_FALSE(processor->insertAttributeWithKeyword_spec_text_value_wrap(
        "Key", std::nullopt, std::nullopt, "1", true));
    EXPECT_EQ(processor->content(), nullptr);
}

TEST(OrbPPDProcessorLines, ATextStoredLaterGivesAProcessorWithoutOneItsLines) {
    const auto processor = OrbPPDProcessor::processorWithPPDContent(nullptr);
    EXPECT_EQ(processor->lines(), nullptr);
    processor->setContent(makePPDText("A\n"));
    EXPECT_EQ(linesOf(*processor), Texts{"A"});
}

// Insert location

TEST(OrbPPDProcessorLines, TheInsertLocationIsLimitedToTheNumberOfLines) {
    const auto processor = processorOver("0\n1\n2\n3\n4\n5\n6\n7\n8\n9\n");
    EXPECT_EQ(processor->insertLocation(), 0U);
    struct {
        std::size_t set;
        std::size_t stored;
    } const cases[] = {{0, 0},        {9, 9},     {10, 10},
                       {11, 10},      {1000, 10}, {kTkPPDProcessorPPDEndLocation, 10},
                       {SIZE_MAX, 10}};
    for (const auto& [set, stored] : cases) {
        processor->setInsertLocation(set);
        EXPECT_EQ(processor->insertLocation(), stored) << set;
    }
}

TEST(OrbPPDProcessorLines, TheInsertLocationIsNotLimitedAgainWhenLinesAreRemoved) {
    const auto processor = processorOver("A\nB\nC\n");
    processor->setInsertLocation(3);
    processor->lines()->erase(0, 2);
    EXPECT_EQ(processor->insertLocation(), 3U);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
