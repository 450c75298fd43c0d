#include "backends/modules/FileTrust.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

namespace TkPPDUpdating {

namespace {

/// Whether others than the owner may put something into the file or folder.
bool isOpenToOthers(const struct stat& status) {
    const bool isSticky = S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0;
    const bool isOpenToGroup = (status.st_mode & S_IWGRP) != 0 && status.st_gid != 0;
    return !isSticky && (isOpenToGroup || (status.st_mode & S_IWOTH) != 0);
}

}  // namespace

std::optional<std::string> reasonNotToTrust(const std::filesystem::path& path, uid_t user) {
    for (std::filesystem::path each = path;; each = each.parent_path()) {
        const bool isFile = each == path;
        const std::string what = isFile ? "" : "its folder " + each.string() + " ";
        struct stat status {};
        if (::lstat(each.c_str(), &status) != 0) {
            return what + std::generic_category().message(errno);
        }
        if (isFile && !S_ISREG(status.st_mode)) {
            return "is no regular file";
        }
        if (status.st_uid != 0 && status.st_uid != user) {
            return what + "belongs to user " + std::to_string(status.st_uid) +
                   "; it must belong to root or to you";
        }
        if (isOpenToOthers(status)) {
            return what + "can be written to by others than its owner; \"chmod go-w " +
                   each.string() + "\" mends that";
        }
        if (each == each.parent_path()) {
            return std::nullopt;
        }
    }
}

}  // namespace TkPPDUpdating
