#include "tools/AtomicReplacement.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <random>
#include <system_error>
#include <utility>

#include "ppd/PPDTextFile.h"
#include "sync/TemporaryFiles.h"
#include "text/FileDescriptor.h"
#include "tools/Failure.h"
#include "tools/FileAttributes.h"
#include "tools/PPDOfUser.h"
#include "tools/SpecialFile.h"

namespace TkPPDUpdating {

namespace {

constexpr int kRead = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
constexpr mode_t kModeOfNewFile = 0666;
constexpr mode_t kModeUntilAttributesAreKept = 0600;
constexpr const char* kNoNewFile = "no new file can be made in its folder";

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

[[noreturn]] void throwChangedMeanwhile(const std::string& path) {
    throw Failure(ExitStatus::noResult, path, "was changed meanwhile");
}

/// The file that is replaced: open, and as fstat(2) found it then.
struct ReplacedFile {
    int descriptor;
    const struct stat& status;
};

bool isInPlace(const ReplacedFile& file, const FilePlace& place) {
    struct stat now {};
    const struct stat& then = file.status;
    return ::fstatat(place.folder.get(), place.name.c_str(), &now, AT_SYMLINK_NOFOLLOW) == 0 &&
           now.st_dev == then.st_dev && now.st_ino == then.st_ino && now.st_size == then.st_size &&
           now.st_ctim.tv_sec == then.st_ctim.tv_sec && now.st_ctim.tv_nsec == then.st_ctim.tv_nsec;
}

constexpr std::string_view kTemporaryName = ".tkppdupdate-";

std::string randomName() {
    std::random_device random;
    return std::string(kTemporaryName) + std::to_string(random()) + "-" + std::to_string(random());
}

bool isRandomName(std::string_view name) {
    return name.starts_with(kTemporaryName) &&
           name.find_first_not_of("0123456789-", kTemporaryName.size()) == std::string_view::npos;
}

/// A new file beside the target, removed at the end of the scope unless it has taken its place.
class TemporaryFile {
  public:
    TemporaryFile(const std::string& shownPath, const FilePlace& place, mode_t mode)
        : shownPath_(shownPath), place_(place) {
        do {
            name_ = randomName();
            file_ = newTemporaryFile(place_.folder.get(), name_, mode);
        } while (!file_.isOpen() && errno == EEXIST);
        if (!file_.isOpen()) {
            throw Failure::ofSystem(shownPath_, kNoNewFile);
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!name_.empty()) {
            ::unlinkat(place_.folder.get(), name_.c_str(), 0);
        }
    }

    void keepAttributes(const ReplacedFile& replaced) {
        keepFileAttributes(shownPath_, replaced.descriptor, replaced.status, file_.get());
    }

    void write(std::string_view bytes) {
        // It stays open, and so locked, until it has taken its place. What closing could tell of,
        // fsync(2) has told.
        if (!writeAll(file_.get(), bytes) || ::fsync(file_.get()) != 0) {
            throw Failure::ofSystem(shownPath_, "cannot be written");
        }
    }

    void takePlaceOfTarget() {
        const int folder = place_.folder.get();
        if (::renameat(folder, name_.c_str(), folder, place_.name.c_str()) != 0) {
            throw Failure::ofSystem(shownPath_, "cannot be replaced");
        }
        name_.clear();
        // So that the new name outlives a power cut too; some file systems cannot, which is no
        // failure of the run.
        const FileDescriptor readable(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        (void)::fsync(readable.get());
    }

  private:
    const std::string& shownPath_;
    const FilePlace& place_;
    std::string name_;
    FileDescriptor file_;
};

/// `replaced` is null for a file that is not there.
void replaceAtPlace(const std::string& path, const FilePlace& place, const ReplacedFile* replaced,
                    std::string_view bytes) {
    const SignalsHeldBack heldBack;
    removeAbandonedFiles(place.folder.get(), isRandomName,
                         replaced ? replaced->status.st_uid : ::geteuid());
    TemporaryFile file(path, place, replaced ? kModeUntilAttributesAreKept : kModeOfNewFile);
    if (replaced) {
        file.keepAttributes(*replaced);
    }
    file.write(bytes);
    // As late as can be. What happens between this look and the next call cannot be seen.
    if (replaced && !isInPlace(*replaced, place)) {
        throwChangedMeanwhile(path);
    }
    file.takePlaceOfTarget();
}

FilePlace placeForWriting(const std::string& path) {
    try {
        return placeOfFile(path);
    } catch (const std::system_error& error) {
        const bool isFolder = error.code() != std::errc::too_many_symbolic_link_levels;
        const bool isMissing = error.code() == std::errc::no_such_file_or_directory;
        throw Failure(ExitStatus::noResult, path,
                      (isFolder ? std::string(kNoNewFile) : "cannot be written") + ": " +
                          error.code().message() + (isMissing ? "; make the folder first" : ""));
    }
}

FilePlace placeForReading(const std::string& path) {
    try {
        return placeOfFile(path);
    } catch (const std::system_error& error) {
        throw Failure(ExitStatus::noResult, path, error.code().message());
    }
}

/// Its attributes are read through the descriptor; a file that may be written but not read has them
/// as well.
FileDescriptor openedForItsAttributes(const std::string& path, const FilePlace& place) {
    const auto opened = [&place](int flags) {
        return FileDescriptor(::openat(place.folder.get(), place.name.c_str(), flags));
    };
    FileDescriptor file = opened(kRead);
    if (!file.isOpen() && errno == EACCES) {
        file = opened(kRead | O_WRONLY);
    }
    if (!file.isOpen()) {
        throw Failure::ofSystem(path, "cannot be written");
    }
    return file;
}

}  // namespace

void replaceFileAtomically(const std::string& path, std::string_view bytes) {
    const FilePlace place = placeForWriting(path);
    struct stat status {};
    const bool exists =
        ::fstatat(place.folder.get(), place.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
    if (!exists && errno != ENOENT) {
        throw Failure::ofSystem(path, "cannot be written");
    }
    if (!exists) {
        replaceAtPlace(path, place, nullptr, bytes);
        return;
    }
    if (!S_ISREG(status.st_mode)) {
        writeToSpecialFile(path, place, bytes);  // a directory refuses
        return;
    }
    const FileDescriptor file = openedForItsAttributes(path, place);
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        throwChangedMeanwhile(path);
    }
    const ReplacedFile replaced{file.get(), status};
    replaceAtPlace(path, place, &replaced, bytes);
}

void refusePlaceToWrite(const std::string& path) {
    const FilePlace place = placeForWriting(path);
    struct stat status {};
    const bool exists =
        ::fstatat(place.folder.get(), place.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
    if (exists && S_ISDIR(status.st_mode)) {
        errno = EISDIR;
        throw Failure::ofSystem(path, "cannot be written");
    }
    const bool isNewFileMade = !exists || (S_ISREG(status.st_mode) && !place.isOpenFile);
    if (isNewFileMade && ::faccessat(place.folder.get(), ".", W_OK | X_OK, AT_EACCESS) != 0) {
        throw Failure::ofSystem(path, kNoNewFile);
    }
}

FileInPlace::FileInPlace(std::string path)
    : path_(std::move(path)), place_(placeForReading(path_)) {
    if (place_.isOpenFile) {
        throw Failure(ExitStatus::noResult, path_, "cannot be replaced: it is an open file");
    }
    file_ = FileDescriptor(::openat(place_.folder.get(), place_.name.c_str(), kRead));
    // Before it is read: a change while it is read is a change meanwhile, too.
    if (!file_.isOpen() || ::fstat(file_.get(), &status_) != 0) {
        throw Failure::ofSystem(path_);
    }
    std::string reason;
    text_ = PPDTextWithContentsOfDescriptor(file_.get(), &reason);
    if (!text_) {
        throwUnreadablePPD(path_, reason);
    }
}

void FileInPlace::replace(std::string_view bytes) const {
    const ReplacedFile replaced{file_.get(), status_};
    replaceAtPlace(path_, place_, &replaced, bytes);
}

}  // namespace TkPPDUpdating
