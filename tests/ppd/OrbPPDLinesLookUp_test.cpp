#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ppd/OrbPPDLines.h"
#include "tests/ppd/ProcessorTesting.h"

namespace TkPPDUpdating::Testing {
namespace {

using IDs = std::vector<OrbPPDLines::LineID>;
using Inserted = std::vector<std::pair<std::size_t, std::string>>;

OrbPPDLines linesOfText(std::string text) {
    return OrbPPDLines(makePPDText(std::move(text)));
}

Inserted insertedIn(OrbPPDLines& lines) {
    Inserted inserted;
    lines.visitInserted(
        [&](std::size_t index, std::string_view line) { inserted.emplace_back(index, line); });
    return inserted;
}

TEST(OrbPPDLines, FindsTheFirstLineThatBeginsSoFromALineOn) {
    const auto lines = linesOfText("*Key A: 1\n*key B: 2\n*Key B: 3\n*Key B: 34\n");
    EXPECT_EQ(lines.indexOfLineBeginning("*Key B: 3", 0), 2U);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key B: 3", 2), 2U);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key B: 3", 3), 3U);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key B: 3", 4), std::nullopt);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key B: 345", 0), std::nullopt);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key B: 3", SIZE_MAX), std::nullopt);
}

TEST(OrbPPDLines, FindsABeginningThatGoesOnInTheNextLines) {
    const auto lines =
        linesOfText("*Key A: 1\nB\n*Key A: 12\nBC\n*Key A: 1\nBC\nD\n*Key A: 1\n\nE\n*Key A: 1\n");
    EXPECT_EQ(lines.indexOfLineBeginning("*Key A: 1\nB", 0), 0U);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key A: 1\nBC", 0), 4U);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key A: 1\nB", 1), 4U);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key A: 1\nB\nD", 0), std::nullopt);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key A: 1\nBC\n", 0), 4U);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key A: 1\nBC\nD\n*Key", 0), 4U);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key A: 1\n\nE\n*Key A: 1", 0), 7U);
    // There is no next line.
    EXPECT_EQ(lines.indexOfLineBeginning("*Key A: 1\n\nE\n*Key A: 1\n", 0), std::nullopt);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key A: 1\n", 8), std::nullopt);
}

TEST(OrbPPDLines, FindsABeginningAmongInsertedLines) {
    auto lines = linesOfText("*Foo: 0\n");
    lines.insert(1, "*Key A: 1");
    lines.insert(2, "*Key A: 2");
    lines.insert(3, "B");
    EXPECT_EQ(lines.indexOfLineBeginning("*Key A: 2", 0), 2U);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key A: 2\nB", 0), 2U);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key A: 1\n*Key A: 2\nB", 1), 1U);
    EXPECT_EQ(lines.indexOfLineBeginning("*Key A: 1\nB", 0), std::nullopt);
}

TEST(OrbPPDLines, FindsAnEndLineInsertedBeforeAnother) {
    auto lines = linesOfText("A\n*End\nB\n*End\n");
    lines.insert(1, "*End");
    EXPECT_EQ(lines.indexOfEndAfter(0), 1U);
    EXPECT_EQ(lines.indexOfEndAfter(1), 2U);
    EXPECT_EQ(lines.indexOfEndAfter(2), 4U);
}

TEST(OrbPPDLines, TellsTheTranslationsOfAnAttributeAndTheirLanguages) {
    auto lines = linesOfText(
        "*Key A: 1\n*en.Key A: 1\n*EN.key a/T: 2\n*en.Key B: 3\n*a.b.Key A: 4\n*.Key A: 5\n"
        "*en.Key: 6\n*en.KeyA: 7\nen.Key A: 8\n");
    ASSERT_EQ(lines.translations("Key", "A"), (IDs{1, 2, 4, 5}));
    EXPECT_EQ(OrbPPDLines::languageOfTranslation(lines.at(1), "Key"), "en");
    EXPECT_EQ(OrbPPDLines::languageOfTranslation(lines.at(2), "Key"), "EN");
    EXPECT_EQ(OrbPPDLines::languageOfTranslation(lines.at(4), "Key"), "a.b");
    EXPECT_EQ(OrbPPDLines::languageOfTranslation(lines.at(5), "Key"), "");
    EXPECT_EQ(lines.translations("Key", std::nullopt), IDs{6});
    EXPECT_EQ(lines.translations("en.Key", "A"), IDs());
}

TEST(OrbPPDLines, TellsTheTranslationsOfKeywordsWithFullStopsAndOfNone) {
    auto lines = linesOfText(
        "*K.L: 0\n*en.K.L: 1\n*fr.en.K.L: 2\n*K: 3\n*en.: 4\n*en..: 5\n*fr.K..L: 6\n*: 7\n");
    EXPECT_EQ(lines.translations("K.L", std::nullopt), (IDs{1, 2}));
    EXPECT_EQ(OrbPPDLines::languageOfTranslation(lines.at(2), "K.L"), "fr.en");
    EXPECT_EQ(lines.translations("L", std::nullopt), (IDs{0, 1, 2, 6}));
    EXPECT_EQ(lines.translations("", std::nullopt), (IDs{4, 5}));
    EXPECT_EQ(lines.translations(".", std::nullopt), IDs{5});
    EXPECT_EQ(lines.translations("K..L", std::nullopt), IDs{6});
    EXPECT_EQ(lines.translations("a.b.c.K", std::nullopt), IDs());
}

TEST(OrbPPDLines, TellsTranslationsOfNamesWithAColonAfterAnyNumberOfLookUps) {
    auto lines =
        linesOfText("*Key a:b: 1\n*en.Key a:b/T: 2\n*K.L:x: 3\n*en.K.L:x: 4\n*x:y.Key a:b: 5\n");
    for (int i = 0; i < 2000; ++i) {
        ASSERT_EQ(lines.indexOfAttribute("Key", "a:c", std::nullopt), std::nullopt);
        ASSERT_EQ(lines.translations("Key", "a:b"), IDs{1}) << i;
        ASSERT_EQ(lines.translations("K.L:x", std::nullopt), IDs{3}) << i;
        ASSERT_EQ(lines.translations("L:x", std::nullopt), (IDs{2, 3})) << i;
    }
}

TEST(OrbPPDLines, TellsTranslationsThatWereInserted) {
    auto lines = linesOfText("*Key A: 1\n*fr.Key A: 1\n");
    lines.insert(1, "*en.Key A: 2");
    lines.erase(2, 1);
    const auto translations = lines.translations("Key", "A");
    ASSERT_TRUE(translations);
    ASSERT_EQ(translations->size(), 1U);
    EXPECT_EQ(lines.indexOf(translations->front()), 1U);
    EXPECT_EQ(lines.base().line(translations->front()), "*en.Key A: 2");
    EXPECT_EQ(textsOf(lines), (std::vector<std::string>{"*Key A: 1", "*en.Key A: 2"}));
}

TEST(OrbPPDLines, TellsTranslationsAmongOtherInsertedLines) {
    auto lines = linesOfText("*en.Key: 1\n");
    lines.insert(0, "*fr.Foo: 2");
    lines.insert(0, "*Key: 3");
    EXPECT_EQ(lines.translations("Key", std::nullopt), IDs{0});
    EXPECT_EQ(lines.base().size(), 1U) << "there was no need to read the text anew";
}

TEST(OrbPPDLines, CannotTellTranslationsInsertedBesideALineWithALineFeed) {
    auto lines = linesOfText("*en.Key: 1\n");
    lines.insert(1, "A\n*fr.Foo: 2");
    lines.insert(1, "*fr.Key: 3");
    EXPECT_EQ(lines.translations("Key", std::nullopt), std::nullopt);
    EXPECT_EQ(lines.translations("Key", "A"), IDs());
    EXPECT_EQ(lines.translations("Foo", std::nullopt), IDs());
    EXPECT_EQ(textsOf(lines),
              (std::vector<std::string>{"*en.Key: 1", "*fr.Key: 3", "A\n*fr.Foo: 2"}));
}

TEST(OrbPPDLines, InsertedLinesWithoutAsteriskOrFullStopAreNoTranslations) {
    auto lines = linesOfText("*en.Key: 1\n");
    lines.insert(1, "A\nB");
    lines.insert(1, "x.Key: 2");
    lines.insert(1, "*Key: 3");
    lines.insert(1, "*fr.Foo: 4");
    EXPECT_EQ(lines.translations("Key", std::nullopt), IDs{0});
    EXPECT_EQ(lines.translations("*Key", std::nullopt), IDs());
}

TEST(OrbPPDLines, RemovesLinesOfTheIndexAmongInsertedOnes) {
    auto lines = linesOfText("A\nB\nC\nD\nE\n");
    lines.insert(4, "before E");
    lines.insert(2, "before C");
    lines.insert(0, "before A");
    lines.erase(IDs{});
    EXPECT_EQ(lines.size(), 8U);
    const IDs some = {0, 2, 3, 1};
    lines.erase(std::span(some).first(3));
    EXPECT_EQ(textsOf(lines),
              (std::vector<std::string>{"before A", "B", "before C", "before E", "E"}));
    EXPECT_TRUE(lines.isGone(2));
    EXPECT_FALSE(lines.isGone(1));
    EXPECT_FALSE(lines.isGone(4));
    EXPECT_EQ(lines.indexOf(1), 1U);
    EXPECT_EQ(lines.indexOf(4), 4U);
    EXPECT_EQ(insertedIn(lines), (Inserted{{3, "before E"}, {2, "before C"}, {0, "before A"}}));
    // Not what follows them in memory.
    const IDs more = {4, 1};
    lines.erase(std::span(more).first(1));
    EXPECT_EQ(textsOf(lines), (std::vector<std::string>{"before A", "B", "before C", "before E"}));
}

TEST(OrbPPDLines, VisitsInsertedLinesSoThatTheyMayBeErased) {
    auto lines = linesOfText("A\nB\n");
    lines.insert(0, "1");
    lines.insert(1, "2");
    lines.insert(3, "3");
    EXPECT_EQ(insertedIn(lines), (Inserted{{3, "3"}, {1, "2"}, {0, "1"}}));
    lines.visitInserted([&](std::size_t index, std::string_view line) {
        if (line != "2") {
            lines.erase(index, 1);
        }
    });
    EXPECT_EQ(textsOf(lines), (std::vector<std::string>{"2", "A", "B"}));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
