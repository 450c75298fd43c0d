#pragma once

#include <string_view>

namespace TkPPDUpdating {

/// The code point that stands for `codePoint` where case is ignored: simple Unicode case folding
/// (Unicode CaseFolding.txt, statuses C and S). Independent of the process's locale.
char32_t simpleCaseFolding(char32_t codePoint);

/// When `text` begins with `prefix`, case ignored, the number of bytes of `text` that match it;
/// else `std::string_view::npos`. An empty prefix matches 0 bytes. A byte that is not valid UTF-8
/// matches only the same byte.
std::size_t lengthOfPrefixIgnoringCase(std::string_view text, std::string_view prefix);

/// A hash that is equal for texts that are equal where case is ignored, character by character.
std::size_t hashIgnoringCase(std::string_view text, std::size_t seed);

}  // namespace TkPPDUpdating
