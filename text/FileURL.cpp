#include "text/FileURL.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>
#include <utility>

#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kScheme = "file:";
constexpr std::string_view kAuthorityMark = "//";
constexpr std::string_view kLocalHost = "localhost";
constexpr std::string_view kHexadecimalDigits = "0123456789ABCDEF";
/// What may stand in a path as it is, besides letters and digits.
constexpr std::string_view kPathMarks = "/-._~!$&'()*+,;=:@";

/// The byte that "%XX" at the start of the text stands for.
std::optional<char> percentEncodedByte(std::string_view text) {
    const auto high = text.size() >= 3 ? hexadecimalDigitValue(text[1]) : std::nullopt;
    const auto low = high ? hexadecimalDigitValue(text[2]) : std::nullopt;
    return low ? std::optional(static_cast<char>(*high * 16 + *low)) : std::nullopt;
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            decoded += text[at];
            continue;
        }
        const auto byte = percentEncodedByte(text.substr(at));
        if (!byte) {
            return std::nullopt;
        }
        decoded += *byte;
        at += 2;
    }
    return decoded;
}

}  // namespace

std::optional<std::string> pathFromFileURL(std::string_view URL) {
    if (!areEqualIgnoringASCIICase(URL.substr(0, kScheme.size()), kScheme) ||
        URL.find_first_of("?#") != std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view path = URL.substr(kScheme.size());
    if (path.starts_with(kAuthorityMark)) {
        path.remove_prefix(kAuthorityMark.size());
        const std::string_view host = path.substr(0, path.find('/'));
        if (!host.empty() && !areEqualIgnoringASCIICase(host, kLocalHost)) {
            return std::nullopt;
        }
        path.remove_prefix(host.size());
    }
    auto decoded = percentDecoded(path);
    if (!decoded || decoded->empty() || decoded->find('\0') != std::string::npos) {
        return std::nullopt;
    }
    return decoded;
}

std::string fileURLFromPath(std::string_view absolutePath) {
    std::string URL(kScheme);
    URL += kAuthorityMark;
    for (const char character : absolutePath) {
        if (isASCIILetterOrDigit(character) ||
            kPathMarks.find(character) != std::string_view::npos) {
            URL += character;
            continue;
        }
        const auto byte = static_cast<unsigned char>(character);
        URL += '%';
        URL += kHexadecimalDigits[byte / 16U];
        URL += kHexadecimalDigits[byte % 16U];
    }
    return URL;
}

std::string absolutePath(std::string path) {
    if (path.starts_with('/')) {
        return path;
    }
    std::error_code error;
    const auto absolute = std::filesystem::absolute(path, error);
    return error ? path : absolute.lexically_normal().string();
}

std::optional<std::string> absolutePathFromFileURL(std::string_view URL) {
    auto path = pathFromFileURL(URL);
    return path ? std::optional(absolutePath(std::move(*path))) : std::nullopt;
}

std::string_view fileNameWithoutExtension(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1);
    }
    const std::size_t slash = path.rfind('/');
    const std::string_view name = path.size() > 1 ? path.substr(slash + 1) : path;
    const std::size_t stop = name.rfind('.');
    const bool hasExtension = stop != std::string_view::npos && stop > 0;
    return hasExtension ? name.substr(0, stop) : name;
}

}  // namespace TkPPDUpdating
