#include "backends/schemes/NetworkPlace.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <utility>

#include "backends/schemes/DeviceStatusSchemes.h"
#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

constexpr std::size_t kLongestHost = 255;

bool canStandInName(char character) {
    return isASCIILetterOrDigit(character) || character == '.' || character == '-' ||
           character == '_';
}

bool canStandInIPv6Address(char character) {
    return hexadecimalDigitValue(character) || character == ':' || character == '.';
}

/// What stands between the brackets, with its zone behind "%"; nothing when it is no address.
std::optional<std::string> IPv6HostOf(std::string_view literal) {
    constexpr std::string_view kCUPSPrefix = "v1.";
    const bool isWrittenByCUPS = literal.starts_with(kCUPSPrefix);
    if (isWrittenByCUPS) {
        literal.remove_prefix(kCUPSPrefix.size());
    }
    const std::string_view mark = isWrittenByCUPS ? "+" : "%25";
    const std::size_t end = std::min(literal.find(mark), literal.size());
    const std::string_view address = literal.substr(0, end);
    if (address.find(':') == std::string_view::npos ||
        !std::all_of(address.begin(), address.end(), canStandInIPv6Address)) {
        return std::nullopt;
    }
    if (end == literal.size()) {
        return std::string(address);
    }
    const std::string_view zone = literal.substr(end + mark.size());
    if (zone.empty() || !std::all_of(zone.begin(), zone.end(), canStandInName)) {
        return std::nullopt;
    }
    return std::string(address) + "%" + std::string(zone);
}

/// The host at the beginning of the text, which it is taken from.
std::optional<std::string> takenHost(std::string_view& text) {
    if (text.starts_with('[')) {
        const std::size_t end = text.find(']');
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        const std::string_view literal = text.substr(1, end - 1);
        text.remove_prefix(end + 1);
        return IPv6HostOf(literal);
    }
    const std::string_view name = text.substr(0, text.find(':'));
    text.remove_prefix(name.size());
    if (name.empty() || !std::all_of(name.begin(), name.end(), canStandInName)) {
        return std::nullopt;
    }
    return std::string(name);
}

std::optional<std::uint16_t> portOf(std::string_view text) {
    std::uint16_t port = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), port);
    const bool isNumber = read.ec == std::errc() && read.ptr == text.data() + text.size();
    return isNumber && port != 0 ? std::optional(port) : std::nullopt;
}

}  // namespace

std::string NetworkPlace::hostInURI() const {
    if (!hasIPv6Address()) {
        return host;
    }
    const std::size_t zone = host.find('%');
    return zone == std::string::npos
               ? "[" + host + "]"
               : "[" + host.substr(0, zone) + "%25" + host.substr(zone + 1) + "]";
}

std::optional<NetworkPlace> NetworkPlace::placeOfURI(std::string_view URI) {
    constexpr std::string_view kAuthorityMark = "://";
    auto scheme = DeviceStatusSchemes::schemeOfURI(URI);
    if (!scheme || !URI.substr(scheme->size()).starts_with(kAuthorityMark)) {
        return std::nullopt;
    }
    std::string_view rest = URI.substr(scheme->size() + kAuthorityMark.size());
    NetworkPlace place;
    place.scheme = *std::move(scheme);
    std::string_view authority = rest.substr(0, rest.find_first_of("/?#"));
    rest.remove_prefix(authority.size());
    if (const std::size_t at = authority.rfind('@'); at != std::string_view::npos) {
        place.hasUserInfo = true;
        authority.remove_prefix(at + 1);
    }
    auto host = takenHost(authority);
    if (!host || host->size() > kLongestHost) {
        return std::nullopt;
    }
    place.host = *std::move(host);
    if (!authority.empty()) {
        place.port = authority.front() == ':' ? portOf(authority.substr(1)) : std::nullopt;
        if (!place.port) {
            return std::nullopt;
        }
    }
    place.path = rest.substr(0, rest.find_first_of("?#"));
    place.hasQuery = place.path.size() < rest.size();
    return place;
}

}  // namespace TkPPDUpdating
