#include "text/ASCII.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <string>
#include <string_view>

namespace TkPPDUpdating {
namespace {

constexpr std::string_view kUpper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view kLower = "abcdefghijklmnopqrstuvwxyz";
constexpr std::string_view kDigits = "0123456789";

bool isIn(std::string_view characters, char character) {
    return characters.find(character) != std::string_view::npos;
}

TEST(ASCIICharacters, AreOfTheirKindsForEveryByte) {
    for (int byte = 0; byte <= std::numeric_limits<unsigned char>::max(); ++byte) {
        const char character = static_cast<char>(byte);
        const bool isLower = isIn(kLower, character);
        const bool isLetter = isLower || isIn(kUpper, character);
        const bool isDigit = isIn(kDigits, character);
        EXPECT_EQ(isASCIILowerCaseLetter(character), isLower) << byte;
        EXPECT_EQ(isASCIILetter(character), isLetter) << byte;
        EXPECT_EQ(isASCIIDigit(character), isDigit) << byte;
        EXPECT_EQ(isASCIILetterOrDigit(character), isLetter || isDigit) << byte;
        EXPECT_EQ(isASCIILetterOrDigit(static_cast<char32_t>(byte)), isLetter || isDigit) << byte;
    }
    EXPECT_FALSE(isASCIILetterOrDigit(U'\u0141')) << "whose last byte is that of an A";
}

TEST(ASCIICharacters, ChangeTheirCaseOnlyIfTheyAreUpperCaseLetters) {
    for (int byte = 0; byte <= std::numeric_limits<unsigned char>::max(); ++byte) {
        const char character = static_cast<char>(byte);
        const std::size_t at = kUpper.find(character);
        EXPECT_EQ(inASCIILowerCase(character),
                  at == std::string_view::npos ? character : kLower[at])
            << byte;
    }
    EXPECT_EQ(textInASCIILowerCase("IPPS://[B\xC3\x9CRO]"), "ipps://[b\xC3\x9Cro]");
    EXPECT_EQ(textInASCIILowerCase(""), "");
}

TEST(ASCIICharacters, AreEqualInAnyCaseButNotAbove) {
    EXPECT_TRUE(areEqualIgnoringASCIICase("LocalHost", "lOCALhOST"));
    EXPECT_TRUE(areEqualIgnoringASCIICase("", ""));
    EXPECT_FALSE(areEqualIgnoringASCIICase("local", "localhost"));
    EXPECT_FALSE(areEqualIgnoringASCIICase("localhost", "local"));
    EXPECT_FALSE(areEqualIgnoringASCIICase("@", "`")) << "they differ by the bit of the case";
    EXPECT_FALSE(areEqualIgnoringASCIICase("\xC3\x9C", "\xC3\xBC"));
}

TEST(ASCIICharacters, HaveAValueAsHexadecimalDigits) {
    constexpr std::string_view kValues = "0123456789abcdef";
    for (int byte = 0; byte <= std::numeric_limits<unsigned char>::max(); ++byte) {
        const char character = static_cast<char>(byte);
        std::size_t value = kValues.find(character);
        value = value == std::string_view::npos
                    ? std::string_view("0123456789ABCDEF").find(character)
                    : value;
        const auto digit = hexadecimalDigitValue(character);
        ASSERT_EQ(digit.has_value(), value != std::string_view::npos) << byte;
        EXPECT_EQ(digit.value_or(0), digit ? value : 0) << byte;
    }
}

TEST(ControlCharacters, AreThoseOfUnicode) {
    for (const char32_t each :
         std::initializer_list<char32_t>{0x00, 0x09, 0x0A, 0x1F, 0x7F, 0x80, 0x85, 0x9F}) {
        EXPECT_TRUE(isControlCharacter(each)) << static_cast<unsigned>(each);
    }
    for (const char32_t each : std::initializer_list<char32_t>{0x20, 0x41, 0x7E, 0xA0, 0xAD, 0x2028,
                                                               0x2029, 0x202E, 0x10FFFF}) {
        EXPECT_FALSE(isControlCharacter(each)) << static_cast<unsigned>(each);
    }
}

}  // namespace
}  // namespace TkPPDUpdating
