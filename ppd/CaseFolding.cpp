#include "ppd/CaseFolding.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "ppd/UTF8.h"

namespace TkPPDUpdating {

namespace {

/// The code points from `first` to `last`, every `step`-th of them, fold to the one `distance`
/// further.
struct FoldingRange {
    char32_t first;
    char32_t last;
    std::uint32_t step;
    std::int32_t distance;
};

constexpr FoldingRange kFoldingRanges[] = {
#include "ppd/CaseFoldingTable.inc"
};

char32_t foldingOfASCII(char32_t codePoint) {
    return codePoint >= U'A' && codePoint <= U'Z' ? codePoint + (U'a' - U'A') : codePoint;
}

/// Set in the place of a code point for a byte that is not valid UTF-8, so that it equals only
/// itself.
constexpr char32_t kInvalidByte = 0x80000000U;

struct FoldedCharacter {
    char32_t folded;
    std::size_t length;
};

FoldedCharacter foldedCharacterAtStart(std::string_view text) {
    const auto byte = static_cast<unsigned char>(text[0]);
    if (byte < 0x80) {
        return {foldingOfASCII(byte), 1};
    }
    const auto character = UTF8CharacterAtStart(text);
    return character ? FoldedCharacter{simpleCaseFolding(character->codePoint), character->length}
                     : FoldedCharacter{kInvalidByte | byte, 1};
}

}  // namespace

char32_t simpleCaseFolding(char32_t codePoint) {
    if (codePoint < 0x80) {
        return foldingOfASCII(codePoint);
    }
    const auto* const range = std::lower_bound(
        std::begin(kFoldingRanges), std::end(kFoldingRanges), codePoint,
        [](const FoldingRange& each, char32_t value) { return each.last < value; });
    if (range == std::end(kFoldingRanges) || codePoint < range->first ||
        (codePoint - range->first) % range->step != 0) {
        return codePoint;
    }
    return static_cast<char32_t>(static_cast<std::int32_t>(codePoint) + range->distance);
}

std::size_t lengthOfPrefixIgnoringCase(std::string_view text, std::string_view prefix) {
    std::size_t at = 0;
    while (!prefix.empty()) {
        if (at == text.size()) {
            return std::string_view::npos;
        }
        const FoldedCharacter character = foldedCharacterAtStart(text.substr(at));
        const FoldedCharacter wanted = foldedCharacterAtStart(prefix);
        if (character.folded != wanted.folded) {
            return std::string_view::npos;
        }
        at += character.length;
        prefix.remove_prefix(wanted.length);
    }
    return at;
}

std::size_t hashIgnoringCase(std::string_view text, std::size_t seed) {
    // FNV-1a, 64 bit, by code point.
    constexpr std::uint64_t kOffsetBasis = 14695981039346656037U;
    constexpr std::uint64_t kPrime = 1099511628211U;
    std::uint64_t hash = (kOffsetBasis ^ seed) * kPrime;
    while (!text.empty()) {
        const FoldedCharacter character = foldedCharacterAtStart(text);
        hash = (hash ^ character.folded) * kPrime;
        text.remove_prefix(character.length);
    }
    return hash;
}

}  // namespace TkPPDUpdating
