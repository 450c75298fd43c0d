#include "text/UTF8.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/text/UTF8Encoding.h"

namespace TkPPDUpdating::Testing {
namespace {

TEST(UTF8, EveryCodePointButASurrogateIsReadFromItsBytes) {
    for (char32_t codePoint = 0; codePoint <= kLastCodePoint; ++codePoint) {
        const std::string bytes = encodedUTF8(codePoint);
        const auto character = UTF8CharacterAtStart(bytes + "x");
        ASSERT_EQ(character.has_value(), !isSurrogate(codePoint))
            << std::hex << std::uint32_t{codePoint};
        if (character) {
            ASSERT_EQ(character->codePoint, codePoint);
            ASSERT_EQ(character->length, bytes.size());
        }
        ASSERT_EQ(firstInvalidUTF8Byte(bytes).has_value(), isSurrogate(codePoint))
            << std::hex << std::uint32_t{codePoint};
    }
}

TEST(UTF8, EveryCharacterIsAppendedAsItsBytes) {
    for (char32_t codePoint = 0; codePoint <= kLastCodePoint; ++codePoint) {
        if (!isSurrogate(codePoint)) {
            std::string text = "x";
            appendUTF8(codePoint, text);
            ASSERT_EQ(text, "x" + encodedUTF8(codePoint)) << std::hex << std::uint32_t{codePoint};
        }
    }
}

constexpr std::string_view kNoCharacters[] = {
    "\x80",
    "\xBF",
    "\xC0\x80",
    "\xC1\xBF",  // no first byte; overlong
    "\xE0\x80\x80",
    "\xE0\x9F\xBF",  // overlong, three bytes
    "\xED\xA0\x80",
    "\xED\xBF\xBF",  // surrogates
    "\xF0\x80\x80\x80",
    "\xF0\x8F\xBF\xBF",  // overlong, four bytes
    "\xF4\x90\x80\x80",
    "\xF5\x80\x80\x80",
    "\xF7\xBF\xBF\xBF",  // above U+10FFFF
    "\xF8\x88\x80\x80\x80",
    "\xFC\x84\x80\x80\x80\x80",
    "\xFE",
    "\xFF",
    "\xC2",
    "\xE2",
    "\xE2\x82",
    "\xF0",
    "\xF0\x9F",
    "\xF0\x9F\x98",  // cut short
    "\xC2 ",
    "\xC2\xC2",
    "\xE2 \xAC",
    "\xE2\x82 ",
    "\xE2\x82\xC2",
    "\xF0 \x98\x80",
    "\xF0\x9F \x80",
    "\xF0\x9F\x98 ",
    "\xF0\x9F\x98\xFF",
};

TEST(UTF8, WhatIsNoCharacterIsRefused) {
    for (const std::string_view bytes : kNoCharacters) {
        EXPECT_FALSE(UTF8CharacterAtStart(bytes)) << ::testing::PrintToString(bytes);
        EXPECT_EQ(firstInvalidUTF8Byte(bytes), 0U) << ::testing::PrintToString(bytes);
    }
}

TEST(UTF8, ValidTextsHaveNoInvalidByte) {
    using namespace std::string_view_literals;
    for (const std::string_view text :
         {""sv, "plain"sv, "\0"sv, "\xEF\xBB\xBF*PPD"sv,
          "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"sv, "\xEF\xBF\xBE\xEF\xBF\xBF"sv}) {
        EXPECT_EQ(firstInvalidUTF8Byte(text), std::nullopt) << text;
    }
}

TEST(UTF8, TheOffsetIsWhereTheBadCharacterBegins) {
    for (std::size_t before = 0; before < 70; ++before) {
        for (const std::string_view bad : {"\xFF", "\xE2\x82", "\xED\xA0\x80", "\x80"}) {
            const std::string ascii = std::string(before, 'a') + std::string(bad);
            EXPECT_EQ(firstInvalidUTF8Byte(ascii), before);
            EXPECT_EQ(firstInvalidUTF8Byte(ascii + std::string(70, 'b')), before);
            const std::string mixed = "\xC3\xA9" + std::string(before, 'a') + std::string(bad);
            EXPECT_EQ(firstInvalidUTF8Byte(mixed + "\xC3\xA9"), before + 2);
        }
    }
}

TEST(UTF8, ATextIsNotReadBeyondItsEnd) {
    const std::string_view euro = "\xE2\x82\xAC";
    EXPECT_EQ(firstInvalidUTF8Byte(euro.substr(0, 2)), 0U);
    EXPECT_EQ(UTF16Length(euro.substr(0, 2)), 2U);
}

TEST(UTF8, LengthInUTF16CountsUnits) {
    struct {
        std::string_view text;
        std::size_t units;
    } const cases[] = {
        {"", 0},
        {"abc", 3},
        {"\xC3\xA9", 1},
        {"\xE2\x82\xAC", 1},
        {"\xEF\xBF\xBF", 1},      // U+FFFF
        {"\xF0\x90\x80\x80", 2},  // U+10000
        {"\xF4\x8F\xBF\xBF", 2},  // U+10FFFF
        {"a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z", 6},
        {"\xFF", 1},
        {"\xFF\xFE", 2},
        {"a\x80z", 3},
    };
    for (const auto& [text, units] : cases) {
        EXPECT_EQ(UTF16Length(text), units) << ::testing::PrintToString(text);
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
