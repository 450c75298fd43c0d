#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// Where in the network a device URI leads, as far as all schemes agree on it:
/// "scheme://user@host:port/path?query" (RFC 3986).
struct NetworkPlace {
    /// In lower case, without the colon.
    std::string scheme;
    /// A name or an IPv4 address as written, or an IPv6 address without its brackets, whose zone
    /// stands behind "%" (RFC 4007). Never empty.
    std::string host;
    std::optional<std::uint16_t> port;
    /// Begins with a slash; empty when there is none.
    std::string path;
    bool hasUserInfo = false;
    bool hasQuery = false;

    bool hasIPv6Address() const { return host.find(':') != std::string::npos; }

    /// The host as it stands in a URI: an IPv6 address in brackets, its zone as RFC 6874 writes it.
    std::string hostInURI() const;

    /// Nothing when the URI names no host, or one that cannot be one (only ASCII letters, digits,
    /// ".", "-" and "_" in a name; at most 255 bytes), or a port that is none (0 or above 65535).
    /// A zone may be written as in RFC 6874 ("[fe80::1%25eth0]") or as CUPS writes it
    /// ("[v1.fe80::1+eth0]").
    static std::optional<NetworkPlace> placeOfURI(std::string_view URI);
};

}  // namespace TkPPDUpdating
