#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// One character read from a UTF-8 text: its code point and how many bytes it takes.
struct UTF8Character {
    char32_t codePoint = 0;
    std::size_t length = 0;
};

/// Reads the character at the start of `text`, which must not be empty. Strict (Unicode 15, table
/// 3-7): no overlong form, no surrogate, nothing above U+10FFFF; nothing when the bytes are no such
/// character.
std::optional<UTF8Character> UTF8CharacterAtStart(std::string_view text);

/// Appends the bytes of a character, which must be one: no surrogate, at most U+10FFFF.
void appendUTF8(char32_t codePoint, std::string& text);

/// The offset of the first byte that is not part of valid UTF-8; nothing when all of it is valid.
std::optional<std::size_t> firstInvalidUTF8Byte(std::string_view text);

/// How many 16-bit units the text takes in UTF-16. An invalid byte counts as one.
std::size_t UTF16Length(std::string_view text);

}  // namespace TkPPDUpdating
