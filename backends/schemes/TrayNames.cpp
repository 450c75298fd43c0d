#include "backends/schemes/TrayNames.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

/// The words of a name in lower case (ASCII): runs of letters, digits and what is not ASCII.
std::vector<std::string> wordsOf(std::string_view name) {
    std::vector<std::string> words(1);
    for (const char character : name) {
        const bool isWordCharacter =
            isASCIILetterOrDigit(character) || static_cast<unsigned char>(character) >= 0x80;
        if (isWordCharacter) {
            words.back() += inASCIILowerCase(character);
        } else if (!words.back().empty()) {
            words.emplace_back();
        }
    }
    if (words.back().empty()) {
        words.pop_back();
    }
    return words;
}

}  // namespace

bool isNameOfNoTray(std::string_view name) {
    constexpr std::array<std::string_view, 7> kNoTrays = {
        "manual", "bypass", "mp", "mpt", "mpf", "multipurpose", "envelope"};
    constexpr std::array<std::string_view, 2> kAutomaticChoices = {"auto", "automatic"};
    const auto words = wordsOf(name);
    for (std::size_t index = 0; index < words.size(); ++index) {
        // "by pass" and "multi purpose" are two words for one.
        const std::string pair = index + 1 < words.size() ? words[index] + words[index + 1] : "";
        const auto isSaid = [&](std::string_view word) {
            return words[index] == word || pair == word;
        };
        if (std::any_of(kNoTrays.begin(), kNoTrays.end(), isSaid)) {
            return true;
        }
    }
    return words.size() == 1 && std::find(kAutomaticChoices.begin(), kAutomaticChoices.end(),
                                          words.front()) != kAutomaticChoices.end();
}

}  // namespace TkPPDUpdating
