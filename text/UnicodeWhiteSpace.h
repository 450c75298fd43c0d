#pragma once

#include <string_view>
#include <vector>

namespace TkPPDUpdating {

/// Whether the code point is white space or a line break (Unicode property White_Space).
bool isUnicodeWhiteSpace(char32_t codePoint);

/// The pieces of a UTF-8 text between its white-space and line-break characters, each of which
/// separates: a run of n of them gives n - 1 empty pieces, and an empty text is one empty piece.
/// The pieces are views into `text`.
std::vector<std::string_view> piecesBetweenWhiteSpace(std::string_view text);

}  // namespace TkPPDUpdating
