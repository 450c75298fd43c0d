#pragma once

#include <string>
#include <string_view>

#include "tools/FilePlace.h"

namespace TkPPDUpdating {

/// Writes to what is no regular file, a terminal or a named pipe for example, as it is, and to an
/// open file of this process where it stands. A named pipe that nobody reads from is not waited
/// for.
///
/// Raises a `Failure` about `path`, also for a directory and for an open file of another process.
void writeToSpecialFile(const std::string& path, const FilePlace& place, std::string_view bytes);

}  // namespace TkPPDUpdating
