#include "updaters/capabilities/PosixRegularExpression.h"

#include <gtest/gtest.h>
#include <clocale>

#include <optional>
#include <string>
#include <string_view>

namespace TkPPDUpdating::Testing {
namespace {

using namespace std::string_view_literals;

std::string removed(std::string_view text, const std::string& expression) {
    const auto compiled = PosixRegularExpression::compiled(expression);
    return compiled ? *compiled->textByRemovingMatchingLines(makePPDText(std::string(text)))
                    : "does not compile";
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
