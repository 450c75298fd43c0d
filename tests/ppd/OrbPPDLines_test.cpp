#include "ppd/OrbPPDLines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "ppd/OrbPPDProcessor.h"
#include "tests/ppd/ProcessorTesting.h"

namespace TkPPDUpdating::Testing {
namespace {

using Texts = std::vector<std::string>;

OrbPPDLines linesOfText(std::string text) {
    return OrbPPDLines(makePPDText(std::move(text)));
}

TEST(OrbPPDLines, InsertsBeforeTheLineAtAnIndexOrAtTheEnd) {
    auto lines = linesOfText("A\nB\n");
    lines.insert(0, "first");
    lines.insert(2, "middle");
    lines.insert(4, "last");
    EXPECT_EQ(textsOf(lines), (Texts{"first", "A", "middle", "B", "last"}));
}

TEST(OrbPPDLines, InsertsIntoAnEmptyList) {
    auto lines = linesOfText("");
    EXPECT_EQ(lines.size(), 0U);
    lines.insert(0, "A");
    EXPECT_EQ(textsOf(lines), Texts{"A"});
}

TEST(OrbPPDLines, KeepsACopyOfAnInsertedLine) {
    auto lines = linesOfText("");
    {
        std::string line = "gone soon";
        lines.insert(0, line);
        line.assign("overwritten");
    }
    EXPECT_EQ(lines.at(0), "gone soon");
}

TEST(OrbPPDLines, RemovesARunOfLines) {
    auto lines = linesOfText("A\nB\nC\nD\n");
    lines.erase(1, 2);
    EXPECT_EQ(textsOf(lines), (Texts{"A", "D"}));
    lines.erase(0, 0);
    lines.erase(2, 0);
    lines.erase(0, 2);
    EXPECT_EQ(lines.size(), 0U);
}

TEST(OrbPPDLines, AnIndexBeyondTheEndIsAnOutOfRangeErrorAndChangesNothing) {
    auto lines = linesOfText("A\nB\n");
    EXPECT_THROW(lines.at(2), std::out_of_range);
    EXPECT_THROW(lines.at(SIZE_MAX), std::out_of_range);
    EXPECT_THROW(lines.insert(3, "C"), std::out_of_range);
    EXPECT_THROW(lines.erase(1, 2), std::out_of_range);
    EXPECT_THROW(lines.erase(2, 1), std::out_of_range);
    EXPECT_THROW(lines.erase(3, 0), std::out_of_range);
    EXPECT_THROW(lines.erase(1, SIZE_MAX), std::out_of_range);
    EXPECT_EQ(textsOf(lines), (Texts{"A", "B"}));
}

TEST(OrbPPDLines, MakesATextWithALineFeedBetweenEachTwoLines) {
    const auto withoutTheLastLineFeed = [](const char* text) {
        auto lines = linesOfText(text);
        lines.setEndsWithLineFeed(false);
        return *lines.text();
    };
    EXPECT_EQ(withoutTheLastLineFeed("A\nB\n"), "A\nB");
    EXPECT_EQ(withoutTheLastLineFeed("A\n\n"), "A\n");
    EXPECT_EQ(withoutTheLastLineFeed(""), "");
}

TEST(OrbPPDLines, OutlivesTheCallersHoldOnTheText) {
    PPDText text = makePPDText("A long enough line to live on the heap\nB\n");
    const OrbPPDLines lines(text);
    text.reset();
    EXPECT_EQ(lines.at(0), "A long enough line to live on the heap");
}

TEST(OrbPPDLines, FindsTheFirstAttributeAgainAndAgain) {
    const auto lines = linesOfText("*A: 1\n*B x: 2\n*a: 3\n*A: 3\n");
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(lines.indexOfAttribute("A", std::nullopt, std::nullopt), 0U);
        EXPECT_EQ(lines.indexOfAttribute("A", std::nullopt, "3"), 2U);
        EXPECT_EQ(lines.indexOfAttribute("b", "X", std::nullopt), 1U);
        EXPECT_EQ(lines.indexOfAttribute("B", std::nullopt, std::nullopt), std::nullopt);
    }
}

TEST(OrbPPDLines, FindsTheNextEndLine) {
    const auto lines = linesOfText("*End\nA\n*End\n*End\n*end\n");
    EXPECT_EQ(lines.indexOfEndAfter(0), 2U);
    EXPECT_EQ(lines.indexOfEndAfter(1), 2U);
    EXPECT_EQ(lines.indexOfEndAfter(2), 3U);
    EXPECT_EQ(lines.indexOfEndAfter(3), std::nullopt);
    EXPECT_EQ(lines.indexOfEndAfter(4), std::nullopt);
}

TEST(OrbPPDLines, FindsEndLinesBlocksAway) {
    std::string text(3000, '\n');
    auto lines = linesOfText(text + "*End\n" + text + "*End\n" + text);
    EXPECT_EQ(lines.indexOfEndAfter(0), 3000U);
    EXPECT_EQ(lines.indexOfEndAfter(2999), 3000U);
    EXPECT_EQ(lines.indexOfEndAfter(3000), 6001U);
    EXPECT_EQ(lines.indexOfEndAfter(6001), std::nullopt);
    lines.erase(3000, 1);
    EXPECT_EQ(lines.indexOfEndAfter(0), 6000U);
    lines.insert(1500, "*End");
    EXPECT_EQ(lines.indexOfEndAfter(0), 1500U);
    // So many that the block of the line splits.
    for (int i = 0; i < 600; ++i) {
        lines.insert(1500, "");
    }
    EXPECT_EQ(lines.indexOfEndAfter(0), 2100U);
    EXPECT_EQ(lines.indexOfEndAfter(2100), 6601U);
    EXPECT_EQ(lines.indexOfEndAfter(9600), std::nullopt);
    EXPECT_EQ(lines.indexOfEndAfter(SIZE_MAX), std::nullopt);
}

TEST(OrbPPDLines, CanBeEmptiedAndFilledAgain) {
    auto lines = linesOfText(std::string(5000, '\n'));
    lines.erase(0, 5000);
    EXPECT_EQ(lines.size(), 0U);
    EXPECT_EQ(lines.indexOfEndAfter(0), std::nullopt);
    lines.insert(0, "*End");
    lines.insert(0, "A");
    EXPECT_EQ(textsOf(lines), (Texts{"A", "*End"}));
    EXPECT_EQ(lines.indexOfEndAfter(0), 1U);
}

TEST(OrbPPDLines, FindsKeywordsWithAColonThroughEdits) {
    auto lines =
        linesOfText("*a:b: 1\n*a:b.Key x/T: 2\n*A:B.KEY  x: 3\n*a:b.Key: 4\n*a:b.Key:c: 5\n");
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(lines.indexOfAttribute("a:b", std::nullopt, std::nullopt), 0U);
        EXPECT_EQ(lines.indexOfAttribute("a:b.Key", "x", std::nullopt), 1U);
        EXPECT_EQ(lines.indexOfAttribute("a:b.Key", "x", "3"), 2U);
        EXPECT_EQ(lines.indexOfAttribute("a:b.Key", std::nullopt, std::nullopt), 3U);
        EXPECT_EQ(lines.indexOfAttribute("a:b.Key:c", std::nullopt, std::nullopt), 4U);
        EXPECT_EQ(lines.indexOfAttribute("a:b.", std::nullopt, std::nullopt), std::nullopt);
        EXPECT_EQ(lines.indexOfAttribute("a:", std::nullopt, std::nullopt), std::nullopt);
    }
    lines.insert(0, "*a:b.key: 0");
    EXPECT_EQ(lines.indexOfAttribute("a:b.Key", std::nullopt, std::nullopt), 0U);
    lines.erase(0, 3);
    EXPECT_EQ(lines.indexOfAttribute("a:b", std::nullopt, std::nullopt), std::nullopt);
    EXPECT_EQ(lines.indexOfAttribute("a:b.Key", "x", std::nullopt), 0U);
    EXPECT_EQ(lines.indexOfAttribute("a:b.Key", std::nullopt, std::nullopt), 1U);
    lines.erase(0, 2);
    EXPECT_EQ(lines.indexOfAttribute("a:b.Key", "x", std::nullopt), std::nullopt);
    EXPECT_EQ(lines.indexOfAttribute("a:b.Key", std::nullopt, std::nullopt), 0U);
    lines.insert(1, "*a:b.Key x: 6");
    EXPECT_EQ(lines.indexOfAttribute("a:b.Key", "x", std::nullopt), 1U);
}

/// The tests of hostile texts end by the time limit of a test where each step reads all lines.
TEST(OrbPPDLines, TakesTensOfThousandsOfLookUpsOfKeywordsWithAColon) {
    constexpr std::size_t kCount = 50'000;
    std::string text;
    for (std::size_t i = 0; i < kCount; ++i) {
        text += "*a:" + std::to_string(i) + ".Key: 12\n";
    }
    auto lines = linesOfText(std::string(kCount, '\n') + text);
    for (std::size_t i = 0; i < kCount; ++i) {
        const std::string keyword = "a:" + std::to_string(i);
        ASSERT_EQ(lines.indexOfAttribute(keyword + ".Key", std::nullopt, std::nullopt), kCount + i);
        ASSERT_EQ(lines.indexOfAttribute(keyword + ".Kez", std::nullopt, std::nullopt),
                  std::nullopt);
    }
}

TEST(OrbPPDLines, FindsSpecsWithColonsAndSlashesThroughEdits) {
    auto lines = linesOfText(
        "*Key a: 0\n*Key a:b/T: 1\n*KEY   A:B: 2\n*Key a/b:c/d: 3\n*a:b.Key x:y/T: 4\n*Key a:b\n");
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(lines.indexOfAttribute("Key", "a", std::nullopt), 0U);
        EXPECT_EQ(lines.indexOfAttribute("Key", "a:b", std::nullopt), 1U);
        EXPECT_EQ(lines.indexOfAttribute("Key", "a:b", "2"), 2U);
        EXPECT_EQ(lines.indexOfAttribute("Key", "a/b", std::nullopt), 3U);
        EXPECT_EQ(lines.indexOfAttribute("Key", "a/b:c", std::nullopt), 3U);
        EXPECT_EQ(lines.indexOfAttribute("Key", "a/b:c/d", std::nullopt), 3U);
        EXPECT_EQ(lines.indexOfAttribute("a:b.Key", "x", std::nullopt), 4U);
        EXPECT_EQ(lines.indexOfAttribute("a:b.Key", "x:y", std::nullopt), 4U);
        EXPECT_EQ(lines.indexOfAttribute("Key", "a:", std::nullopt), std::nullopt);
        EXPECT_EQ(lines.indexOfAttribute("Key", "a:c", std::nullopt), std::nullopt);
    }
    lines.insert(0, "*Key A:B: 12");
    EXPECT_EQ(lines.indexOfAttribute("Key", "a:b", std::nullopt), 0U);
    lines.erase(0, 3);
    EXPECT_EQ(lines.indexOfAttribute("Key", "a:b", std::nullopt), 0U);
    lines.erase(0, 1);
    EXPECT_EQ(lines.indexOfAttribute("Key", "a:b", std::nullopt), std::nullopt);
    EXPECT_EQ(lines.indexOfAttribute("Key", "a/b", std::nullopt), 0U);
}

TEST(OrbPPDLines, TakesTensOfThousandsOfLookUpsOfSpecsThatBeginAlike) {
    constexpr std::size_t kCount = 50'000;
    for (const std::string language : {"", "a:b."}) {
        std::string text;
        for (std::size_t i = 0; i < kCount; ++i) {
            text += "*" + language + "Key a:b/" + std::to_string(i) + "/T: 12\n";
        }
        const auto lines = linesOfText(text);
        for (std::size_t i = 0; i < kCount; ++i) {
            const std::string spec = "a:b/" + std::to_string(i);
            ASSERT_EQ(lines.indexOfAttribute(language + "Key", spec, std::nullopt), i);
            ASSERT_EQ(lines.indexOfAttribute(language + "Key", spec + "x", std::nullopt),
                      std::nullopt);
        }
    }
}

/// Names and lines of a few characters, so that separators stand everywhere and many lines share
/// their beginnings.
class SeparatorTexts {
  public:
    explicit SeparatorTexts(std::uint32_t seed) : random_(seed) {}

    std::size_t below(std::size_t bound) { return random_() % bound; }
    std::string name() {
        std::string text;
        for (std::size_t pieces = below(5); pieces > 0; --pieces) {
            text += oneOf({"a", "A", "b", "\xC3\xA9", "\xC3\x89", ":", ":", "/", " ", "a:b"});
        }
        return text;
    }
    std::optional<std::string> maybeName() {
        return below(3) == 0 ? std::nullopt : std::optional(asked());
    }
    /// Mostly one that stands in many lines, so that look-ups find something.
    std::string asked() {
        return below(2) == 0 ? name() : oneOf({"a:b", "a", "a/b", "b:a", "a:", "", "a:b:a"});
    }
    std::string line() {
        const std::string spaces(below(3), ' ');
        return oneOf({"*", "*", "*", ""}) + asked() + spaces + asked() + oneOf({":", "/", ""}) +
               oneOf({" ", ""}) + name();
    }

  private:
    std::string oneOf(std::initializer_list<std::string> texts) {
        return texts.begin()[below(texts.size())];
    }

    std::mt19937 random_;
};

/// Reads line by line, without any index.
std::optional<std::size_t> indexByReading(const OrbPPDLines& lines, const std::string& keyword,
                                          const std::optional<std::string>& spec,
                                          const std::optional<std::string>& value) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (OrbPPDProcessor::scanLine_forAttributeWithKeyword_spec_value(lines.at(i), keyword, spec,
                                                                         value)) {
            return i;
        }
    }
    return std::nullopt;
}

TEST(OrbPPDLines, FindsByItsIndexesWhatReadingTheLinesFinds) {
    std::size_t found = 0;
    for (std::uint32_t seed = 0; seed < 25; ++seed) {
        SeparatorTexts texts(seed);
        std::string text;
        for (int i = 0; i < 80; ++i) {
            text += texts.line() + "\n";
        }
        auto lines = linesOfText(text);
        // The first look-ups read, later ones ask one index and then the other, and edits follow.
        for (int step = 0; step < 600; ++step) {
            const std::string keyword = texts.asked();
            const auto spec = texts.maybeName();
            const auto value = texts.below(4) == 0 ? std::optional(texts.name()) : std::nullopt;
            const auto expected = indexByReading(lines, keyword, spec, value);
            found += expected ? 1 : 0;
            ASSERT_EQ(lines.indexOfAttribute(keyword, spec, value), expected)
                << "seed " << seed << ", step " << step << ": \"" << keyword << "\", \""
                << spec.value_or("(null)") << "\", \"" << value.value_or("(null)") << "\"";
            if (texts.below(3) == 0) {
                lines.insert(texts.below(lines.size() + 1), texts.line());
            } else if (texts.below(3) == 0 && lines.size() > 20) {
                const std::size_t index = texts.below(lines.size());
                lines.erase(index, std::min(lines.size() - index, texts.below(4)));
            }
        }
    }
    EXPECT_GT(found, 1000U) << "too few look-ups find anything to be worth the comparison";
}

TEST(OrbPPDLines, TakesTensOfThousandsOfValuesThatNeverEnd) {
    constexpr std::size_t kCount = 100'000;
    const auto lines = linesOfText("*End\n" + std::string(kCount, '\n'));
    for (std::size_t i = 0; i < kCount; ++i) {
        ASSERT_EQ(lines.indexOfEndAfter(i), std::nullopt);
    }
}

TEST(OrbPPDLines, RemovesAValueOfMillionsOfLines) {
    constexpr std::size_t kCount = 3'000'000;
    auto lines = linesOfText("*First: 12\n" + std::string(kCount, '\n') + "*Last: 12\n");
    lines.erase(1, kCount);
    EXPECT_EQ(textsOf(lines), (Texts{"*First: 12", "*Last: 12"}));
}

TEST(OrbPPDLines, StaysInOrderThroughThousandsOfInsertionsAtOnePlace) {
    auto lines = linesOfText("*First: 0\n*Last: 0\n");
    Texts expected = {"*First: 0"};
    for (int i = 0; i < 6000; ++i) {
        const std::string line = "*Key" + std::to_string(i % 7) + ": " + std::to_string(i);
        lines.insert(static_cast<std::size_t>(i) + 1, line);
        expected.push_back(line);
        if (i == 3000) {
            EXPECT_EQ(lines.indexOfAttribute("Key3", std::nullopt, std::nullopt), 4U);
        }
    }
    expected.emplace_back("*Last: 0");
    EXPECT_EQ(textsOf(lines), expected);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(lines.indexOfAttribute("Key6", std::nullopt, std::nullopt), 7U);
        EXPECT_EQ(lines.indexOfAttribute("Last", std::nullopt, std::nullopt), 6001U);
        // The values are prefixes: "5999" is the value of Key0, because 5999 = 7 * 857.
        EXPECT_EQ(lines.indexOfAttribute("Key0", std::nullopt, "5999"), 6000U);
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
