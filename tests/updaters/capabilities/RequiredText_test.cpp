#include "updaters/capabilities/RequiredText.h"

#include <gtest/gtest.h>
#include <regex.h>

#include <cstddef>
#include <random>
#include <string>
#include <string_view>

namespace TkPPDUpdating::Testing {
namespace {

struct Sample {
    const char* name;
    std::string_view expression;
    std::string_view required;
};

void PrintTo(const Sample& sample, std::ostream* out) {
    *out << sample.expression;
}

constexpr Sample kSamples[] = {
    {"PlainText", "abc", "abc"},
    {"NoText", "", ""},
    {"Anchors", "^abc$", "abc"},
    {"Alternatives", "abc|abd", ""},
    {"AlternativesInAGroup", "abc(d|e)fg", "abc"},
    {"AGroupAlone", "(abc)", ""},
    {"ABracketInAGroup", "a([)]b)cd", "cd"},
    {"TheLongestRun", "ab[cd]efg", "efg"},
    {"AnyCharacter", "a.bc", "bc"},
    {"AStar", "abc*de", "ab"},
    {"APlus", "abc+d", "abc"},
    {"AQuestionMark", "ab?cd", "cd"},
    {"ABound", "a{2}bc", "bc"},
    {"ABoundOfAPlainText", "ab{0,1}cde", "cde"},
    {"AnEscapedCharacter", "\\*Key", "*Key"},
    {"AnEscapedLetter", "a\\wbc", "bc"},
    {"AnEscapedWordBoundary", "ab\\<cde", "cde"},
    {"ABracketThatHoldsItsEnd", "x[]a]yz", "yz"},
    {"ANegatedBracketThatHoldsItsEnd", "x[^]a]yz", "yz"},
    {"AClass", "[[:alpha:]]abc", "abc"},
    {"ABackslashInABracket", "a[\\]bc", "bc"},
    {"ABracketInABracket", "a[[]bcd", "bcd"},
    {"AClassBehindACharacter", "a[x[:alpha:]y]bcd", "bcd"},
    {"ANegatedClass", "a[^[:alpha:]]bcd", "bcd"},
    {"ACollatingElementThatIsABracket", "a[[.].]]bcd", "bcd"},
    {"AnEquivalenceClassOfABracket", "a[[=]=]]bcd", "bcd"},
    {"AGroupInAGroup", "a(b(c)d)efg", "efg"},
    {"AnEscapedParenthesisInAGroup", "a(b\\)c)def", "def"},
    {"AnEscapedOpeningParenthesisInAGroup", "a(\\(b)cde", "cde"},
    {"AnOpeningParenthesisInABracketInAGroup", "a(b[(]c)def", "def"},
    {"AlternativesBehindAText", "abc|d", ""},
    {"AnyNumberOfAGroup", "a(bc)*def", "def"},
    {"SeveralRepetitions", "ab+*cde", "cde"},
    {"APlusBehindAText", "abcd+ef", "abcd"},
    {"AnOpenBound", "ab{2,}cde", "cde"},
    {"ABoundOfTwoDigits", "ab{10,19}cde", "cde"},
    {"ABoundAtTheEnd", "abc{2}", "ab"},
    {"ABoundBehindABound", "ab{2}{3}cde", "cde"},
    {"AnEscapedFullStop", "ab\\.cd", "ab.cd"},
    {"AnEscapedBackslash", "ab\\\\cd", "ab\\cd"},
    {"AnEscapedBrace", "ab\\{cd", "ab{cd"},
    {"ABackReference", "(a)\\1bc", "bc"},
    {"AnEscapedWordEnd", "ab\\>cde", "cde"},
    {"AnEscapedTextStart", "ab\\`cde", "cde"},
    {"AnEscapedTextEnd", "ab\\'cde", "cde"},
    {"AnEscapedCharacterThatMayBeMissing", "ab\\.?cde", "cde"},
    {"AnAnchorInTheMiddle", "ab$cde", "cde"},
    {"AStarInTheMiddleOfARun", "abc*defg", "defg"},
    {"ABracketThatHoldsItsEndAlone", "x[]]yz", "yz"},
    {"ABracketAtTheEndOfAGroup", "a([b])cde", "cde"},
    {"AnEscapedCharacterAtTheEndOfAGroup", "a(\\.)cde", "cde"},
    {"AnEscapedCharacterAtTheEnd", "ab\\.", "ab."},
    {"AnEscapedCharacterAlone", "\\.", "."},
    {"ALineFeed", "a\nb", "a\nb"},
    {"ABracketThatIsNotClosed", "abc[de", ""},
    {"ABracketAtTheVeryEnd", "abc[", ""},
    {"AClassThatIsNotClosed", "abc[[:alpha", ""},
    {"ABracketInAGroupThatIsNotClosed", "abc(d[e", ""},
    {"AGroupThatIsNotClosed", "abc(de", ""},
    {"ABoundThatIsNotClosed", "abc{2", ""},
    {"ABoundThatIsNone", "abc{x}de", ""},
    {"ABoundThatEndsInALetter", "abc{2x}de", ""},
    {"ABackslashAtTheEnd", "abc\\", ""},
};

class RequiredText : public testing::TestWithParam<Sample> {};

TEST_P(RequiredText, IsTheLongestRunThatIsInEveryMatch) {
    EXPECT_EQ(requiredTextOfExpression(GetParam().expression), GetParam().required);
}

INSTANTIATE_TEST_SUITE_P(, RequiredText, testing::ValuesIn(kSamples),
                         [](const auto& sample) { return std::string(sample.param.name); });

std::string randomText(std::mt19937& random, std::string_view characters, std::size_t most) {
    std::string text;
    for (std::size_t length = random() % (most + 1); length > 0; --length) {
        text += characters[random() % characters.size()];
    }
    return text;
}

TEST(RequiredTextProperties, EveryMatchHoldsIt) {
    std::mt19937 random(3);
    int matched = 0;
    int told = 0;
    for (int i = 0; i < 20'000; ++i) {
        const std::string expression = randomText(random, "aaabbb..*+?()[]^$|\\{}1,", 9);
        regex_t compiled{};
        if (::regcomp(&compiled, expression.c_str(), REG_EXTENDED | REG_NOSUB) != 0) {
            continue;
        }
        const std::string required = requiredTextOfExpression(expression);
        told += required.empty() ? 0 : 1;
        for (int j = 0; j < 20; ++j) {
            const std::string text = randomText(random, "aaabbb.*()1{}", 8);
            if (::regexec(&compiled, text.c_str(), 0, nullptr, 0) == 0) {
                ++matched;
                EXPECT_NE(text.find(required), std::string::npos)
                    << '"' << expression << "\" matches \"" << text << "\" without \"" << required
                    << '"';
            }
        }
        ::regfree(&compiled);
    }
    EXPECT_GT(matched, 10'000) << "too few texts match to be worth the comparison";
    EXPECT_GT(told, 1'000) << "too few expressions need a text";
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
