#include "tools/SpecialFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <string>

#include "text/FileDescriptor.h"
#include "tools/Failure.h"

namespace TkPPDUpdating {

namespace {

/// Others write to it before and after, through the same descriptor: it cannot be opened anew.
void writeToOpenFile(const std::string& path, const FilePlace& place, std::string_view bytes) {
    struct stat folder {};
    struct stat own {};
    const bool isOfThisProcess = ::fstat(place.folder.get(), &folder) == 0 &&
                                 ::stat("/proc/self/fd", &own) == 0 &&
                                 folder.st_dev == own.st_dev && folder.st_ino == own.st_ino;
    if (!isOfThisProcess) {
        throw Failure(ExitStatus::noResult, path, "cannot be replaced: it is an open file");
    }
    if (!writeAll(std::stoi(place.name), bytes)) {
        throw Failure::ofSystem(path, "cannot be written");
    }
}

bool isNamedPipe(const FilePlace& place) {
    struct stat status {};
    return ::fstatat(place.folder.get(), place.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISFIFO(status.st_mode);
}

/// Opened without waiting for a reader, and looked at afterwards: what is open is what is written
/// to, whatever has that name by now.
FileDescriptor openedSpecialFile(const std::string& path, const FilePlace& place) {
    FileDescriptor file(::openat(place.folder.get(), place.name.c_str(),
                                 O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!file.isOpen() && errno == ENXIO && isNamedPipe(place)) {
        throw Failure(ExitStatus::noResult, path,
                      "cannot be written: nobody reads from this named pipe");
    }
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
        throw Failure::ofSystem(path, "cannot be written");
    }
    if (S_ISREG(status.st_mode)) {
        throw Failure(ExitStatus::noResult, path, "was changed meanwhile");
    }
    return file;
}

}  // namespace

void writeToSpecialFile(const std::string& path, const FilePlace& place, std::string_view bytes) {
    if (place.isOpenFile) {
        writeToOpenFile(path, place, bytes);
        return;
    }
    FileDescriptor file = openedSpecialFile(path, place);
    const int flags = ::fcntl(file.get(), F_GETFL);
    if (flags < 0 || ::fcntl(file.get(), F_SETFL, flags & ~O_NONBLOCK) != 0 ||
        !writeAll(file.get(), bytes) || !file.close()) {
        throw Failure::ofSystem(path, "cannot be written");
    }
}

}  // namespace TkPPDUpdating
