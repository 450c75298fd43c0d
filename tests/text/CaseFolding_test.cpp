#include "text/CaseFolding.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "tests/text/UTF8Encoding.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr std::size_t kNoPrefix = std::string_view::npos;

struct Folding {
    char32_t codePoint;
    char32_t folded;
    const char* name;
};

constexpr Folding kFoldings[] = {
    {U'A', U'a', "A"},
    {U'Z', U'z', "Z"},
    {U'a', U'a', "a"},
    {U'@', U'@', "before A"},
    {U'[', U'[', "after Z"},
    {U'*', U'*', "asterisk"},
    {0xB5, 0x3BC, "micro sign"},
    {0xC0, 0xE0, "A with grave"},
    {0xD7, 0xD7, "multiplication sign"},
    {0xDE, 0xFE, "thorn"},
    {0xDF, 0xDF, "sharp s: its full folding is two letters"},
    {0x1E9E, 0xDF, "capital sharp s"},
    {0x130, 0x130, "I with dot above: Turkish and full foldings are left out"},
    {0x131, 0x131, "dotless i"},
    {U'I', U'i', "I, in every language"},
    {0x178, 0xFF, "Y with diaeresis"},
    {0x17F, U's', "long s"},
    {0x1E9B, 0x1E61, "long s with dot above"},
    {0x1C5, 0x1C6, "titlecase DZ with caron"},
    {0x3A3, 0x3C3, "sigma"},
    {0x3C2, 0x3C3, "final sigma"},
    {0x212A, U'k', "Kelvin sign"},
    {0x212B, 0xE5, "Angstrom sign"},
    {0x2126, 0x3C9, "Ohm sign"},
    {0x13A0, 0x13A0, "Cherokee capital A folds to itself"},
    {0xAB70, 0x13A0, "Cherokee small a folds to the capital"},
    {0x13F8, 0x13F0, "Cherokee small ye"},
    {0x10400, 0x10428, "Deseret"},
    {0x10427, 0x1044F, "the last of Deseret"},
    {0x1E921, 0x1E943, "the last of Adlam"},
    {0xFF21, 0xFF41, "full-width A"},
    {0x10FFFF, 0x10FFFF, "the last code point"},
    {0x110000, 0x110000, "no code point"},
};

TEST(CaseFolding, FoldsByTheSimpleUnicodeRule) {
    for (const auto& [codePoint, folded, name] : kFoldings) {
        EXPECT_EQ(simpleCaseFolding(codePoint), folded) << name;
    }
}

#ifdef TKPPDUPDATING_CASE_FOLDING_FILE
TEST(CaseFolding, AgreesWithUnicodesFileForEveryCodePoint) {
    std::ifstream file(TKPPDUPDATING_CASE_FOLDING_FILE);
    ASSERT_TRUE(file);
    std::map<char32_t, char32_t> foldings;
    for (std::string line; std::getline(file, line);) {
        // code; status; mapping; # name
        std::istringstream fields(line.substr(0, line.find('#')));
        std::string code;
        std::string status;
        std::string mapping;
        std::getline(fields, code, ';');
        std::getline(fields, status, ';');
        std::getline(fields, mapping, ';');
        if (status == " C" || status == " S") {
            foldings[static_cast<char32_t>(std::stoul(code, nullptr, 16))] =
                static_cast<char32_t>(std::stoul(mapping, nullptr, 16));
        }
    }
    ASSERT_GT(foldings.size(), 1000U);
    for (char32_t codePoint = 0; codePoint <= kLastCodePoint; ++codePoint) {
        const auto folding = foldings.find(codePoint);
        const char32_t expected = folding == foldings.end() ? codePoint : folding->second;
        ASSERT_EQ(simpleCaseFolding(codePoint), expected) << std::hex << std::uint32_t{codePoint};
    }
}
#endif

TEST(CaseFolding, FoldingTwiceChangesNothingFurther) {
    for (char32_t codePoint = 0; codePoint <= kLastCodePoint; ++codePoint) {
        const char32_t folded = simpleCaseFolding(codePoint);
        ASSERT_EQ(simpleCaseFolding(folded), folded) << std::hex << std::uint32_t{codePoint};
    }
}

TEST(CaseFolding, TheLengthOfAPrefixIsCountedInBytesOfTheText) {
    struct {
        std::string_view text;
        std::string_view prefix;
        std::size_t length;
    } const cases[] = {
        {"PageSize: A4", "pagesize", 8},
        {"abc", "abc", 3},
        {"abc", "", 0},
        {"", "", 0},
        {"\xE2\x84\xAA:", "k", 3},  // Kelvin sign takes three bytes
        {"k:", "\xE2\x84\xAA", 1},
        {"\xC5\xBF\xC5\xBF", "Ss", 4},  // long s
        {"\xC3\x89t\xC3\xA9", "\xC3\xA9T", 3},
        {"\xFF"
         "A",
         "\xFF"
         "a",
         2},  // not UTF-8: the same byte
        {"", "a", kNoPrefix},
        {"ab", "abc", kNoPrefix},
        {"abd", "abc", kNoPrefix},
        {"xabc", "abc", kNoPrefix},
        {"\xFF", "\xFE", kNoPrefix},
        {"\xE2\x84", "k", kNoPrefix},  // not all of a Kelvin sign
        {"\xE2\x84\xAA", "\xE2", kNoPrefix},
        {"k", "\xE2\x84", kNoPrefix},
        {"a\xCC\x81", "\xC3\xA1", kNoPrefix},  // composed and not
    };
    for (const auto& [text, prefix, length] : cases) {
        EXPECT_EQ(lengthOfPrefixIgnoringCase(text, prefix), length) << text << " | " << prefix;
    }
}

TEST(CaseFolding, TextsThatAreEqualIgnoringCaseHaveTheSameHash) {
    constexpr std::size_t kSeed = 17;
    struct {
        std::string_view one;
        std::string_view other;
    } const cases[] = {
        {"PageSize", "pAGEsIZE"},
        {"\xE2\x84\xAA"
         "ey",
         "KEY"},
        {"\xC3\x89", "\xC3\xA9"},
        {"\xF0\x90\x90\x80", "\xF0\x90\x90\xA8"},
        {"", ""},
    };
    for (const auto& [one, other] : cases) {
        EXPECT_EQ(hashIgnoringCase(one, kSeed), hashIgnoringCase(other, kSeed)) << one;
    }
    EXPECT_NE(hashIgnoringCase("PageSize", kSeed), hashIgnoringCase("PageSizf", kSeed));
    EXPECT_NE(hashIgnoringCase("ab", kSeed), hashIgnoringCase("ba", kSeed));
    EXPECT_NE(hashIgnoringCase("abc", kSeed), hashIgnoringCase("abc", kSeed + 1));
    using namespace std::string_view_literals;
    EXPECT_NE(hashIgnoringCase("a"sv, kSeed), hashIgnoringCase("\0a"sv, kSeed));
    EXPECT_NE(hashIgnoringCase("abc"sv, kSeed), hashIgnoringCase("abc\0"sv, kSeed));
    // U+0161 is no four ASCII characters, although its number has their bytes.
    EXPECT_NE(hashIgnoringCase("\xC5\xA1"sv, kSeed), hashIgnoringCase("\0\0\1a"sv, kSeed));
}

TEST(CaseFolding, TheHashOfABeginningIsThatOfTheTextAlone) {
    HashIgnoringCase hash(17);
    std::string text;
    for (const std::string_view piece : {"", "A", "bc", "\xC3\x89", "defghij", ""}) {
        hash.add(piece);
        text += piece;
        EXPECT_EQ(hash.value(), hashIgnoringCase(text, 17)) << text;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
