#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// Orders texts character by character: by their UTF-16 units, case-sensitive, no locale.
struct OrderByUTF16Units {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const;
};

/// What a strings file holds: string keys and string values (UTF-8), in the order in which they are
/// written.
using StringsDictionary = std::map<std::string, std::string, OrderByUTF16Units>;

/// The dictionary as one line that stands inside a quoted PPD value: "key=value;" for each key, in
/// order, nothing between the pairs. Nothing is quoted or escaped: a key or value with "=", ";" or
/// a quote in it is written as it stands. An empty dictionary gives the empty text.
std::string zrlumen_keysAndValuesInPPDStringsFileFormat(const StringsDictionary& dictionary);

/// Reads a strings file: pairs of a key, "=", a value and ";". "key;" alone stands for "key=key;";
/// a key that comes twice has its last value; a text without pairs is an empty dictionary. Nothing
/// when the text is malformed: a pair that does not end with ";", a quote that is not closed,
/// anything between a closing quote and the separator, a wrong escape, or a ";" without a key.
///
/// - Keys and values are quoted strings or bare words. Blanks (space, U+0009 to U+000D, U+2028,
///   U+2029) and comments (`/* ... */`, and `//` to the end of the line) may stand around them.
/// - A quoted string begins with a double quote and ends at the next one. Escapes in it: `\a` `\b`
///   `\f` `\n` `\r` `\t` `\v`; `\` and one to three octal digits, a code point up to U+00FF; `\U`
///   and four hexadecimal digits, a UTF-16 unit; `\` before any other character is that character.
/// - A bare word is any other text: a key's ends at the first "=" or ";", a value's at the first
///   ";", even within what looks like a comment. Blanks in the middle belong to it, as the written
///   form needs. It may be empty, but for the key of "key;".
/// - A comment opens only at the start of a line or text, or behind a blank, a quoted string, a ";"
///   or another comment: not right behind "=" or within a word, so that a path with "//" is a
///   value. In the middle of a pair it must also close (`//` by a line break), and behind a bare
///   word it must close before the word's separator and be followed by it; otherwise it is part of
///   the word.
///
/// So everything that is written above is read back, as far as it is unambiguous: unless a key
/// holds "=" or ";" or begins with what opens a comment, a value holds ";", or either begins with a
/// quote, begins or ends with a blank, or ends with a comment.
std::optional<StringsDictionary> propertyListFromStringsFileFormat(std::string_view text);

}  // namespace TkPPDUpdating
