#include "text/UTF8.h"

#include <cstdint>
#include <cstring>

namespace TkPPDUpdating {

namespace {

constexpr char32_t kLargestBMPCodePoint = 0xFFFF;

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0U) == 0x80U;
}

/// What the first byte of a character says: its length, the bits of the code point that it carries,
/// and the range of the second byte that excludes overlong forms, surrogates and too large values.
struct Lead {
    std::size_t length = 0;
    char32_t bits = 0;
    unsigned char secondFrom = 0x80;
    unsigned char secondTo = 0xBF;
};

Lead leadOf(unsigned char byte) {
    if (byte < 0x80) {
        return {1, byte, 0, 0};
    }
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {2, byte & 0x1FU};
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        return {3, byte & 0x0FU, static_cast<unsigned char>(byte == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(byte == 0xED ? 0x9F : 0xBF)};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        return {4, byte & 0x07U, static_cast<unsigned char>(byte == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(byte == 0xF4 ? 0x8F : 0xBF)};
    }
    return {};
}

/// Skips whole words of ASCII, which nearly all of a PPD is.
std::size_t lengthOfASCIIPrefix(std::string_view text) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    std::size_t at = 0;
    for (; at + sizeof(std::uint64_t) <= text.size(); at += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + at, sizeof word);
        if (word & kHighBits) {
            break;
        }
    }
    while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) {
        ++at;
    }
    return at;
}

}  // namespace

std::optional<UTF8Character> UTF8CharacterAtStart(std::string_view text) {
    const Lead lead = leadOf(static_cast<unsigned char>(text[0]));
    if (lead.length == 0 || lead.length > text.size()) {
        return std::nullopt;
    }
    UTF8Character character{lead.bits, lead.length};
    for (std::size_t i = 1; i < lead.length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (!isContinuation(byte) || (i == 1 && (byte < lead.secondFrom || byte > lead.secondTo))) {
            return std::nullopt;
        }
        character.codePoint = (character.codePoint << 6U) | (byte & 0x3FU);
    }
    return character;
}

void appendUTF8(char32_t codePoint, std::string& text) {
    const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
    const auto appendContinuation = [&](unsigned shift) {
        append(0x80U | ((codePoint >> shift) & 0x3FU));
    };
    if (codePoint < 0x80) {
        append(codePoint);
    } else if (codePoint < 0x800) {
        append(0xC0U | (codePoint >> 6U));
        appendContinuation(0);
    } else if (codePoint < 0x10000) {
        append(0xE0U | (codePoint >> 12U));
        appendContinuation(6);
        appendContinuation(0);
    } else {
        append(0xF0U | (codePoint >> 18U));
        appendContinuation(12);
        appendContinuation(6);
        appendContinuation(0);
    }
}

std::optional<std::size_t> firstInvalidUTF8Byte(std::string_view text) {
    std::size_t at = 0;
    while ((at += lengthOfASCIIPrefix(text.substr(at))) < text.size()) {
        const auto character = UTF8CharacterAtStart(text.substr(at));
        if (!character) {
            return at;
        }
        at += character->length;
    }
    return std::nullopt;
}

std::size_t UTF16Length(std::string_view text) {
    std::size_t units = 0;
    while (!text.empty()) {
        const auto character = UTF8CharacterAtStart(text);
        units += character && character->codePoint > kLargestBMPCodePoint ? 2 : 1;
        text.remove_prefix(character ? character->length : 1);
    }
    return units;
}

}  // namespace TkPPDUpdating
