// UTF-8, case folding and white space against ICU. The input is a text; what stands before its
// first line feed is also looked for, case ignored, at the start of what stands behind.
#include <unicode/uchar.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <optional>
#include <string>
#include <vector>

#include "fuzz/FuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/ICUText.h"
#include "text/CaseFolding.h"
#include "text/UTF8.h"
#include "text/UnicodeWhiteSpace.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

struct Character {
    char32_t codePoint = 0;
    std::size_t start = 0;
    std::size_t end = 0;
};

// ICU's macro converts without saying so.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"

/// The characters of a text as ICU reads it, up to what is none; where that is.
std::optional<std::size_t> readByICU(std::string_view text, std::vector<Character>& characters) {
    const auto size = static_cast<std::int32_t>(text.size());
    for (std::int32_t at = 0; at < size;) {
        const std::int32_t start = at;
        UChar32 codePoint = 0;
        U8_NEXT(text.data(), at, size, codePoint);
        if (codePoint < 0) {
            return static_cast<std::size_t>(start);
        }
        characters.push_back({static_cast<char32_t>(codePoint), static_cast<std::size_t>(start),
                              static_cast<std::size_t>(at)});
    }
    return std::nullopt;
}

#pragma GCC diagnostic pop

void requireSameCharacters(std::string_view text, const std::vector<Character>& characters) {
    std::string folded;
    std::size_t units = 0;
    for (const Character& each : characters) {
        const auto read = UTF8CharacterAtStart(text.substr(each.start));
        require(read && read->codePoint == each.codePoint, "the same character");
        require(read->length == each.end - each.start, "of the same length");
        std::string written;
        appendUTF8(each.codePoint, written);
        require(written == text.substr(each.start, read->length), "written as it was read");
        if (isOfOurUnicode(each.codePoint)) {
            require(simpleCaseFolding(each.codePoint) == foldedByICU(each.codePoint),
                    "the same case folding");
        }
        const bool isSpace = u_isUWhiteSpace(static_cast<UChar32>(each.codePoint)) != 0;
        require(isUnicodeWhiteSpace(each.codePoint) == isSpace, "the same white space");
        appendUTF8(simpleCaseFolding(each.codePoint), folded);
        units += U16_LENGTH(static_cast<UChar32>(each.codePoint));
    }
    require(foldedCase(text) == folded, "a text is folded character by character");
    require(foldedCase(folded) == folded, "a folded text stays");
    require(hashIgnoringCase(text, 1) == hashIgnoringCase(folded, 1), "equal texts, equal hashes");
    require(UTF16Length(text) == units, "as many 16-bit units");
}

void requireSamePieces(std::string_view text, const std::vector<Character>& characters) {
    std::vector<std::string_view> pieces;
    std::size_t start = 0;
    for (const Character& each : characters) {
        if (u_isUWhiteSpace(static_cast<UChar32>(each.codePoint))) {
            pieces.push_back(text.substr(start, each.start - start));
            start = each.end;
        }
    }
    pieces.push_back(text.substr(start));
    require(piecesBetweenWhiteSpace(text) == pieces, "the same pieces between white space");
}

/// How many bytes of the text the prefix takes, by ICU.
std::size_t lengthOfPrefix(const std::vector<Character>& text,
                           const std::vector<Character>& prefix) {
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        if (i >= text.size() ||
            foldedByICU(text[i].codePoint) != foldedByICU(prefix[i].codePoint)) {
            return std::string_view::npos;
        }
    }
    return prefix.empty() ? 0 : text[prefix.size() - 1].end;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = textOfInput(data, size);
    std::vector<Character> characters;
    const auto invalid = readByICU(text, characters);
    require(firstInvalidUTF8Byte(text) == invalid, "the same first invalid byte");
    // They never fail; what they make of bytes that are no text is their own affair.
    (void)UTF16Length(text);
    (void)piecesBetweenWhiteSpace(text);
    require(foldedCase(foldedCase(text)) == foldedCase(text), "folded once is folded");
    if (invalid) {
        return 0;
    }
    requireSameCharacters(text, characters);
    requireSamePieces(text, characters);
    std::string_view rest = text;
    const std::string_view prefix = takenLine(rest);
    std::vector<Character> ofPrefix;
    std::vector<Character> ofRest;
    (void)readByICU(prefix, ofPrefix);
    (void)readByICU(rest, ofRest);
    require(lengthOfPrefixIgnoringCase(rest, prefix) == lengthOfPrefix(ofRest, ofPrefix),
            "the same prefix, case ignored");
    return 0;
}
