#pragma once

#include <string>
#include <string_view>

#include "tools/DiffProgram.h"

namespace TkPPDUpdating {

/// Who a diff is for.
enum class DiffStyle {
    /// patch(1) or another program: the bytes of the texts as they are.
    forPrograms,
    /// A person at a terminal: control characters of the texts are shown instead of sent.
    forTerminal,
    /// The same, with the lines coloured by escape sequences.
    colouredForTerminal,
};

/// The style that suits what is behind standard output.
DiffStyle diffStyleForStandardOutput();

/// The unified diff (POSIX: diff -u) that patch(1) turns `before` into `after` with; empty when
/// they are equal. `name` is the file's name in both headers. The texts are compared byte by byte,
/// line by line; a missing last line feed is told in diff's way.
///
/// Only the style for programs is something to feed to patch. Raises a `Failure` when `diff` does.
std::string unifiedDiff(const std::string& name, std::string_view before, std::string_view after,
                        DiffStyle style, const DiffProgram& diff = DiffProgram());

}  // namespace TkPPDUpdating
