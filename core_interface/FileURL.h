#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// The path that a file URL names on this machine (RFC 8089; RFC 3986), percent-decoded: absolute
/// for `file:///p`, `file://localhost/p` and `file:/p`, and relative for `file:p`. Scheme and host
/// may be in any case. The bytes need not be UTF-8.
///
/// Nothing when it is no file URL of this machine: another scheme or host, no path, a query or a
/// fragment, a "%" without two hexadecimal digits, or a NUL byte, encoded or not.
std::optional<std::string> pathFromFileURL(std::string_view URL);

/// The file URL, `file:///...`, of an absolute path. Everything but "/" and what may stand in a
/// path segment (RFC 3986, section 3.3) is percent-encoded, byte for byte; `pathFromFileURL` gives
/// the path back.
std::string fileURLFromPath(std::string_view absolutePath);

}  // namespace TkPPDUpdating
