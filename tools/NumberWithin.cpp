#include "tools/NumberWithin.h"

#include <charconv>
#include <string>
#include <system_error>

namespace TkPPDUpdating {

CLI::Validator numberWithin(std::size_t least, std::size_t most) {
    const auto complaint = [least, most](const std::string& text) -> std::string {
        std::size_t number = 0;
        const char* const end = text.data() + text.size();
        const auto [rest, error] = std::from_chars(text.data(), end, number);
        if (error == std::errc() && rest == end && number >= least && number <= most) {
            return {};
        }
        return "\"" + text + "\" is not a whole number from " + std::to_string(least) + " to " +
               std::to_string(most);
    };
    return {complaint, ""};
}

}  // namespace TkPPDUpdating
