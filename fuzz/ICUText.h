#pragma once

#include <unicode/uchar.h>
#include <unicode/uvernum.h>

#include <array>

/// What ICU, which knows nothing of this project, says of characters. It may know a later Unicode:
/// characters that are newer than our tables are left out of a comparison.
namespace TkPPDUpdating::Fuzzing {

/// Whether the character is in Unicode 15.0, of which our tables are, or in none.
inline bool isOfOurUnicode(char32_t codePoint) {
    std::array<std::uint8_t, U_MAX_VERSION_LENGTH> age{};
    u_charAge(static_cast<UChar32>(codePoint), age.data());
    return age[0] < 15 || (age[0] == 15 && age[1] == 0);
}

/// Simple case folding, for a character of our Unicode; any other is as it is. ICU is asked once
/// for those of Latin, which nearly all are.
inline char32_t foldedByICU(char32_t codePoint) {
    const auto asked = [](char32_t character) {
        return isOfOurUnicode(character)
                   ? static_cast<char32_t>(
                         u_foldCase(static_cast<UChar32>(character), U_FOLD_CASE_DEFAULT))
                   : character;
    };
    static const auto kLatin = [&] {
        std::array<char32_t, 0x250> folded{};
        for (char32_t character = 0; character < folded.size(); ++character) {
            folded[character] = asked(character);
        }
        return folded;
    }();
    return codePoint < kLatin.size() ? kLatin[codePoint] : asked(codePoint);
}

}  // namespace TkPPDUpdating::Fuzzing
