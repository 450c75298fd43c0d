#include "ppd/PPDTextSafety.h"

#include <array>
#include <cstdio>

#include "ppd/UTF8.h"

namespace TkPPDUpdating {

namespace {

bool canStandInPPDLine(char32_t codePoint) {
    const bool isControl = codePoint < 0x20 || (codePoint >= 0x7F && codePoint <= 0x9F);
    const bool isSeparator = codePoint == 0x2028 || codePoint == 0x2029;
    return !isControl && !isSeparator && codePoint != U'"';
}

std::string codePointName(char32_t codePoint) {
    std::array<char, 16> name{};
    const int length =
        std::snprintf(name.data(), name.size(), "U+%04X", static_cast<unsigned>(codePoint));
    return {name.data(), static_cast<std::size_t>(length)};
}

}  // namespace

std::optional<std::string> reasonTextCannotStandInPPDLine(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const auto character = UTF8CharacterAtStart(text.substr(at));
        if (!character) {
            return "is not valid UTF-8 at byte " + std::to_string(at);
        }
        if (!canStandInPPDLine(character->codePoint)) {
            return "has the character " + codePointName(character->codePoint) + " at byte " +
                   std::to_string(at);
        }
        at += character->length;
    }
    return std::nullopt;
}

}  // namespace TkPPDUpdating
