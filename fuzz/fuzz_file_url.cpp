// File URLs: any text is read as its rules say word by word, and any path comes back from its URL.
#include <filesystem>
#include <optional>
#include <regex>
#include <string>

#include "fuzz/FuzzTarget.h"
#include "text/FileURL.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

int digitValue(char digit) {
    static const std::string kDigits = "0123456789abcdef0123456789ABCDEF";
    const std::size_t place = kDigits.find(digit);
    return place == std::string::npos ? -1 : static_cast<int>(place % 16);
}

/// RFC 8089 and RFC 3986, section 2.1, letter by letter.
std::optional<std::string> pathByRules(const std::string& URL) {
    static const std::regex kForm("file:(//(localhost)?(?=/|$))?([^]*)", std::regex::icase);
    std::smatch parts;
    if (!std::regex_match(URL, parts, kForm) || URL.find_first_of("?#") != std::string::npos) {
        return std::nullopt;
    }
    const std::string encoded = parts[3];
    if (!parts[1].matched && encoded.starts_with("//")) {
        return std::nullopt;  // Another host.
    }
    std::string path;
    for (std::size_t at = 0; at < encoded.size(); ++at) {
        char byte = encoded[at];
        if (byte == '%') {
            const bool hasDigits = at + 2 < encoded.size() && digitValue(encoded[at + 1]) >= 0 &&
                                   digitValue(encoded[at + 2]) >= 0;
            if (!hasDigits) {
                return std::nullopt;
            }
            byte =
                static_cast<char>(digitValue(encoded[at + 1]) * 16 + digitValue(encoded[at + 2]));
            at += 2;
        }
        path += byte;
    }
    const bool isPath = !path.empty() && path.find('\0') == std::string::npos;
    return isPath ? std::optional(path) : std::nullopt;
}

void requirePathComesBack(const std::string& path) {
    const std::string URL = fileURLFromPath(path);
    require(URL.starts_with("file:///"), "a file URL without a host");
    for (const char character : URL) {
        require(character > ' ' && character <= '~', "in printable ASCII");
    }
    require(URL.find_first_of("?#\"<>\\^`{|}") == std::string::npos, "of what a path may have");
    require(pathFromFileURL(URL) == path, "the path comes back");
    require(absolutePath(path) == path, "an absolute path stays");
}

void requireFileName(const std::string& path) {
    namespace fs = std::filesystem;
    const std::string name(fileNameWithoutExtension(path));
    require(path.find(name) != std::string::npos, "the name is a part of the path");
    std::string plain = path;
    while (plain.size() > 1 && plain.ends_with('/')) {
        plain.pop_back();
    }
    const std::string last = fs::path(plain).filename();
    // Of these the standard library has an opinion of its own.
    const bool isOdd = last.empty() || last == "." || last == "..";
    require(isOdd || name == fs::path(last).stem().string(), "the name without extension");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kLongestURL = 2000;
    const std::string URL(textOfInput(data, size).substr(0, kLongestURL));
    const auto path = pathFromFileURL(URL);
    require(path == pathByRules(URL), "the path that the rules give");
    if (path) {
        const auto absolute = absolutePathFromFileURL(URL);
        require(absolute && absolute->starts_with('/'), "an absolute path");
        require(path->starts_with('/') || absolute->find("/./") == std::string::npos,
                "in its shortest form");
        requirePathComesBack(*absolute);
        requireFileName(*path);
    }
    if (!URL.empty() && URL.find('\0') == std::string::npos) {
        requirePathComesBack("/" + URL);
        requireFileName(URL);
    }
    return 0;
}
