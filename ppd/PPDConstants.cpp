#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {

std::string PPDFormatted(std::string_view format,
                         std::initializer_list<std::string_view> arguments) {
    std::size_t size = format.size();
    for (const std::string_view argument : arguments) {
        size += argument.size();
    }
    std::string text;
    text.reserve(size);
    appendPPDFormatted(format, arguments, text);
    return text;
}

void appendPPDFormatted(std::string_view format, std::initializer_list<std::string_view> arguments,
                        std::string& text) {
    constexpr std::string_view kPlaceholder = "%@";
    const auto* argument = arguments.begin();
    for (std::size_t at = format.find(kPlaceholder); at != std::string_view::npos;
         at = format.find(kPlaceholder)) {
        text += format.substr(0, at);
        if (argument != arguments.end()) {
            text += *argument++;
        }
        format.remove_prefix(at + kPlaceholder.size());
    }
    text += format;
}

}  // namespace TkPPDUpdating
