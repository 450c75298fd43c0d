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

/// The path itself when it is absolute; else that path from the working directory on, in its
/// shortest form ("a/../b" is "b").
std::string absolutePath(std::string path);

/// The same path of a file URL, made absolute.
std::optional<std::string> absolutePathFromFileURL(std::string_view URL);

/// The last component of a path without its extension: what follows the last full stop, unless the
/// name begins with that one. Slashes at the end do not count; the root is its own name. A view
/// into `path`.
std::string_view fileNameWithoutExtension(std::string_view path);

/// The file URL, `file:///...`, of an absolute path. Everything but "/" and what may stand in a
/// path segment (RFC 3986, section 3.3) is percent-encoded, byte for byte; `pathFromFileURL` gives
/// the path back.
std::string fileURLFromPath(std::string_view absolutePath);

}  // namespace TkPPDUpdating
