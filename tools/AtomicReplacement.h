#pragma once

#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// Puts `bytes` in the place of the file at `path` in one step: whoever reads the file sees the old
/// content or the new, and a run that fails or is interrupted leaves it untouched.
///
/// The new file keeps the mode and the owner of the one that it replaces; a file that was not there
/// gets the mode that the process's umask leaves. A symbolic link stays; the file that it leads to
/// is replaced. A hard link is cut. What is no regular file, a terminal for example, is written to
/// as it is, and so is an open file of this process ("/dev/stdout", whatever is behind it).
///
/// Raises a `Failure` that names the file.
void replaceFileAtomically(const std::string& path, std::string_view bytes);

}  // namespace TkPPDUpdating
