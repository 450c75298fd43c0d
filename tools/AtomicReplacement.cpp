#include "tools/AtomicReplacement.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>

#include "tools/Failure.h"

namespace TkPPDUpdating {

namespace {

constexpr int kMostSymbolicLinks = 40;
constexpr mode_t kModeBits = 07777;
constexpr mode_t kModeOfNewFile = 0666;

/// Raises the system's last error as a failure about the file.
[[noreturn]] void throwSystemError(const std::string& path, const std::string& what) {
    throw Failure(ExitStatus::noResult, path, what + ": " + std::generic_category().message(errno));
}

/// Holds back the signals by which a user ends a program, so that it ends before or after the
/// replacement and leaves no temporary file behind.
class SignalsHeldBack {
  public:
    SignalsHeldBack() {
        sigset_t held;
        sigemptyset(&held);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP, SIGPIPE}) {
            sigaddset(&held, signal);
        }
        pthread_sigmask(SIG_BLOCK, &held, &before_);
    }
    SignalsHeldBack(const SignalsHeldBack&) = delete;
    SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;
    ~SignalsHeldBack() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

  private:
    sigset_t before_{};
};

class FileDescriptor {
  public:
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { (void)close(); }
    int get() const { return descriptor_; }

    /// False when the system reports an error only now.
    bool close() {
        const int descriptor = descriptor_;
        descriptor_ = -1;
        return descriptor < 0 || ::close(descriptor) == 0;
    }

  private:
    int descriptor_;
};

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return true;
}

/// Whether the link is one of the kernel's, as "/dev/stdout" is in the end: it leads to an open
/// file, and the path that it shows need not be that file's any more.
bool leadsToOpenFile(const std::filesystem::path& link) {
    struct statfs fileSystem {};
    return ::statfs(link.parent_path().c_str(), &fileSystem) == 0 &&
           fileSystem.f_type == PROC_SUPER_MAGIC;
}

/// The file that symbolic links at `path` lead to, whether it is there or not; the last link when
/// that leads to an open file.
std::filesystem::path pathBehindLinks(const std::string& path) {
    std::filesystem::path target = path;
    std::error_code error;
    for (int links = 0; std::filesystem::is_symlink(target, error) && !leadsToOpenFile(target);
         ++links) {
        if (links == kMostSymbolicLinks) {
            errno = ELOOP;
            throwSystemError(path, "cannot be written");
        }
        // An absolute link replaces the whole path.
        target = target.parent_path() / std::filesystem::read_symlink(target, error);
    }
    return target;
}

mode_t currentUmask() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return mask;
}

/// A new file beside the target, removed at the end of the scope unless it has taken its place.
class TemporaryFile {
  public:
    TemporaryFile(const std::string& shownPath, const std::filesystem::path& target)
        : shownPath_(shownPath), target_(target) {
        std::filesystem::path directory = target.parent_path();
        directory = directory.empty() ? "." : directory;
        directory_ = directory.string();
        path_ = (directory / ".tkppdupdate-XXXXXX").string();
        file_.emplace(::mkostemp(path_.data(), O_CLOEXEC));
        if (file_->get() < 0) {
            const int error = errno;
            path_.clear();
            errno = error;
            throwSystemError(shownPath_, "no new file can be made in its folder");
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!path_.empty()) {
            ::unlink(path_.c_str());
        }
    }

    void keepOwnerAndMode(const struct stat& replaced) {
        struct stat own {};
        const bool keepsOwner = ::fstat(file_->get(), &own) == 0 &&
                                ((own.st_uid == replaced.st_uid && own.st_gid == replaced.st_gid) ||
                                 ::fchown(file_->get(), replaced.st_uid, replaced.st_gid) == 0);
        if (!keepsOwner) {
            throwSystemError(shownPath_, "its owner cannot be kept");
        }
        setMode(replaced.st_mode & kModeBits);
    }

    void setMode(mode_t mode) {
        if (::fchmod(file_->get(), mode) != 0) {
            throwSystemError(shownPath_, "its mode cannot be kept");
        }
    }

    void write(std::string_view bytes) {
        if (!writeAll(file_->get(), bytes) || ::fsync(file_->get()) != 0 || !file_->close()) {
            throwSystemError(shownPath_, "cannot be written");
        }
    }

    void takePlaceOfTarget() {
        if (::rename(path_.c_str(), target_.c_str()) != 0) {
            throwSystemError(shownPath_, "cannot be replaced");
        }
        path_.clear();
        // So that the new name outlives a power cut too; some file systems cannot, which is no
        // failure of the run.
        const FileDescriptor folder(::open(directory_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        (void)::fsync(folder.get());
    }

  private:
    const std::string& shownPath_;
    const std::filesystem::path& target_;
    std::string directory_;
    std::string path_;
    std::optional<FileDescriptor> file_;
};

/// Writes to an open file of this process where it stands: others write to it before and after.
void writeToOpenFile(const std::string& path, const std::filesystem::path& link,
                     std::string_view bytes) {
    std::error_code error;
    const bool isOfThisProcess =
        std::filesystem::equivalent(link.parent_path(), "/proc/self/fd", error);
    if (!isOfThisProcess) {
        throw Failure(ExitStatus::noResult, path, "cannot be replaced: it is an open file");
    }
    if (!writeAll(std::stoi(link.filename()), bytes)) {
        throwSystemError(path, "cannot be written");
    }
}

void writeToSpecialFile(const std::string& path, std::string_view bytes) {
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    if (file.get() < 0 || !writeAll(file.get(), bytes) || !file.close()) {
        throwSystemError(path, "cannot be written");
    }
}

}  // namespace

void replaceFileAtomically(const std::string& path, std::string_view bytes) {
    const std::filesystem::path target = pathBehindLinks(path);
    std::error_code error;
    if (std::filesystem::is_symlink(target, error)) {
        writeToOpenFile(path, target, bytes);
        return;
    }
    struct stat replaced {};
    const bool exists = ::stat(path.c_str(), &replaced) == 0;
    if (!exists && errno != ENOENT) {
        throwSystemError(path, "cannot be written");
    }
    if (exists && !S_ISREG(replaced.st_mode)) {
        writeToSpecialFile(path, bytes);  // a directory refuses
        return;
    }
    const SignalsHeldBack heldBack;
    TemporaryFile file(path, target);
    if (exists) {
        file.keepOwnerAndMode(replaced);
    } else {
        file.setMode(kModeOfNewFile & ~currentUmask());
    }
    file.write(bytes);
    file.takePlaceOfTarget();
}

}  // namespace TkPPDUpdating
