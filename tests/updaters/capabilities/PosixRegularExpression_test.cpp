#include "updaters/capabilities/PosixRegularExpression.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <clocale>
#include <cstddef>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "ppd/OrbPPDLines.h"
#include "tests/updaters/capabilities/ChangedText.h"
#include "tests/updaters/capabilities/LineRemovalModels.h"

namespace TkPPDUpdating::Testing {
namespace {

using namespace std::string_view_literals;

/// Null when the expression does not compile.
PPDText removed(const PPDText& text, const std::string& expression) {
    const auto compiled = PosixRegularExpression::compiled(expression);
    return compiled ? compiled->textByRemovingMatchingLines(text) : nullptr;
}

std::string removed(std::string_view text, const std::string& expression) {
    const PPDText result = removed(makePPDText(std::string(text)), expression);
    return result ? *result : "does not compile";
}

TEST(PosixRegularExpression, RefusesWhatDoesNotCompile) {
    for (const char* const expression : {"(", "a)b(", "[", "[[:nothing:]]", "a{2,1}", "\\"}) {
        EXPECT_FALSE(PosixRegularExpression::compiled(expression)) << expression;
    }
}

TEST(PosixRegularExpression, RefusesAnExpressionWithNUL) {
    EXPECT_FALSE(PosixRegularExpression::compiled(std::string("a\0b"sv)));
}

TEST(PosixRegularExpression, IsExtended) {
    EXPECT_EQ(removed("a\nb\nc\n", "^(a|b)$"), "c\n");
    EXPECT_EQ(removed("aa\na\n", "^a{2}$"), "a\n");
    EXPECT_EQ(removed("a+\naa\n", "^a+$"), "a+\n");
}

TEST(PosixRegularExpression, SeesAllOfALineWithNUL) {
    EXPECT_EQ(removed("a\0b\nkept\n"sv, "b"), "kept\n");
    EXPECT_EQ(removed("a\0b\nkept\n"sv, "^a$"), "a\0b\nkept\n"sv);
    EXPECT_EQ(removed("\0\nkept\n"sv, "^$"), "\0\nkept"sv);
}

TEST(PosixRegularExpression, AnErrorNumberFromBeforeIsNoWantOfMemory) {
    errno = ENOMEM;
    const auto compiled = PosixRegularExpression::compiled("b");
    ASSERT_TRUE(compiled);
    errno = ENOMEM;
    EXPECT_EQ(*compiled->textByRemovingMatchingLines(makePPDText("a\nb\nb x\n")), "a\n");
    errno = ENOMEM;
    EXPECT_EQ(*compiled->textByRemovingMatchingLines(makePPDText("ab\n")), "");
}

TEST(PosixRegularExpression, GivesTheTextItselfWhenNothingMatches) {
    for (const char* const text : {"a\nb\n", "a\nb", "", "\n"}) {
        const PPDText given = makePPDText(text);
        EXPECT_EQ(removed(given, "c"), given) << text;
    }
    const PPDText withoutLineFeed = makePPDText("a\nb");
    EXPECT_EQ(removed(withoutLineFeed, "^$"), withoutLineFeed);
}

TEST(PosixRegularExpression, ALineFeedInItIsInNoLine) {
    for (const char* const expression : {"a\nb", "\n", "\nb", "b\n", "(x)\nb", "[^x]\nb"}) {
        EXPECT_EQ(removed("a\nb\n", expression), "a\nb\n") << expression;
        EXPECT_EQ(removed("a\nb", expression), "a\nb") << expression;
    }
    EXPECT_EQ(removed("a\nb\n", "\nb|a"), "b\n");
}

/// The text with a line before the one at `index`, as an updater hands it on.
PPDText withLine(std::string_view text, std::size_t index, std::string_view line) {
    OrbPPDLines lines(makePPDText(std::string(text)));
    lines.insert(index, line);
    return lines.text();
}

TEST(PosixRegularExpression, TakesLinesThatWereInserted) {
    EXPECT_EQ(*removed(withLine("a\nb\nc\n", 1, "S"), "S"), "a\nb\nc\n");
    EXPECT_EQ(*removed(withLine("a\nb\n", 2, "S"), "S"), "a\nb\n");
    EXPECT_EQ(*removed(withLine("a\nb", 2, "S"), "S"), "a\nb");
    EXPECT_EQ(*removed(withLine("a\nb\n", 1, "x"), "S"), "a\nx\nb\n");
}

TEST(PosixRegularExpression, GivesWhatMatchingEachLineGivesForTextsThatUpdatersHaveChanged) {
    constexpr std::array kLines = {"S"sv, "aSb"sv, "Sa"sv, "a"sv, "b"sv, ""sv, "SS"sv};
    std::mt19937 random(4);  // NOLINT(cert-msc51-cpp): the same texts in every run
    const auto number = [&](std::size_t most) { return random() % (most + 1); };
    const auto line = [&] { return kLines[number(kLines.size() - 1)]; };
    int changed = 0;
    for (int i = 0; i < 300; ++i) {
        std::string base;
        for (std::size_t lines = number(6); lines > 0; --lines) {
            (base += line()) += lines > 1 || number(1) == 0 ? "\n" : "";
        }
        const PPDText text = changedText(base, number, line);
        const std::string& before = *text;
        for (const char* const expression : {"S", "^S$", "S.*S|b", "^$", "^a?$"}) {
            const std::string expected = withoutMatchingLines(before, expression);
            ASSERT_EQ(*removed(text, expression), expected) << before << "\n" << expression;
            changed += expected != before ? 1 : 0;
        }
    }
    EXPECT_GT(changed, 300) << "too few texts have anything to remove";
}

TEST(PosixRegularExpression, TakesALineOfAMegabyte) {
    const std::string line(1U << 20U, 'x');
    EXPECT_EQ(removed(line + "\n" + line + "y\n", "^[^ ]+y"), line + "\n");
}

TEST(PosixRegularExpression, MatchesByteByByteInEveryLocale) {
    // "é" takes two bytes of UTF-8 and is a letter in no locale that counts here.
    const auto check = [] {
        EXPECT_EQ(removed("\xC3\xA9\ne\n", "^..$"), "e\n");
        EXPECT_EQ(removed("\xC3\xA9\ne\n", "^[[:alpha:]]"), "\xC3\xA9\n");
        EXPECT_EQ(removed("\xFF\ne\n", "^.$"), "");
    };
    check();
    const locale_t wide = ::newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
    ASSERT_NE(wide, locale_t());
    const locale_t before = ::uselocale(wide);
    check();
    EXPECT_EQ(::uselocale(nullptr), wide) << "the caller's locale is back";
    ::uselocale(before);
    ::freelocale(wide);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
