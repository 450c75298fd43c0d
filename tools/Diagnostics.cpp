#include "tools/Diagnostics.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "text/ASCII.h"
#include "text/FileDescriptor.h"
#include "text/UTF8.h"
#include "tools/Journal.h"

namespace TkPPDUpdating {

namespace {

void appendEscaped(std::string& printable, unsigned char byte) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    printable += "\\x";
    printable += kDigits[byte >> 4U];
    printable += kDigits[byte & 0xFU];
}

/// Unicode Standard Annex 9: embeddings, overrides and isolates, which make the rest of a line
/// appear in another order.
bool changesDirection(char32_t codePoint) {
    return (codePoint >= 0x202A && codePoint <= 0x202E) ||
           (codePoint >= 0x2066 && codePoint <= 0x2069);
}

bool disturbsALine(char32_t codePoint) {
    return isControlCharacter(codePoint) || codePoint == 0x2028 || codePoint == 0x2029 ||
           changesDirection(codePoint);
}

/// Whether a text that should be "HOST:PORT" may be the begin of "USER:PASSWORD".
bool mayBeginUserInfo(std::string_view authority) {
    const std::size_t colon = authority.rfind(':');
    return !authority.ends_with(']') && colon != std::string_view::npos &&
           authority.find_first_not_of("0123456789", colon + 1) != std::string_view::npos;
}

bool& progressIsShown() {
    static bool isShown = false;
    return isShown;
}

void writeLine(Journal::Priority priority, std::string_view place, std::string_view mark,
               std::string_view reason) {
    std::string line = Journal::isBehind(STDERR_FILENO) ? Journal::prefix(priority) : "";
    line += "tkppdupdate: ";
    if (!place.empty()) {
        line += Diagnostics::printable(place) + ": ";
    }
    line += mark;
    line += Diagnostics::printable(reason) + "\n";
    Diagnostics::clearProgress();
    // One call, so that lines of parallel runs do not mix. Nobody is left to tell of a failure.
    (void)std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

void Diagnostics::error(std::string_view place, std::string_view reason) {
    writeLine(Journal::Priority::error, place, "", reason);
}

void Diagnostics::outOfMemory() noexcept {
    (void)writeAll(STDERR_FILENO, "tkppdupdate: there is not enough memory\n");
}

void Diagnostics::warning(std::string_view place, std::string_view reason) {
    writeLine(Journal::Priority::warning, place, "warning: ", reason);
}

void Diagnostics::note(std::string_view place, std::string_view text) {
    writeLine(Journal::Priority::information, place, "", text);
}

void Diagnostics::showProgress(std::string_view text) {
    if (::isatty(STDERR_FILENO) != 1) {
        return;
    }
    clearProgress();
    const std::string line = printable(text);
    (void)std::fwrite(line.data(), 1, line.size(), stderr);
    progressIsShown() = true;
}

void Diagnostics::clearProgress() {
    if (progressIsShown()) {
        (void)std::fputs("\r\033[K", stderr);
        progressIsShown() = false;
    }
}

std::string Diagnostics::printable(std::string_view text) {
    std::string printable;
    printable.reserve(text.size());
    while (!text.empty()) {
        const auto character = UTF8CharacterAtStart(text);
        const std::string_view bytes = text.substr(0, character ? character->length : 1);
        if (character && !disturbsALine(character->codePoint)) {
            printable += bytes;
        } else {
            for (const char byte : bytes) {
                appendEscaped(printable, static_cast<unsigned char>(byte));
            }
        }
        text.remove_prefix(bytes.size());
    }
    return printable;
}

std::string Diagnostics::withoutUserInfo(std::string_view deviceURI) {
    std::string shown(deviceURI);
    const std::size_t scheme = shown.find(':');
    if (scheme == std::string::npos || shown.starts_with("file:")) {
        return shown;
    }
    const bool hasAuthority = shown.compare(scheme, 3, "://") == 0;
    const std::size_t start = scheme + (hasAuthority ? 3 : 1);
    const std::size_t end = std::min(shown.find_first_of("/?#", start), shown.size());
    const std::string_view authority = std::string_view(shown).substr(start, end - start);
    std::size_t at = authority.rfind('@');
    if (at == std::string_view::npos && mayBeginUserInfo(authority)) {
        // A slash in a password ends the authority too early: rather too much is hidden.
        at = std::string_view(shown).substr(start).rfind('@');
    }
    if (at != std::string_view::npos) {
        shown.erase(start, at + 1);
    }
    return shown;
}

std::string Diagnostics::nameOfPlace(const std::string& name) {
    return name.empty() ? "\"\"" : name;
}

std::string Diagnostics::nameOfDevice(std::string_view deviceURI) {
    return "the device \"" + withoutUserInfo(deviceURI) + "\"";
}

}  // namespace TkPPDUpdating
