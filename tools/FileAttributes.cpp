#include "tools/FileAttributes.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <string_view>
#include <vector>

#include "tools/Failure.h"

namespace TkPPDUpdating {

namespace {

constexpr mode_t kPermissions = 0777;

/// The kernel's form of an access list (acl(5)). It is copied as it is: who takes it apart needs a
/// library, who copies it does not.
constexpr const char* kAccessList = "system.posix_acl_access";

constexpr std::array<std::string_view, 3> kNotKept = {"security.capability", "security.evm",
                                                      "security.ima"};

/// Asks `get(buffer, size)` for bytes whose number may grow from one call to the next. Nothing when
/// the file has none of it or the file system knows no such thing.
template <typename Get>
std::optional<std::string> bytesOf(const std::string& path, const std::string& what,
                                   const Get& get) {
    std::string bytes;
    for (;;) {
        const ssize_t size = get(nullptr, 0);
        bytes.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        const ssize_t length = size > 0 ? get(bytes.data(), bytes.size()) : size;
        if (length >= 0) {
            bytes.resize(static_cast<std::size_t>(length));
            return bytes;
        }
        if (errno == ENODATA || errno == ENOTSUP || errno == ENOSYS) {
            return std::nullopt;
        }
        const bool hasGrown = size > 0 && errno == ERANGE;
        if (!hasGrown) {
            throw Failure::ofSystem(path, what + " cannot be read");
        }
    }
}

class ExtendedAttributes {
  public:
    ExtendedAttributes(const std::string& path, int from, int to)
        : path_(path), from_(from), to_(to) {}

    void keep() const {
        for (const std::string& name : names()) {
            keepAttribute(name, "its extended attribute \"" + name + "\"");
        }
        // After the others: it may take away the permission to set them.
        keepAttribute(kAccessList, "its access list");
    }

  private:
    std::vector<std::string> names() const {
        const auto list = bytesOf(
            path_, "the list of its extended attributes",
            [this](char* buffer, std::size_t size) { return ::flistxattr(from_, buffer, size); });
        std::vector<std::string> names;
        for (std::string_view rest = list ? std::string_view(*list) : ""; !rest.empty();) {
            const std::string_view name = rest.substr(0, rest.find('\0'));
            rest.remove_prefix(std::min(rest.size(), name.size() + 1));
            if (name != kAccessList &&
                std::find(kNotKept.begin(), kNotKept.end(), name) == kNotKept.end()) {
                names.emplace_back(name);
            }
        }
        return names;
    }

    std::optional<std::string> value(int file, const std::string& name,
                                     const std::string& shownName) const {
        return bytesOf(path_, shownName, [&](char* buffer, std::size_t size) {
            return ::fgetxattr(file, name.c_str(), buffer, size);
        });
    }

    void keepAttribute(const std::string& name, const std::string& shownName) const {
        const auto wanted = value(from_, name, shownName);
        // One that it has by itself, as a label of the folder, need not be set: only few may.
        if (wanted == value(to_, name, shownName)) {
            return;
        }
        const int result = wanted
                               ? ::fsetxattr(to_, name.c_str(), wanted->data(), wanted->size(), 0)
                               : ::fremovexattr(to_, name.c_str());
        if (result != 0) {
            throw Failure::ofSystem(path_, shownName + " cannot be kept");
        }
    }

    const std::string& path_;
    int from_;
    int to_;
};

void keepOwner(const std::string& path, const struct stat& status, int to) {
    struct stat own {};
    const bool isKept =
        ::fstat(to, &own) == 0 && ((own.st_uid == status.st_uid && own.st_gid == status.st_gid) ||
                                   ::fchown(to, status.st_uid, status.st_gid) == 0);
    if (!isKept) {
        throw Failure::ofSystem(path, "its owner cannot be kept");
    }
}

}  // namespace

void keepFileAttributes(const std::string& path, int from, const struct stat& status, int to) {
    keepOwner(path, status, to);
    ExtendedAttributes(path, from, to).keep();
    if (::fchmod(to, status.st_mode & kPermissions) != 0) {
        throw Failure::ofSystem(path, "its mode cannot be kept");
    }
}

}  // namespace TkPPDUpdating
