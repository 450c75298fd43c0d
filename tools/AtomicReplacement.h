#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

#include "ppd/PPDText.h"
#include "text/FileDescriptor.h"
#include "tools/FilePlace.h"

namespace TkPPDUpdating {

/// Puts `bytes` in the place of the file at `path` in one step: whoever reads the file sees the old
/// content or the new, and a run that fails or is interrupted leaves it untouched.
///
/// The new file has the owner, the permissions, the access list and the extended attributes of the
/// one that it replaces (`keepFileAttributes`), or nothing is written; a file that was not there
/// gets what every new file gets there. A symbolic link stays, and the file that it leads to is
/// replaced, unless a stranger made it (`placeOfFile`). A hard link is cut. What is no regular
/// file, a terminal for example, is written to as it is, and so is an open file of this process
/// ("/dev/stdout", whatever is behind it).
///
/// What runs that were killed have left in the folder goes (`removeAbandonedFiles`).
///
/// Raises a `Failure` that names the file.
void replaceFileAtomically(const std::string& path, std::string_view bytes);

/// Raises the `Failure` of `replaceFileAtomically` for a place where it could write nothing, as far
/// as that can be seen: for a run that asks a printer, or shows what changed, before it writes.
void refusePlaceToWrite(const std::string& path);

/// A file that is read now and replaced later, if it is still the very file that was read.
class FileInPlace {
  public:
    /// Opens the regular file at `path` and reads it as text. It stays open, and so does its
    /// folder. Raises a `Failure` that names the file when it cannot be read, is no regular file or
    /// is not valid UTF-8.
    explicit FileInPlace(std::string path);

    /// What was read; never null.
    const PPDText& text() const { return text_; }

    /// As `replaceFileAtomically`, in the folder in which the file was found, whatever the path
    /// leads to by now. Raises a `Failure` also when the file is not what it was when it was
    /// opened: another one took its place, or somebody changed its content or its attributes
    /// (device, inode, size, time of change).
    void replace(std::string_view bytes) const;

  private:
    std::string path_;
    FilePlace place_;
    FileDescriptor file_;
    struct stat status_ {};
    PPDText text_;
};

}  // namespace TkPPDUpdating
