#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "ppd/OrbPPDProcessor.h"

namespace TkPPDUpdating::Testing {
namespace {

using Texts = std::vector<std::string>;

std::optional<Texts> wrapped(const std::string& line) {
    return OrbPPDProcessor::linesWrapedToPPDMaxWidthForAttributeString(line);
}

std::string repeated(std::string_view text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

std::string a(std::size_t length) {
    return std::string(length, 'a');
}

std::string b(std::size_t length) {
    return std::string(length, 'b');
}

TEST(OrbPPDProcessorWrap, ALineThatFitsStaysAloneWithoutAnEndLine) {
    for (const std::string& line : {std::string("*Key: a b c"), std::string(), std::string(" "),
                                    std::string("  a   b  "), a(255), a(200) + " " + b(54)}) {
        EXPECT_EQ(wrapped(line), Texts{line}) << '[' << line << ']';
    }
}

TEST(OrbPPDProcessorWrap, ALineOf300BytesOfShortWordsGivesTwoLinesAndAnEndLine) {
    // The first word takes 5 bytes and each further one 5 with its space, so that 51 words take
    // 255 bytes; the 52nd would end beyond 255.
    const std::string line = "abcde" + repeated(" abcd", 59);
    ASSERT_EQ(line.size(), 300U);
    EXPECT_EQ(wrapped(line),
              (Texts{"abcde" + repeated(" abcd", 50), "abcd" + repeated(" abcd", 8), "*End"}));
}

TEST(OrbPPDProcessorWrap, TheJoiningSpaceIsNotCountedSoThatALineCanTake256Bytes) {
    struct {
        std::string line;
        Texts lines;
    } const cases[] = {
        {a(200) + " " + b(54), {a(200) + " " + b(54)}},   // 255 bytes
        {a(200) + " " + b(55), {a(200) + " " + b(55)}},   // 256 bytes
        {a(200) + " " + b(56), {a(200), b(56), "*End"}},  // would be 257
        {a(1) + " " + b(254), {a(1) + " " + b(254)}},     // 256 bytes
        {a(1) + " " + b(255), {a(1), b(255), "*End"}},
        {a(255) + " " + b(1), {a(255), b(1), "*End"}},
        {a(254) + " " + b(1), {a(254) + " " + b(1)}},
        {a(200) + " " + b(55) + " c", {a(200) + " " + b(55), "c", "*End"}},
    };
    for (const auto& [line, lines] : cases) {
        EXPECT_EQ(wrapped(line), lines) << line;
    }
}

TEST(OrbPPDProcessorWrap, TheSpaceIsCountedOnceItStandsInTheLine) {
    // 100 + 1 + 100 = 201 bytes; a word of 54 ends at 255 without its space, one of 55 at 256.
    EXPECT_EQ(wrapped(a(100) + " " + b(100) + " " + a(54)),
              (Texts{a(100) + " " + b(100) + " " + a(54)}));
    EXPECT_EQ(wrapped(a(100) + " " + b(100) + " " + a(55)),
              (Texts{a(100) + " " + b(100), a(55), "*End"}));
}

TEST(OrbPPDProcessorWrap, AWordOfMoreThan255BytesCannotBeWrapped) {
    EXPECT_EQ(wrapped(a(256)), std::nullopt);
    EXPECT_EQ(wrapped("*Key: " + a(256) + " b"), std::nullopt);
    EXPECT_EQ(wrapped("*Key: b " + a(256)), std::nullopt);
    EXPECT_EQ(wrapped("*Key: " + a(255)), (Texts{"*Key:", a(255), "*End"}));
}

TEST(OrbPPDProcessorWrap, LengthsAreBytesOfUTF8) {
    EXPECT_EQ(wrapped(repeated("\xC3\xA9", 128)), std::nullopt);
    EXPECT_EQ(wrapped(repeated("\xC3\xA9", 127) + "x"), Texts{repeated("\xC3\xA9", 127) + "x"});
    EXPECT_EQ(wrapped(repeated("\xC3\xA9", 127) + " x " + "y"),
              (Texts{repeated("\xC3\xA9", 127) + " x", "y", "*End"}));
}

TEST(OrbPPDProcessorWrap, RunsOfSpacesAreKept) {
    EXPECT_EQ(wrapped(a(150) + "   " + b(150)), (Texts{a(150) + "  ", b(150), "*End"}));
    EXPECT_EQ(wrapped(" " + a(255)), (Texts{" " + a(255)}));
    EXPECT_EQ(wrapped("  " + a(255)), (Texts{" ", a(255), "*End"}));
}

TEST(OrbPPDProcessorWrap, AnEmptyWordAfterALineOf256BytesBeginsTheNextLine) {
    EXPECT_EQ(wrapped(a(200) + " " + b(55) + "  x"), (Texts{a(200) + " " + b(55), " x", "*End"}));
}

TEST(OrbPPDProcessorWrap, OnlySpacesSeparateWords) {
    EXPECT_EQ(wrapped(a(200) + "\t" + b(56)), std::nullopt);
    EXPECT_EQ(wrapped(a(200) + "\xC2\xA0" + b(56)), std::nullopt);
}

TEST(OrbPPDProcessorIsASCII, EveryCharacterUpTo7FAndTheEmptyTextAre) {
    std::string all;
    for (char c = 0; c < 0x7F; ++c) {
        all += c;
    }
    all += '\x7F';
    EXPECT_TRUE(OrbPPDProcessor::isASCIIString(all));
    EXPECT_TRUE(OrbPPDProcessor::isASCIIString(""));
}

TEST(OrbPPDProcessorIsASCII, AnyCharacterAboveIsNot) {
    for (const std::string_view text :
         {"\xC2\x80", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xEF\xBB\xBF"}) {
        EXPECT_FALSE(OrbPPDProcessor::isASCIIString(text)) << text;
        for (std::size_t before = 0; before < 20; ++before) {
            const std::string mixed = a(before) + std::string(text) + a(20 - before);
            EXPECT_FALSE(OrbPPDProcessor::isASCIIString(mixed)) << mixed;
        }
    }
}

TEST(OrbPPDProcessorIsASCII, AByteThatIsNoUTF8IsNot) {
    EXPECT_FALSE(OrbPPDProcessor::isASCIIString("a\x80"));
    EXPECT_FALSE(OrbPPDProcessor::isASCIIString("\xFF"));
}

TEST(OrbPPDProcessorSavvyName, ANameWithoutTheStartOfACharacterHasNoPrefix) {
    EXPECT_EQ(OrbPPDProcessor::PPDSavvyNameFromString(repeated("\x80", 100)), "");
}

TEST(OrbPPDProcessorSavvyName, AShortNameStaysAndALongOneIsCutToAtMost79Bytes) {
    const std::string_view two = "\xC3\xA9";
    const std::string_view three = "\xE2\x82\xAC";
    const std::string_view four = "\xF0\x9F\x98\x80";
    struct {
        std::string name;
        std::string savvy;
    } const cases[] = {
        {"", ""},
        {"Glossy", "Glossy"},
        {a(79), a(79)},
        {a(80), a(79)},
        {a(100), a(79)},
        {a(10000), a(79)},
        {repeated(two, 39), repeated(two, 39)},                // 78
        {a(1) + repeated(two, 39), a(1) + repeated(two, 39)},  // 79
        {repeated(two, 40), repeated(two, 39)},                // 80
        {repeated(two, 50), repeated(two, 39)},                // 100
        {a(78) + std::string(two), a(78)},
        {repeated(three, 26), repeated(three, 26)},                // 78
        {a(1) + repeated(three, 26), a(1) + repeated(three, 26)},  // 79
        {repeated(three, 26) + "ab", repeated(three, 26) + "a"},   // 80
        {a(2) + repeated(three, 26), a(2) + repeated(three, 25)},  // 80
        {repeated(three, 33) + "a", repeated(three, 26)},          // 100
        {repeated(four, 19) + "abc", repeated(four, 19) + "abc"},  // 79
        {repeated(four, 20), repeated(four, 19)},                  // 80
        {repeated(four, 25), repeated(four, 19)},                  // 100
        {"abc" + repeated(four, 20), "abc" + repeated(four, 19)},
        {a(78) + "e\xCC\x81", a(78) + "e"},  // a combining accent is a character of its own
    };
    for (const auto& [name, savvy] : cases) {
        EXPECT_EQ(OrbPPDProcessor::PPDSavvyNameFromString(name), savvy) << name;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
