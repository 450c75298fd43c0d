#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Looks at many bytes of a text at once. This is the one place that knows whether the processor
/// has vector instructions (SSE2, which every x86-64 has) or only words; both give the same.
namespace TkPPDUpdating {

inline constexpr std::size_t kTextBlock = 64;
/// The bytes of a shorter block, which nearly every keyword fits into.
inline constexpr std::size_t kKeywordBlock = 16;
/// What ends the keyword of a line.
inline constexpr std::string_view kKeywordEnds = " \t/:\n";

/// Which of 64 bytes are what the lines of a PPD turn on: one bit each, the lowest for the first.
struct TextBlockMasks {
    std::uint64_t lineFeeds = 0;
    std::uint64_t quotes = 0;
    std::uint64_t asterisks = 0;
    /// Whether any byte is not ASCII.
    bool isWide = false;
    bool hasNUL = false;

    friend bool operator==(const TextBlockMasks&, const TextBlockMasks&) = default;
};

/// Which of 16 bytes end a keyword, and which are full stops: one bit each, the lowest for the
/// first.
struct KeywordBlockMasks {
    unsigned ends = 0;
    unsigned fullStops = 0;

    friend bool operator==(const KeywordBlockMasks&, const KeywordBlockMasks&) = default;
};

/// With words.
namespace PortableTextBlocks {

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
    std::uint64_t zeros = 0;
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
        zeros |= zeroBytesOf(word);
    }
    masks.isWide = (all & 0x8080808080808080U) != 0;
    masks.hasNUL = zeros != 0;
    return masks;
}

inline KeywordBlockMasks masksOfKeywordBlock(const char* bytes) {
    KeywordBlockMasks masks;
    for (unsigned at = 0; at < kKeywordBlock; ++at) {
        const bool isEnd = kKeywordEnds.find(bytes[at]) != std::string_view::npos;
        masks.ends |= (isEnd ? 1U : 0U) << at;
        masks.fullStops |= (bytes[at] == '.' ? 1U : 0U) << at;
    }
    return masks;
}

inline unsigned lengthOfSameBytes(const char* bytes, const char* others) {
    unsigned length = 0;
    while (length < kKeywordBlock && bytes[length] == others[length]) {
        ++length;
    }
    return length;
}

}  // namespace PortableTextBlocks

#if defined(__SSE2__)

/// With vector instructions.
namespace VectorTextBlocks {

inline __m128i vectorAt(const char* bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

inline unsigned maskOfBytesEqual(__m128i bytes, __m128i others) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, others)));
}

inline TextBlockMasks masksOfTextBlock(const char* bytes) {
    const __m128i first = vectorAt(bytes);
    const __m128i second = vectorAt(bytes + 16);
    const __m128i third = vectorAt(bytes + 32);
    const __m128i fourth = vectorAt(bytes + 48);
    const auto maskOf = [&](char byte) {
        const __m128i wanted = _mm_set1_epi8(byte);
        return std::uint64_t{maskOfBytesEqual(first, wanted)} |
               std::uint64_t{maskOfBytesEqual(second, wanted)} << 16U |
               std::uint64_t{maskOfBytesEqual(third, wanted)} << 32U |
               std::uint64_t{maskOfBytesEqual(fourth, wanted)} << 48U;
    };
    const __m128i all = _mm_or_si128(_mm_or_si128(first, second), _mm_or_si128(third, fourth));
    const __m128i least = _mm_min_epu8(_mm_min_epu8(first, second), _mm_min_epu8(third, fourth));
    return {maskOf('\n'), maskOf('"'), maskOf('*'), _mm_movemask_epi8(all) != 0,
            maskOfBytesEqual(least, _mm_setzero_si128()) != 0};
}

inline KeywordBlockMasks masksOfKeywordBlock(const char* bytes) {
    const __m128i all = vectorAt(bytes);
    __m128i ends = _mm_setzero_si128();
    for (const char end : kKeywordEnds) {
        ends = _mm_or_si128(ends, _mm_cmpeq_epi8(all, _mm_set1_epi8(end)));
    }
    return {static_cast<unsigned>(_mm_movemask_epi8(ends)),
            maskOfBytesEqual(all, _mm_set1_epi8('.'))};
}

inline unsigned lengthOfSameBytes(const char* bytes, const char* others) {
    return static_cast<unsigned>(
        std::countr_zero(~maskOfBytesEqual(vectorAt(bytes), vectorAt(others))));
}

}  // namespace VectorTextBlocks

namespace TextBlocks = VectorTextBlocks;

#else

namespace TextBlocks = PortableTextBlocks;

#endif

}  // namespace TkPPDUpdating
