#include "tools/FilePlace.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "tools/Failure.h"

namespace TkPPDUpdating {

namespace {

/// As many as the kernel follows (path_resolution(7)).
constexpr int kMostLinks = 40;
constexpr int kFolder = O_PATH | O_DIRECTORY | O_CLOEXEC;

[[noreturn]] void throwError(int error) {
    throw std::system_error(error, std::generic_category());
}

FileDescriptor openedAt(int folder, const char* name, int flags) {
    FileDescriptor file(::openat(folder, name, flags));
    if (!file.isOpen()) {
        throwError(errno);
    }
    return file;
}

FileDescriptor openedAt(const FileDescriptor& folder, const std::string& name, int flags) {
    return openedAt(folder.get(), name.c_str(), flags);
}

struct Link {
    std::string text;
    uid_t owner;
};

/// The symbolic link of that name; nothing when it is something else or is not there. Its text and
/// its owner are those of one and the same link, whatever takes its place.
std::optional<Link> linkAt(const FileDescriptor& folder, const std::string& name) {
    const FileDescriptor link(
        ::openat(folder.get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (!link.isOpen() && errno == ENOENT) {
        return std::nullopt;
    }
    if (!link.isOpen() || ::fstat(link.get(), &status) != 0) {
        throwError(errno);
    }
    if (!S_ISLNK(status.st_mode)) {
        return std::nullopt;
    }
    std::array<char, PATH_MAX> text{};
    const ssize_t length = ::readlinkat(link.get(), "", text.data(), text.size());
    if (length < 0) {
        throwError(errno);
    }
    return Link{{text.data(), static_cast<std::size_t>(length)}, status.st_uid};
}

/// Whether the links in the folder are the kernel's.
bool isOfKernel(const FileDescriptor& folder) {
    struct statfs fileSystem {};
    return ::fstatfs(folder.get(), &fileSystem) == 0 && fileSystem.f_type == PROC_SUPER_MAGIC;
}

/// One look-up. It does itself what the kernel does with a path, because the kernel can either
/// follow all links or none.
class PathWalk {
  public:
    explicit PathWalk(const std::string& path) : path_(path) {}

    FilePlace place() { return placeFrom(openedAt(AT_FDCWD, ".", kFolder), path_); }

  private:
    FilePlace placeFrom(FileDescriptor folder, std::string_view path) {
        if (path.empty()) {
            throwError(ENOENT);
        }
        if (path.starts_with('/')) {
            folder = openedAt(AT_FDCWD, "/", kFolder);
        }
        std::size_t slash = 0;
        while ((slash = path.find('/')) != std::string_view::npos) {
            if (slash > 0) {
                folder = folderIn(std::move(folder), std::string(path.substr(0, slash)));
            }
            path.remove_prefix(slash + 1);
        }
        return path.empty() ? FilePlace{std::move(folder), "."}
                            : placeIn(std::move(folder), std::string(path));
    }

    FileDescriptor folderIn(FileDescriptor folder, const std::string& name) {
        const auto link = linkAt(folder, name);
        if (!link) {
            return openedAt(folder, name, kFolder | O_NOFOLLOW);
        }
        FileDescriptor target;
        if (isOfKernel(folder)) {
            target = openedAt(folder, name, kFolder);
        } else {
            const FilePlace place = placeBehind(*link, folder);
            target =
                openedAt(place.folder, place.name, kFolder | (place.isOpenFile ? 0 : O_NOFOLLOW));
        }
        struct stat status {};
        if (::fstat(target.get(), &status) != 0) {
            throwError(errno);
        }
        refuseLinkOfStranger(*link, status.st_uid);
        return target;
    }

    FilePlace placeIn(FileDescriptor folder, std::string name) {
        const auto link = linkAt(folder, name);
        if (!link) {
            return {std::move(folder), std::move(name)};
        }
        if (isOfKernel(folder)) {
            return {std::move(folder), std::move(name), true};
        }
        FilePlace target = placeBehind(*link, folder);
        struct stat status {};
        const bool isThere =
            ::fstatat(target.folder.get(), target.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
        // A file that is not there would be the user's.
        refuseLinkOfStranger(*link, isThere ? status.st_uid : ::geteuid());
        return target;
    }

    FilePlace placeBehind(const Link& link, const FileDescriptor& folder) {
        if (++links_ > kMostLinks) {
            throwError(ELOOP);
        }
        return placeFrom(openedAt(folder, ".", kFolder), link.text);
    }

    void refuseLinkOfStranger(const Link& link, uid_t targetOwner) const {
        if (!mayFollowLink(link.owner, targetOwner, ::geteuid())) {
            throw Failure(ExitStatus::noResult, path_,
                          "leads through a symbolic link that belongs to another user than what it "
                          "leads to");
        }
    }

    const std::string& path_;
    int links_ = 0;
};

}  // namespace

FilePlace placeOfFile(const std::string& path) {
    return PathWalk(path).place();
}

bool mayFollowLink(uid_t linkOwner, uid_t targetOwner, uid_t user) {
    return linkOwner == 0 || linkOwner == user || linkOwner == targetOwner;
}

}  // namespace TkPPDUpdating
