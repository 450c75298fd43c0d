#include "text/CaseFolding.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>

#include "text/SeededTextHash.h"
#include "text/UTF8.h"

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
#include "text/CaseFoldingTable.inc"
};

char32_t foldingOfASCII(char32_t codePoint) {
    return codePoint >= U'A' && codePoint <= U'Z' ? codePoint + (U'a' - U'A') : codePoint;
}

/// Set in the place of a code point, behind the last one, for a byte that is not valid UTF-8, so
/// that it equals only itself.
constexpr char32_t kInvalidByte = 0x110000U;
/// Set in a character that takes four bytes of a hashed word, so that its first byte is no ASCII.
constexpr char32_t kWide = 0x80000000U;

struct FoldedCharacter {
    char32_t folded;
    std::size_t length;
};

FoldedCharacter foldedWideCharacterAtStart(std::string_view text) {
    const auto character = UTF8CharacterAtStart(text);
    return character ? FoldedCharacter{simpleCaseFolding(character->codePoint), character->length}
                     : FoldedCharacter{kInvalidByte | static_cast<unsigned char>(text[0]), 1};
}

/// Nearly all characters of a PPD are ASCII.
inline FoldedCharacter foldedCharacterAtStart(std::string_view text) {
    const auto byte = static_cast<unsigned char>(text[0]);
    return byte < 0x80 ? FoldedCharacter{foldingOfASCII(byte), 1}
                       : foldedWideCharacterAtStart(text);
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
    // Nearly all is the same ASCII.
    std::size_t at = 0;
    const std::size_t most = std::min(text.size(), prefix.size());
    while (at < most && text[at] == prefix[at] && static_cast<unsigned char>(text[at]) < 0x80) {
        ++at;
    }
    prefix.remove_prefix(at);
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

std::string foldedCase(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const FoldedCharacter character = foldedCharacterAtStart(text);
        if (character.folded >= kInvalidByte) {
            result += text.front();
        } else {
            appendUTF8(character.folded, result);
        }
        text.remove_prefix(character.length);
    }
    return result;
}

void HashIgnoringCase::add(std::string_view text) {
    // Not in the members: they would be stored for each byte.
    std::uint64_t word = word_;
    std::uint64_t count = count_;
    const auto addByte = [&](std::uint64_t byte) {
        word = (word << 8U) | byte;
        if (++count % sizeof word == 0) {
            hash_ = SeededTextHash::carriedOn(hash_, std::exchange(word, 0));
        }
    };
    while (!text.empty()) {
        const FoldedCharacter character = foldedCharacterAtStart(text);
        if (character.folded < 0x80) {
            addByte(character.folded);
        } else {
            for (const unsigned shift : {24U, 16U, 8U, 0U}) {
                addByte(((character.folded | kWide) >> shift) & 0xFFU);
            }
        }
        text.remove_prefix(character.length);
    }
    word_ = word;
    count_ = count;
}

std::uint64_t HashIgnoringCase::value() const {
    return SeededTextHash::carriedOn(SeededTextHash::carriedOn(hash_, word_), count_);
}

std::uint64_t hashIgnoringCase(std::string_view text, std::uint64_t context) {
    HashIgnoringCase hash(context);
    hash.add(text);
    return hash.value();
}

}  // namespace TkPPDUpdating
