#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/FuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "text/ASCII.h"
#include "text/UTF8.h"

/// What the targets have in common that talk with a server of their own. Whatever an input says,
/// nothing leaves this machine.
namespace TkPPDUpdating::Fuzzing {

/// The bytes that a text stands for: "\x0A" is a byte, and a backslash at the end of a line takes
/// the end of the line with it, also where it is the last.
inline std::string bytesOfText(std::string_view text) {
    constexpr std::size_t kEscapeLength = 4;
    std::string bytes;
    while (!text.empty()) {
        const std::string_view escape = text.substr(0, kEscapeLength);
        const auto high = escape.size() == kEscapeLength && escape.starts_with("\\x")
                              ? hexadecimalDigitValue(escape[2])
                              : std::nullopt;
        const auto low = high ? hexadecimalDigitValue(escape[3]) : std::nullopt;
        if (low) {
            bytes += static_cast<char>(*high * 16 + *low);
            text.remove_prefix(kEscapeLength);
        } else if (text.starts_with("\\\n") || text == "\\") {
            text.remove_prefix(std::min<std::size_t>(text.size(), 2));
        } else {
            bytes += text.front();
            text.remove_prefix(1);
        }
    }
    return bytes;
}

inline std::string withReplaced(std::string text, std::string_view word, std::string_view other) {
    for (std::size_t at = text.find(word); at != std::string::npos;
         at = text.find(word, at + other.size())) {
        text.replace(at, word.size(), other);
    }
    return text;
}

/// A place as inputs name it, with "PORT" for the port of the server and "NOBODY" for a name that
/// no name server is asked for: a label of 64 letters, one more than RFC 1035 allows.
inline std::string placeOfText(std::string_view text, int port) {
    constexpr std::size_t kTooLongLabel = 64;
    return withReplaced(withReplaced(std::string(text), "PORT", std::to_string(port)), "NOBODY",
                        std::string(kTooLongLabel, 'a'));
}

/// The places that are talked with, as inputs name them. Nobody listens at port 1.
inline constexpr auto kPlacesOfThisMachine = std::to_array<std::string_view>(
    {"127.0.0.1:PORT", "localhost:PORT", "[::1]:PORT", "127.0.0.1:1", "NOBODY:PORT"});

/// Whether a URI, as inputs write it, leads to one of those places, whoever takes it apart.
inline bool leadsToThisMachine(std::string_view URI) {
    const auto canStandInUserInfo = [](char character) {
        return isASCIILetterOrDigit(character) || character == ':' || character == '%';
    };
    takenUpTo(URI, "://");
    std::string_view place = URI.substr(0, URI.find_first_of("/?#"));
    if (const std::size_t at = place.find('@'); at != std::string_view::npos) {
        if (!std::all_of(place.begin(), place.begin() + static_cast<std::ptrdiff_t>(at),
                         canStandInUserInfo)) {
            return false;
        }
        place.remove_prefix(at + 1);
    }
    return std::ranges::find(kPlacesOfThisMachine, place) != kPlacesOfThisMachine.end();
}

/// Ends the process unless the text can be told as the reason for something.
inline void requireReason(const std::string& reason) {
    const bool isReason = !reason.empty() && !firstInvalidUTF8Byte(reason) &&
                          reason.find_first_of(std::string_view("\0\r\n", 3)) == std::string::npos;
    if (!isReason) {
        (void)std::fprintf(stderr, "  \"%s\"\n", reason.c_str());
    }
    require(isReason, "a reason is one line of UTF-8");
}

}  // namespace TkPPDUpdating::Fuzzing
