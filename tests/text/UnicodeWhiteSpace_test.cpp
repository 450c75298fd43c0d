#include "text/UnicodeWhiteSpace.h"

#include <gtest/gtest.h>

#include <set>
#include <string_view>
#include <vector>

#include "tests/text/UTF8Encoding.h"

namespace TkPPDUpdating::Testing {
namespace {

using Pieces = std::vector<std::string_view>;

TEST(UnicodeWhiteSpace, HoldsExactlyTheCodePointsOfTheProperty) {
    const std::set<char32_t> whiteSpace = {0x09,   0x0A,   0x0B,   0x0C,   0x0D,   0x20,   0x85,
                                           0xA0,   0x1680, 0x2000, 0x2001, 0x2002, 0x2003, 0x2004,
                                           0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x2028,
                                           0x2029, 0x202F, 0x205F, 0x3000};
    for (char32_t codePoint = 0; codePoint <= kLastCodePoint + 1; ++codePoint) {
        ASSERT_EQ(isUnicodeWhiteSpace(codePoint), whiteSpace.contains(codePoint))
            << std::hex << std::uint32_t{codePoint};
    }
}

TEST(UnicodeWhiteSpace, EachWhiteSpaceCharacterSeparatesPieces) {
    struct {
        std::string_view text;
        Pieces pieces;
    } const cases[] = {
        {"", {""}},
        {"one", {"one"}},
        {"one two", {"one", "two"}},
        {"one  two", {"one", "", "two"}},
        {"one   two", {"one", "", "", "two"}},
        {" one ", {"", "one", ""}},
        {" ", {"", ""}},
        {"one\r\ntwo", {"one", "", "two"}},
        {"a\tb\nc\vd\fe\rf", {"a", "b", "c", "d", "e", "f"}},
        {"a\xC2\xA0"
         "b\xC2\x85"
         "c",
         {"a", "b", "c"}},
        {"a\xE3\x80\x80"
         "b\xE2\x80\xA8"
         "c\xE2\x80\xA9"
         "d",
         {"a", "b", "c", "d"}},
        {"a\xE2\x80\x8B"
         "b",
         {"a\xE2\x80\x8B"
          "b"}},  // zero-width space is none
        {"\xC3\xA9 \xF0\x9F\x98\x80", {"\xC3\xA9", "\xF0\x9F\x98\x80"}},
    };
    for (const auto& [text, pieces] : cases) {
        EXPECT_EQ(piecesBetweenWhiteSpace(text), pieces) << '[' << text << ']';
    }
}

TEST(UnicodeWhiteSpace, PiecesAreViewsIntoTheText) {
    const std::string_view text = "one two";
    const auto pieces = piecesBetweenWhiteSpace(text);
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(pieces[0].data(), text.data());
    EXPECT_EQ(pieces[1].data(), text.data() + 4);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
