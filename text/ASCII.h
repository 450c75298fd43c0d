#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace TkPPDUpdating {

// Kinds of characters for texts whose grammar knows ASCII only (keywords, schemes, host names),
// whatever the process's locale says. A byte of a character above U+007F is of no kind and stays as
// it is. What people write is compared by text/CaseFolding.h.

constexpr bool isASCIIDigit(char character) {
    return character >= '0' && character <= '9';
}

constexpr bool isASCIILowerCaseLetter(char character) {
    return character >= 'a' && character <= 'z';
}

/// A letter A to Z in lower case; any other character as it is.
constexpr char inASCIILowerCase(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

constexpr bool isASCIILetter(char character) {
    return isASCIILowerCaseLetter(inASCIILowerCase(character));
}

constexpr bool isASCIILetterOrDigit(char character) {
    return isASCIILetter(character) || isASCIIDigit(character);
}

/// The same for a code point: none above U+007F is one.
constexpr bool isASCIILetterOrDigit(char32_t codePoint) {
    return codePoint < 0x80 && isASCIILetterOrDigit(static_cast<char>(codePoint));
}

/// The value of a hexadecimal digit of either case, or nothing.
constexpr std::optional<unsigned> hexadecimalDigitValue(char character) {
    const char lower = inASCIILowerCase(character);
    if (isASCIIDigit(lower)) {
        return static_cast<unsigned>(lower - '0');
    }
    return lower >= 'a' && lower <= 'f' ? std::optional(static_cast<unsigned>(lower - 'a' + 10))
                                        : std::nullopt;
}

inline std::string textInASCIILowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), inASCIILowerCase);
    return lower;
}

/// Whether the texts are equal but for the case of ASCII letters.
inline bool areEqualIgnoringASCIICase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return inASCIILowerCase(a) == inASCIILowerCase(b); });
}

/// U+0000 to U+001F and U+007F to U+009F: Unicode's general category Cc, of which ASCII has all but
/// the upper half.
constexpr bool isControlCharacter(char32_t codePoint) {
    return codePoint < 0x20 || (codePoint >= 0x7F && codePoint <= 0x9F);
}

}  // namespace TkPPDUpdating
