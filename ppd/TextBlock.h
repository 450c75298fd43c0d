#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Looks at many bytes of a text at once. This is the one place that knows whether the processor
/// has vector instructions (SSE2, which every x86-64 has) or only words; both give the same.
namespace TkPPDUpdating {

inline constexpr std::size_t kTextBlock = 64;
inline constexpr std::size_t kSameBytes = 16;

/// Which of 64 bytes are what the lines of a PPD turn on: one bit each, the lowest for the first.
struct TextBlockMasks {
    std::uint64_t lineFeeds = 0;
    std::uint64_t quotes = 0;
    std::uint64_t asterisks = 0;
    /// Whether any byte is not ASCII.
    bool isWide = false;
};

#if defined(__SSE2__)

inline TextBlockMasks masksOfTextBlock(const char* bytes) {
    TextBlockMasks masks;
    __m128i all = _mm_setzero_si128();
    for (unsigned at = 0; at < kTextBlock; at += sizeof(__m128i)) {
        const __m128i part = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + at));
        const auto maskOf = [&](__m128i each) {
            return static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(each))) << at;
        };
        masks.lineFeeds |= maskOf(_mm_cmpeq_epi8(part, _mm_set1_epi8('\n')));
        masks.quotes |= maskOf(_mm_cmpeq_epi8(part, _mm_set1_epi8('"')));
        masks.asterisks |= maskOf(_mm_cmpeq_epi8(part, _mm_set1_epi8('*')));
        all = _mm_or_si128(all, part);
    }
    masks.isWide = _mm_movemask_epi8(all) != 0;
    return masks;
}

/// How many of 16 bytes are the same, from the first on.
inline unsigned lengthOfSameBytes(const char* bytes, const char* others) {
    const __m128i same = _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)),
                                        _mm_loadu_si128(reinterpret_cast<const __m128i*>(others)));
    return static_cast<unsigned>(std::countr_zero(~static_cast<unsigned>(_mm_movemask_epi8(same))));
}

#else

inline std::uint64_t wordAt(const char* bytes) {
    std::uint64_t word = 0;
    for (unsigned i = 0; i < sizeof word; ++i) {
        word |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    }
    return word;
}

/// The highest bit of each byte of the word that is zero.
inline std::uint64_t zeroBytesOf(std::uint64_t word) {
    constexpr std::uint64_t kLowBits = 0x7F7F7F7F7F7F7F7FU;
    return ~(((word & kLowBits) + kLowBits) | word | kLowBits);
}

inline std::uint64_t bytesEqualTo(char byte, std::uint64_t word) {
    constexpr std::uint64_t kEachByte = 0x0101010101010101U;
    return zeroBytesOf(word ^ (kEachByte * static_cast<unsigned char>(byte)));
}

inline TextBlockMasks masksOfTextBlock(const char* bytes) {
    TextBlockMasks masks;
    std::uint64_t all = 0;
    for (unsigned at = 0; at < kTextBlock; at += sizeof(std::uint64_t)) {
        const std::uint64_t word = wordAt(bytes + at);
        // The highest bits of all bytes side by side.
        const auto maskOf = [&](std::uint64_t highBits) {
            return (((highBits >> 7U) & 0x0101010101010101U) * 0x0102040810204080U >> 56U) << at;
        };
        masks.lineFeeds |= maskOf(bytesEqualTo('\n', word));
        masks.quotes |= maskOf(bytesEqualTo('"', word));
        masks.asterisks |= maskOf(bytesEqualTo('*', word));
        all |= word;
    }
    masks.isWide = (all & 0x8080808080808080U) != 0;
    return masks;
}

inline unsigned lengthOfSameBytes(const char* bytes, const char* others) {
    unsigned length = 0;
    while (length < kSameBytes && bytes[length] == others[length]) {
        ++length;
    }
    return length;
}

#endif

}  // namespace TkPPDUpdating
