#pragma once

#include <cstddef>
#include <string_view>

#include "text/UTF8.h"

namespace TkPPDUpdating::Testing {

/// Whether the text is UTF-8 without control characters and separators of lines, and has none of
/// the `forbidden` characters. Written apart from what the backends use.
inline bool isHarmlessText(std::string_view text, std::string_view forbidden) {
    if (firstInvalidUTF8Byte(text)) {
        return false;
    }
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const bool isC1 = byte == 0xC2 && static_cast<unsigned char>(text[at + 1]) < 0xA0;
        const std::string_view three = text.substr(at, 3);
        if (byte < 0x20 || byte == 0x7F || isC1 || three == "\xE2\x80\xA8" ||
            three == "\xE2\x80\xA9" || forbidden.find(text[at]) != std::string_view::npos) {
            return false;
        }
    }
    return true;
}

}  // namespace TkPPDUpdating::Testing
