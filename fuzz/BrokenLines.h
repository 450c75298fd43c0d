#pragma once

#include <cstddef>
#include <string_view>

namespace TkPPDUpdating::Fuzzing {

/// Whether the words, which should begin a line, stand behind something else in one.
inline bool standsBehindSomething(std::string_view text, std::string_view words) {
    std::size_t place = text.find(words);
    while (place != std::string_view::npos && (place == 0 || text[place - 1] == '\n')) {
        place = text.find(words, place + 1);
    }
    return place != std::string_view::npos;
}

}  // namespace TkPPDUpdating::Fuzzing
