#pragma once

#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// The unified diff (POSIX: diff -u) that patch(1) turns `before` into `after` with; empty when
/// they are equal. `name` is the file's name in both headers. The texts are compared byte by byte,
/// line by line; a missing last line feed is told in diff's way.
///
/// With `isColoured` it is for a terminal: escape sequences mark the lines, and control characters
/// of the texts are shown instead of sent, so it is nothing to feed to patch. Raises a `Failure`
/// when the texts are too large to be compared.
std::string unifiedDiff(const std::string& name, std::string_view before, std::string_view after,
                        bool isColoured);

}  // namespace TkPPDUpdating
