#include "sync/TemporaryFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <vector>

namespace TkPPDUpdating {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

/// A copy of the names, since the folder is changed afterwards.
std::vector<std::string> namesIn(int folder, bool (*isWanted)(std::string_view name)) {
    std::vector<std::string> names;
    const int copy = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, CloseFolder> open(copy < 0 ? nullptr : ::fdopendir(copy));
    if (!open && copy >= 0) {
        ::close(copy);
    }
    while (const dirent* entry = open ? ::readdir(open.get()) : nullptr) {
        if (isWanted(entry->d_name)) {
            names.emplace_back(entry->d_name);
        }
    }
    return names;
}

bool mayBeOurs(const struct stat& status, uid_t otherOwner) {
    return S_ISREG(status.st_mode) && status.st_nlink == 1 &&
           (status.st_uid == ::geteuid() || status.st_uid == otherOwner);
}

bool areSame(const struct stat& left, const struct stat& right) {
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

void removeIfAbandoned(int folder, const std::string& name, uid_t otherOwner) {
    constexpr int kHow = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    struct stat named {};
    if (::fstatat(folder, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) != 0 ||
        !mayBeOurs(named, otherOwner)) {
        return;
    }
    FileDescriptor file(::openat(folder, name.c_str(), O_RDONLY | kHow));
    if (!file.isOpen() && errno == EACCES) {
        file = FileDescriptor(::openat(folder, name.c_str(), O_WRONLY | kHow));
    }
    struct stat opened {};
    const bool isAbandoned = file.isOpen() && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 &&
                             ::fstat(file.get(), &opened) == 0 && mayBeOurs(opened, otherOwner) &&
                             ::fstatat(folder, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
                             areSame(named, opened);
    if (isAbandoned) {
        // While it is locked: a writer that has just made it sees that it is gone.
        ::unlinkat(folder, name.c_str(), 0);
    }
}

}  // namespace

FileDescriptor newTemporaryFile(int folder, const std::string& name, mode_t mode) {
    FileDescriptor file(
        ::openat(folder, name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!file.isOpen()) {
        return file;
    }
    // A file system that knows no locks does without: nobody else can lock the file either.
    const bool isLocked = ::flock(file.get(), LOCK_EX | LOCK_NB) == 0;
    const bool isTakenAway = !isLocked && errno == EWOULDBLOCK;
    struct stat status {};
    if (isTakenAway || (::fstat(file.get(), &status) == 0 && status.st_nlink == 0)) {
        errno = EEXIST;
        return FileDescriptor();
    }
    return file;
}

void removeAbandonedFiles(int folder, bool (*isTemporaryName)(std::string_view name),
                          uid_t otherOwner) {
    for (const std::string& name : namesIn(folder, isTemporaryName)) {
        removeIfAbandoned(folder, name, otherOwner);
    }
}

}  // namespace TkPPDUpdating
