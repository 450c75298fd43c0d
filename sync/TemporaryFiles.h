#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

#include "text/FileDescriptor.h"

namespace TkPPDUpdating {

/// New files that take the place of others once they are whole. A process that is killed leaves its
/// own behind; whoever comes next tells them from those of a living writer by their lock
/// (flock(2)), which lasts as long as the file is open in the process that made it.

/// Makes a file of that name in the folder, locked and open for reading and writing. Not open, with
/// the cause in errno, when it cannot be made: EEXIST when the name is taken, so that another one
/// may do.
FileDescriptor newTemporaryFile(int folder, const std::string& name, mode_t mode);

/// Removes from the folder the files whose writers are gone. Only what is surely of such a run
/// goes: a regular file with one name, for which `isTemporaryName` is true, of this process's user
/// or of `otherOwner`, that nobody has locked. A symbolic link is neither followed nor removed.
/// What cannot be removed stays, which is no error.
void removeAbandonedFiles(int folder, bool (*isTemporaryName)(std::string_view name),
                          uid_t otherOwner);

}  // namespace TkPPDUpdating
