#include "text/UnicodeWhiteSpace.h"

#include "text/UTF8.h"

namespace TkPPDUpdating {

bool isUnicodeWhiteSpace(char32_t codePoint) {
    return (codePoint >= 0x09 && codePoint <= 0x0D) || codePoint == 0x20 || codePoint == 0x85 ||
           codePoint == 0xA0 || codePoint == 0x1680 ||
           (codePoint >= 0x2000 && codePoint <= 0x200A) || codePoint == 0x2028 ||
           codePoint == 0x2029 || codePoint == 0x202F || codePoint == 0x205F || codePoint == 0x3000;
}

std::vector<std::string_view> piecesBetweenWhiteSpace(std::string_view text) {
    std::vector<std::string_view> pieces;
    std::size_t start = 0;
    for (std::size_t at = 0; at < text.size();) {
        const auto character = UTF8CharacterAtStart(text.substr(at));
        const std::size_t length = character ? character->length : 1;
        if (character && isUnicodeWhiteSpace(character->codePoint)) {
            pieces.push_back(text.substr(start, at - start));
            start = at + length;
        }
        at += length;
    }
    pieces.push_back(text.substr(start));
    return pieces;
}

}  // namespace TkPPDUpdating
