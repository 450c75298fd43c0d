#include "sync/PPDLocalizedTexts.h"

#include <algorithm>
#include <cstddef>

#include "text/ASCII.h"
#include "text/UTF8.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kTranslation = "Translation";
const std::vector<std::string> kEnglish = {"en"};

/// The bytes that hexadecimal digits stand for, with blanks between them; nothing when they are
/// something else.
std::optional<std::string> bytesOfDigits(std::string_view digits) {
    std::string bytes;
    std::optional<unsigned> high;
    for (const char character : digits) {
        if (character == ' ' || character == '\t') {
            continue;
        }
        const auto value = hexadecimalDigitValue(character);
        if (!value) {
            return std::nullopt;
        }
        if (high) {
            bytes += static_cast<char>(*high << 4U | *value);
        }
        high = high ? std::nullopt : value;
    }
    return high ? std::nullopt : std::optional(bytes);
}

std::string UTF8OfLatin1(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        const auto character = UTF8CharacterAtStart(bytes);
        const std::size_t length = character ? character->length : 1;
        appendUTF8(character ? character->codePoint : static_cast<unsigned char>(bytes.front()),
                   text);
        bytes.remove_prefix(length);
    }
    return text;
}

/// The text of the first of the attributes, decoded; nothing when it has none.
std::optional<std::string> firstText(const std::vector<const OrbPPDAttribute*>& attributes) {
    const auto text = attributes.empty() ? std::nullopt : attributes.front()->text();
    return text && !text->empty() ? std::optional(decodedPPDText(*text)) : std::nullopt;
}

}  // namespace

std::vector<std::string> userLanguages(const OrbEnvironment& environment) {
    std::string locale;
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        locale = environment.valueForVariable(variable).value_or("");
        if (!locale.empty()) {
            break;
        }
    }
    // language[_TERRITORY][.codeset][@modifier]
    locale.resize(std::min(locale.find_first_of(".@"), locale.size()));
    if (locale.empty() || locale == "C" || locale == "POSIX") {
        return kEnglish;
    }
    const std::size_t territory = locale.find('_');
    if (territory == std::string::npos) {
        return {locale};
    }
    return {locale, locale.substr(0, territory)};
}

std::string decodedPPDText(std::string_view text) {
    std::string decoded;
    for (std::size_t open = text.find('<'); open != std::string_view::npos; open = text.find('<')) {
        const std::size_t close = text.find_first_of("<>", open + 1);
        const bool isClosed = close != std::string_view::npos && text[close] == '>';
        const auto bytes =
            isClosed ? bytesOfDigits(text.substr(open + 1, close - open - 1)) : std::nullopt;
        const std::size_t end = bytes ? close + 1 : open + 1;
        decoded += bytes ? text.substr(0, open) : text.substr(0, end);
        decoded += bytes.value_or("");
        text.remove_prefix(end);
    }
    decoded += text;
    return firstInvalidUTF8Byte(decoded) ? UTF8OfLatin1(decoded) : decoded;
}

std::optional<std::string> PPDLocalizedTexts::textInLanguages(
    std::string_view keyword, std::string_view spec,
    const std::vector<std::string>& languages) const {
    for (const std::string& language : languages) {
        auto text =
            firstText(PPD_.attributesForName_spec(language + "." + std::string(keyword), spec));
        if (text) {
            return text;
        }
    }
    return std::nullopt;
}

std::optional<std::string> PPDLocalizedTexts::translationOf(std::string_view keyword) const {
    return textInLanguages(kTranslation, keyword, languages_);
}

std::string PPDLocalizedTexts::textOfOption(std::string_view option) const {
    auto text = translationOf(option);
    for (const std::string_view opening : {"OpenUI", "JCLOpenUI"}) {
        if (!text) {
            text = firstText(PPD_.attributesForName_spec(opening, "*" + std::string(option)));
        }
    }
    return text.value_or(std::string(option));
}

std::string PPDLocalizedTexts::textOfChoice(std::string_view option,
                                            std::string_view choice) const {
    auto text = textInLanguages(option, choice, languages_);
    if (!text) {
        text = firstText(PPD_.attributesForName_spec(option, choice));
    }
    // The updaters write a text that is not plain ASCII into translation lines only.
    if (!text) {
        text = textInLanguages(option, choice, kEnglish);
    }
    return text.value_or(std::string(choice));
}

}  // namespace TkPPDUpdating
