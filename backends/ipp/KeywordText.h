#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "text/ASCII.h"

namespace TkPPDUpdating {

/// Keywords that printers write in several ways made comparable: ASCII letters in lower case,
/// hyphens, underscores and blanks left out ("inkCartridge" and "ink-cartridge" are the same).
inline std::string comparableKeyword(std::string_view text) {
    std::string comparable;
    for (const char character : text) {
        if (character != '-' && character != '_' && character != ' ') {
            comparable += inASCIILowerCase(character);
        }
    }
    return comparable;
}

/// A list of fields without the name of its attribute, which one maker puts in front of it
/// ("printer-input-tray[0] =type=other;").
inline std::string_view withoutOwnName(std::string_view list, std::string_view attribute) {
    const auto skip = [](std::string_view text, std::string_view characters) {
        text.remove_prefix(std::min(text.size(), text.find_first_not_of(characters)));
        return text;
    };
    if (!list.starts_with(attribute)) {
        return list;
    }
    const std::string_view rest = skip(list.substr(attribute.size()), "[0123456789] ");
    return rest.starts_with('=') ? skip(rest.substr(1), " ") : list;
}

/// The value of one field in a list "key=value;key=value;" (PWG 5100.13: printer-supply,
/// printer-input-tray); empty when the field is missing.
inline std::string_view fieldOfList(std::string_view list, std::string_view key) {
    while (!list.empty()) {
        const std::string_view field = list.substr(0, list.find(';'));
        list.remove_prefix(std::min(list.size(), field.size() + 1));
        const std::size_t equals = field.find('=');
        if (equals != std::string_view::npos && field.substr(0, equals) == key) {
            return field.substr(equals + 1);
        }
    }
    return {};
}

}  // namespace TkPPDUpdating
