#pragma once

#include <string>

namespace TkPPDUpdating::Testing {

/// The bytes that the UTF-8 scheme gives for a number up to 21 bits, whether or not it is a
/// character.
inline std::string encodedUTF8(char32_t codePoint) {
    const auto byte = [](char32_t bits) {
        return static_cast<char>(static_cast<unsigned char>(bits));
    };
    const auto following = [&](unsigned shift) {
        return byte(0x80 | ((codePoint >> shift) & 0x3F));
    };
    if (codePoint < 0x80) {
        return {byte(codePoint)};
    }
    if (codePoint < 0x800) {
        return {byte(0xC0 | (codePoint >> 6)), following(0)};
    }
    if (codePoint < 0x10000) {
        return {byte(0xE0 | (codePoint >> 12)), following(6), following(0)};
    }
    return {byte(0xF0 | (codePoint >> 18)), following(12), following(6), following(0)};
}

inline constexpr char32_t kLastCodePoint = 0x10FFFF;

inline bool isSurrogate(char32_t codePoint) {
    return codePoint >= 0xD800 && codePoint <= 0xDFFF;
}

}  // namespace TkPPDUpdating::Testing
