#include "ppd/PPDTextSafety.h"

#include <array>
#include <cstddef>
#include <cstdio>

#include "text/ASCII.h"
#include "text/FileURL.h"
#include "text/UTF8.h"
#include "text/UnicodeWhiteSpace.h"

namespace TkPPDUpdating {

namespace {

/// PPD specification 4.3, section 3.2: an option keyword has at most 40 characters. A qualifier
/// stands in one behind the two full stops of a "cupsICCProfile".
constexpr std::size_t kLongestOptionKeyword = 40;
constexpr std::size_t kLongestQualifier = kLongestOptionKeyword - 2;

bool canStandInPPDLine(char32_t codePoint) {
    const bool isSeparator = codePoint == 0x2028 || codePoint == 0x2029;
    return !isControlCharacter(codePoint) && !isSeparator && codePoint != U'"';
}

bool isOneOf(char32_t codePoint, std::u32string_view characters) {
    return characters.find(codePoint) != std::u32string_view::npos;
}

bool isOfKeyword(char32_t codePoint) {
    return isASCIILetterOrDigit(codePoint) || isOneOf(codePoint, U"._-+");
}

bool isOfMediaID(char32_t codePoint) {
    constexpr char32_t kLastControl = 0x9F;
    return isOfKeyword(codePoint) || codePoint == U' ' ||
           (codePoint > kLastControl && !isUnicodeWhiteSpace(codePoint));
}

/// Whether the kind has the character anywhere. What it must not have at some place only is looked
/// for apart.
bool isAllowed(PrinterText kind, char32_t codePoint) {
    switch (kind) {
        case PrinterText::plain:
            return true;
        case PrinterText::unquotedValue:
        case PrinterText::profilePath:
            return !isOneOf(codePoint, U"*<>");
        case PrinterText::pageTypeName:
            return !isOneOf(codePoint, U"*<>,");
        case PrinterText::mediaTypeName:
            return !isOneOf(codePoint, U":<>");
        case PrinterText::mediaID:
            return isOfMediaID(codePoint);
        case PrinterText::profileQualifier:
            return isOfKeyword(codePoint);
        case PrinterText::pensCodeName:
            return codePoint > U' ' && codePoint <= U'~' && !isOneOf(codePoint, U"/:");
    }
    return false;
}

std::string reasonWithCharacter(char32_t codePoint, std::size_t at) {
    std::array<char, 16> name{};
    std::snprintf(name.data(), name.size(), "U+%04X", static_cast<unsigned>(codePoint));
    return "has the character " + std::string(name.data()) + " at byte " + std::to_string(at);
}

std::optional<std::string> reasonOfLength(std::string_view text, std::size_t longest) {
    return text.size() > longest
               ? std::optional("is longer than " + std::to_string(longest) + " characters")
               : std::nullopt;
}

std::optional<std::string> reasonOfSpacesAround(std::string_view text) {
    if (text.starts_with(' ')) {
        return "begins with a space";
    }
    return text.ends_with(' ') ? std::optional<std::string>("ends with a space") : std::nullopt;
}

std::optional<std::string> reasonOfColonInFileName(std::string_view path) {
    const std::string_view name = fileNameWithoutExtension(path);
    const std::size_t colon = name.find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    return reasonWithCharacter(U':', static_cast<std::size_t>(name.data() - path.data()) + colon);
}

/// What is refused although every character of it is allowed.
std::optional<std::string> reasonOfWhole(PrinterText kind, std::string_view text) {
    switch (kind) {
        case PrinterText::mediaID:
            return reasonOfSpacesAround(text);
        case PrinterText::profileQualifier:
            return reasonOfLength(text, kLongestQualifier);
        case PrinterText::pensCodeName:
            return reasonOfLength(text, kLongestOptionKeyword);
        case PrinterText::profilePath:
            return reasonOfColonInFileName(text);
        default:
            return std::nullopt;
    }
}

std::optional<std::string> reasonOfCharacters(PrinterText kind, std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const auto character = UTF8CharacterAtStart(text.substr(at));
        if (!character) {
            return "is not valid UTF-8 at byte " + std::to_string(at);
        }
        if (!canStandInPPDLine(character->codePoint) || !isAllowed(kind, character->codePoint)) {
            return reasonWithCharacter(character->codePoint, at);
        }
        at += character->length;
    }
    return std::nullopt;
}

/// What goes with a refused text, told behind the reason; empty when it is the text alone.
std::string consequence(PrinterText kind) {
    switch (kind) {
        case PrinterText::pageTypeName:
            return ", so the whole list is left out";
        case PrinterText::mediaTypeName:
        case PrinterText::mediaID:
            return ", so its media type is left out";
        case PrinterText::profileQualifier:
        case PrinterText::profilePath:
            return ", so the profile is left out";
        default:
            return {};
    }
}

}  // namespace

std::optional<std::string> reasonPrinterTextIsRefused(PrinterText kind, std::string_view text) {
    auto reason = reasonOfCharacters(kind, text);
    if (!reason) {
        reason = reasonOfWhole(kind, text);
    }
    return reason ? std::optional(*reason + consequence(kind)) : std::nullopt;
}

std::optional<std::string> reasonTextCannotStandInPPDLine(std::string_view text) {
    return reasonPrinterTextIsRefused(PrinterText::plain, text);
}

}  // namespace TkPPDUpdating
