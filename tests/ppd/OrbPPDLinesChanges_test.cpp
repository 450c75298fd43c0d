#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ppd/OrbPPDLines.h"
#include "tests/ppd/ProcessorTesting.h"

/// When lines stand on the index of the text that they were made of, and when the text is read
/// anew; what is shared, and with whom.
namespace TkPPDUpdating::Testing {
namespace {

using Texts = std::vector<std::string>;

OrbPPDLines linesOfText(std::string text) {
    return OrbPPDLines(makePPDText(std::move(text)));
}

std::string repeated(std::size_t count, const std::string& text) {
    std::string whole;
    for (std::size_t i = 0; i < count; ++i) {
        whole += text;
    }
    return whole;
}

void append(OrbPPDLines& lines, std::size_t count, std::string_view line = "*New: 1") {
    for (std::size_t i = 0; i < count; ++i) {
        lines.insert(lines.size(), line);
    }
}

/// A line before every one from `first` on up to `end`.
void insertBeforeEach(OrbPPDLines& lines, std::size_t first, std::size_t end) {
    for (std::size_t i = 0; i < end - first; ++i) {
        lines.insert(first + 2 * i, "*New: 1");
    }
}

std::size_t insertedCount(OrbPPDLines& lines) {
    std::size_t count = 0;
    lines.visitInserted([&](std::size_t /*index*/, std::string_view /*line*/) { ++count; });
    return count;
}

template <typename Operation>
std::string messageOf(const Operation& operation) {
    try {
        operation();
    } catch (const std::out_of_range& error) {
        return error.what();
    }
    return "(no error)";
}

TEST(OrbPPDLines, AnIndexBeyondTheEndIsToldWithTheNumberOfLines) {
    auto lines = linesOfText("A\nB\n");
    EXPECT_EQ(messageOf([&] { lines.insert(3, "C"); }), "line index 3 in a PPD of 2 lines");
    EXPECT_EQ(messageOf([&] { lines.erase(1, 2); }), "line index 3 in a PPD of 2 lines");
}

// ---- the next text

TEST(OrbPPDLines, TheNextTextTakesTheChangesAlong) {
    auto lines = linesOfText(repeated(1000, "*Key: 1\n"));
    lines.erase(0, 10);
    append(lines, 500);
    OrbPPDLines next(lines.text());
    EXPECT_EQ(&next.base(), &lines.base());
    EXPECT_TRUE(next.isGone(3));
    EXPECT_EQ(insertedCount(next), 500U);
    EXPECT_EQ(textsOf(next), textsOf(lines));
}

TEST(OrbPPDLines, ATextWithAsManyNewLinesAsOldOnesIsATextOfItsOwn) {
    for (const auto& [old, added] : {std::pair<std::size_t, std::size_t>{1000, 1000}, {0, 100}}) {
        auto lines = linesOfText(repeated(old, "*Key: 1\n"));
        append(lines, added);
        OrbPPDLines next(lines.text());
        EXPECT_EQ(next.base().size(), old + added);
        EXPECT_EQ(insertedCount(next), 0U);
        EXPECT_EQ(textsOf(next), textsOf(lines));
    }
}

TEST(OrbPPDLines, ALineFeedInALineMakesLinesOfTheirOwnInTheNextTextOnly) {
    auto lines = linesOfText("A\nB\n");
    lines.insert(1, "1\n2");
    append(lines, 2000);
    lines.erase(3, 2000);
    EXPECT_EQ(textsOf(lines), (Texts{"A", "1\n2", "B"}));
    EXPECT_EQ(textsOf(OrbPPDLines(lines.text())), (Texts{"A", "1", "2", "B"}));
}

TEST(OrbPPDLines, TellsWhetherItsTextEndsWithALineFeed) {
    EXPECT_TRUE(linesOfText("A\n").endsWithLineFeed());
    EXPECT_FALSE(linesOfText("A").endsWithLineFeed());
    EXPECT_FALSE(linesOfText("").endsWithLineFeed());
    EXPECT_EQ(*linesOfText("A\n").text(), "A\n");
    EXPECT_EQ(*linesOfText("A").text(), "A");
    auto lines = linesOfText("A\nB");
    lines.insert(2, "C");
    EXPECT_EQ(*lines.text(), "A\nB\nC");
    lines.setEndsWithLineFeed(true);
    EXPECT_EQ(*lines.text(), "A\nB\nC\n");
}

TEST(OrbPPDLines, AnEmptyLastLineWithoutALineFeedIsTheLineFeedBefore) {
    auto lines = linesOfText("A\n\n");
    lines.setEndsWithLineFeed(false);
    EXPECT_EQ(textsOf(lines), (Texts{"A", ""}));
    const OrbPPDLines next(lines.text());
    EXPECT_EQ(textsOf(next), Texts{"A"});
    EXPECT_TRUE(next.endsWithLineFeed());
}

TEST(OrbPPDLines, ATextOfNoLinesEndsWithoutALineFeed) {
    auto none = linesOfText("A\n");
    none.erase(0, 1);
    auto oneEmpty = linesOfText("\n");
    oneEmpty.setEndsWithLineFeed(false);
    for (const OrbPPDLines* lines : {&none, &oneEmpty}) {
        EXPECT_EQ(*lines->text(), "");
        OrbPPDLines next(lines->text());
        EXPECT_EQ(next.size(), 0U);
        EXPECT_FALSE(next.endsWithLineFeed());
        next.insert(0, "B");
        EXPECT_EQ(*next.text(), "B");
    }
}

TEST(OrbPPDLines, KeepsEmptyLinesOfATextThatWasEmpty) {
    auto lines = linesOfText("");
    append(lines, 5, "");
    lines.setEndsWithLineFeed(true);
    EXPECT_EQ(*lines.text(), "\n\n\n\n\n");
}

// ---- sharing

TEST(OrbPPDLines, AnEditOfACopyShowsInNoOther) {
    auto lines = linesOfText("A\nB\n");
    lines.insert(1, "1");
    OrbPPDLines second(lines);
    OrbPPDLines third(lines);
    second.insert(1, "2");
    third.insert(2, "3");
    third.insert(0, "4");
    lines.insert(3, "5");
    lines.erase(1, 1);
    EXPECT_EQ(textsOf(lines), (Texts{"A", "B", "5"}));
    EXPECT_EQ(textsOf(second), (Texts{"A", "2", "1", "B"}));
    EXPECT_EQ(textsOf(third), (Texts{"4", "A", "1", "3", "B"}));
}

TEST(OrbPPDLines, AnEditOfOneOfTwoCopiesShowsInOneOnly) {
    auto lines = linesOfText("A\nB\n");
    lines.insert(1, "1");
    auto copy = std::optional<OrbPPDLines>(lines);
    // First of what only the copy has changed, then where both still share the lines.
    copy->insert(0, "2");
    copy->insert(3, "3");
    copy->erase(2, 1);
    lines.insert(2, "4");
    EXPECT_EQ(textsOf(lines), (Texts{"A", "1", "4", "B"}));
    EXPECT_EQ(textsOf(*copy), (Texts{"2", "A", "3", "B"}));
    copy.reset();
    EXPECT_EQ(textsOf(lines), (Texts{"A", "1", "4", "B"}));
}

TEST(OrbPPDLines, ATextStaysWhatItWasWhenItWasMade) {
    auto lines = linesOfText("A\nB\n");
    lines.insert(1, "1");
    const PPDText text = lines.text();
    lines.insert(1, "2");
    lines.erase(3, 1);
    OrbPPDLines next(text);
    next.insert(0, "3");
    next.erase(1, 2);
    EXPECT_EQ(*text, "A\n1\nB\n");
    EXPECT_EQ(*lines.text(), "A\n2\n1\n");
    EXPECT_EQ(*next.text(), "3\nB\n");
}

// ---- what following the changes costs

/// What reads lines because of the changes, with so few of them that it is nothing against reading
/// the whole text.
const std::vector<std::function<void(OrbPPDLines&)>> kCheapSteps = {
    [](OrbPPDLines& lines) { append(lines, 3); },
    [](OrbPPDLines& lines) {  // of inserted lines
        append(lines, 3);
        lines.erase(100, 1);
    },
    [](OrbPPDLines& lines) {  // before inserted lines
        append(lines, 1);
        lines.erase(50, 1);
    },
    [](OrbPPDLines& lines) {  // over a line that is gone
        lines.erase(50, 1);
        lines.indexOfAttribute("Key", std::nullopt, "2");
    },
    [](OrbPPDLines& lines) {  // over an inserted line
        append(lines, 1);
        lines.indexOfAttribute("Key", std::nullopt, "2");
    },
    [](OrbPPDLines& lines) {
        append(lines, 1, "*en.Foo: 1");
        lines.translations("Key", std::nullopt);
    },
    [](OrbPPDLines& lines) {
        append(lines, 1, "*End");
        lines = OrbPPDLines(makePPDText(*lines.text()));
        lines.erase(100, 1);
        lines.indexOfEndAfter(0);
    },
    [](OrbPPDLines& lines) {
        append(lines, 1);
        lines.indexOfEndAfter(0);
    },
};

TEST(OrbPPDLines, FollowsFewChangesWithoutReadingTheTextAnew) {
    for (std::size_t step = 0; step < kCheapSteps.size(); ++step) {
        auto lines = linesOfText(repeated(100, "*Key: 1\n"));
        kCheapSteps[step](lines);
        const PPDTextIndex* const base = &lines.base();
        append(lines, 1);
        EXPECT_EQ(&lines.base(), base) << "step " << step;
    }
}

constexpr std::size_t kManyLines = 3000;

/// Far more than reading these lines anew.
const std::vector<std::function<void(OrbPPDLines&)>> kDearSteps = {
    [](OrbPPDLines& lines) {  // removes lines before a thousand places with inserted ones
        insertBeforeEach(lines, 2000, kManyLines);
        for (int i = 0; i < 1000; ++i) {
            lines.erase(0, 1);
        }
    },
    [](OrbPPDLines& lines) {  // looks at lines that are gone
        lines.erase(0, 2000);
        for (int i = 0; i < 100; ++i) {
            lines.indexOfAttribute("Key", std::nullopt, std::nullopt);
        }
    },
    [](OrbPPDLines& lines) {  // looks at inserted lines
        append(lines, 500);
        for (int i = 0; i < 100; ++i) {
            lines.indexOfAttribute("Foo", std::nullopt, std::nullopt);
        }
    },
    [](OrbPPDLines& lines) {
        append(lines, 500, "*en.Foo: 1");
        for (int i = 0; i < 100; ++i) {
            lines.translations("Bar", std::nullopt);
        }
    },
    [](OrbPPDLines& lines) {
        append(lines, 500);
        for (int i = 0; i < 100; ++i) {
            lines.indexOfEndAfter(0);
        }
    },
};

TEST(OrbPPDLines, ReadsTheTextAnewWhenFollowingTheChangesHasCostMore) {
    for (std::size_t step = 0; step < kDearSteps.size(); ++step) {
        auto lines = linesOfText(repeated(kManyLines, "*Key: 1\n"));
        kDearSteps[step](lines);
        const Texts expected = textsOf(lines);
        lines.insert(0, "*First: 1");
        EXPECT_EQ(insertedCount(lines), 1U) << "step " << step;
        EXPECT_EQ(lines.base().size(), expected.size()) << "step " << step;
        lines.erase(0, 1);
        EXPECT_EQ(textsOf(lines), expected) << "step " << step;
    }
}

TEST(OrbPPDLines, ReadsTheTextAnewWhenEndLinesThatAreGoneHaveCostMore) {
    auto lines = linesOfText("*Key: 1\n*Key: 2\n" + repeated(kManyLines, "*End\n"));
    lines.erase(2, kManyLines - 1);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(lines.indexOfEndAfter(0), 2U);
    }
    lines.insert(0, "*First: 1");
    EXPECT_EQ(lines.base().size(), 3U);
}

TEST(OrbPPDLines, ReadsTheTextAnewWhenInsertedLinesMoveAgainAndAgain) {
    auto lines = linesOfText("");
    for (int i = 0; i < 3000; ++i) {
        lines.insert(0, "*Key: " + std::to_string(i));
    }
    EXPECT_LT(insertedCount(lines), 1000U);
    EXPECT_EQ(lines.at(0), "*Key: 2999");
    EXPECT_EQ(lines.at(2999), "*Key: 0");
}

TEST(OrbPPDLines, ReadsAShortTextAnewToo) {
    auto lines = linesOfText(repeated(10, "*Key: 1\n"));
    append(lines, 50);
    for (int i = 0; i < 500; ++i) {
        lines.insert(10, "*Key: 2");
        lines.erase(10, 1);
    }
    EXPECT_EQ(lines.base().size(), 60U);
    EXPECT_EQ(lines.size(), 60U);
}

TEST(OrbPPDLines, ReadsTheTextAnewWhenTheFirstInsertedLinesGoOneByOne) {
    auto lines = linesOfText("");
    append(lines, 5000);
    for (int i = 0; i < 4000; ++i) {
        lines.erase(0, 1);
    }
    lines.insert(0, "*First: 1");
    EXPECT_EQ(lines.base().size(), 1000U);
}

TEST(OrbPPDLines, ATextReadAnewEndsAsItDid) {
    for (const std::string end : {"", "\n"}) {
        auto lines = linesOfText("*Key: 1" + end);
        lines.insert(0, "*en.Key: 2");
        ASSERT_TRUE(lines.translations("Key", std::nullopt));
        ASSERT_EQ(lines.base().size(), 2U) << "not read anew";
        EXPECT_EQ(*lines.text(), "*en.Key: 2\n*Key: 1" + end);
    }
}

TEST(OrbPPDLines, IsNotReadAnewForLinesInsertedInLineOrder) {
    auto lines = linesOfText(repeated(kManyLines, "*Key: 1\n"));
    insertBeforeEach(lines, 0, 1000);
    for (int i = 0; i < 900; ++i) {
        lines.erase(lines.size() - 1, 1);
    }
    append(lines, 1);
    EXPECT_EQ(lines.base().size(), kManyLines);
}

TEST(OrbPPDLines, IsNotReadAnewForTheLastLinesGoingAgain) {
    auto lines = linesOfText("");
    append(lines, 5000);
    for (int i = 0; i < 1000; ++i) {
        lines.erase(lines.size() - 1, 1);
    }
    append(lines, 1);
    EXPECT_EQ(lines.base().size(), 0U);
}

// ---- hostile texts, which end by the time limit of a test where each step follows all changes

TEST(OrbPPDLines, TakesTensOfThousandsOfLinesOneBehindTheOther) {
    constexpr std::size_t kCount = 100'000;
    auto lines = linesOfText("*First: 1\n*Last: 1\n");
    for (std::size_t i = 0; i < kCount; ++i) {
        lines.insert(i + 1, "*Key: 1");
    }
    EXPECT_EQ(lines.base().size(), 2U);
    EXPECT_EQ(lines.at(kCount), "*Key: 1");
    EXPECT_EQ(lines.at(kCount + 1), "*Last: 1");
}

TEST(OrbPPDLines, TakesTensOfThousandsOfLinesThatComeAndGo) {
    constexpr std::size_t kCount = 50'000;
    auto lines = linesOfText(std::string(kCount, '\n'));
    for (std::size_t i = 0; i < kCount; ++i) {
        lines.insert(i, "*Key: 1");
        lines.erase(i, 1);
    }
    EXPECT_EQ(insertedCount(lines), 0U);
    EXPECT_EQ(*lines.text(), std::string(kCount, '\n'));
}

TEST(OrbPPDLines, TakesTensOfThousandsOfLookUpsOfOptions) {
    constexpr std::size_t kCount = 20'000;
    std::string text;
    for (std::size_t i = 0; i < kCount; ++i) {
        text += "*Key " + std::to_string(i) + "/T: 12\n";
    }
    const auto lines = linesOfText(text);
    for (std::size_t i = 0; i < kCount; ++i) {
        ASSERT_EQ(lines.indexOfAttribute("Key", std::to_string(i), std::nullopt), i);
        ASSERT_EQ(lines.indexOfAttribute("Key", std::to_string(i) + "x", std::nullopt),
                  std::nullopt);
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
