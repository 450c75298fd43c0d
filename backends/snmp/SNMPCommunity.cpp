#include "backends/snmp/SNMPCommunity.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "core_interface/OrbCoreInterface.h"
#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

/// The line without its comment.
std::string withoutComment(std::string_view line) {
    std::string text;
    for (std::size_t index = 0; index < line.size(); ++index) {
        if (line[index] == '\\' && index + 1 < line.size() && line[index + 1] == '#') {
            text += line[++index];
        } else if (line[index] == '#') {
            break;
        } else {
            text += line[index];
        }
    }
    return text;
}

bool isCommunity(std::string_view directive) {
    return areEqualIgnoringASCIICase(directive, "community");
}

}  // namespace

std::string SNMPCommunity::communityInConfiguration(std::string_view text) {
    while (!text.empty()) {
        const std::string line = withoutComment(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(text.size(), std::min(text.find('\n'), text.size()) + 1));
        const std::string_view directive = trimmed(line);
        const std::size_t nameEnd = std::min(directive.find_first_of(kBlanks), directive.size());
        const std::string_view value = trimmed(directive.substr(nameEnd));
        if (isCommunity(directive.substr(0, nameEnd)) && !value.empty()) {
            return std::string(value);
        }
    }
    return std::string(kUsual);
}

std::string SNMPCommunity::configured(std::string& warning) {
    constexpr std::size_t kLongestFile = 65'536;
    const auto root = OrbCoreInterface::environment()->valueForVariable("CUPS_SERVERROOT");
    const std::string path = (root.value_or("").empty() ? "/etc/cups" : *root) + "/snmp.conf";
    std::error_code error;
    if (!std::filesystem::exists(path, error) && !error) {
        return std::string(kUsual);
    }
    std::ifstream file;
    if (!error && std::filesystem::is_regular_file(path, error)) {
        file.open(path, std::ios::binary);
    }
    std::string text(kLongestFile, '\0');
    if (!file.is_open() ||
        (file.read(text.data(), static_cast<std::streamsize>(text.size())), file.bad())) {
        warning =
            path + " cannot be read, so the community \"" + std::string(kUsual) + "\" was taken";
        return std::string(kUsual);
    }
    text.resize(static_cast<std::size_t>(file.gcount()));
    return communityInConfiguration(text);
}

}  // namespace TkPPDUpdating
