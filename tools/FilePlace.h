#pragma once

#include <sys/types.h>

#include <string>

#include "text/FileDescriptor.h"

namespace TkPPDUpdating {

/// Where a file is or shall be: its folder, held open, and its name there. What happens to the path
/// afterwards, the folder's own name included, leads nobody astray who works with these two.
struct FilePlace {
    FileDescriptor folder;
    /// No symbolic link at the time of the look-up, but for an open file.
    std::string name;
    /// Whether the name is a link that the kernel makes for an open file, as "/dev/stdout" is in
    /// the end: the path that it shows need not be that file's any more.
    bool isOpenFile = false;
};

/// The place behind a path, all symbolic links followed; nothing need be there.
///
/// A link, of a folder or of the file, that a stranger made is not followed: he could lead root,
/// or any other user, to a file that only they can write. `mayFollowLink` says whose links are.
///
/// Raises a `Failure` for such a link, and std::system_error when a folder on the way cannot be
/// entered or there are too many links.
FilePlace placeOfFile(const std::string& path);

/// Whether a process of `user` follows a link that `linkOwner` made to something that `targetOwner`
/// owns: when root, the user himself or the owner of the target made it.
bool mayFollowLink(uid_t linkOwner, uid_t targetOwner, uid_t user);

}  // namespace TkPPDUpdating
