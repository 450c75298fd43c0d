#include "sync/QueueBackups.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <ctime>
#include <string_view>
#include <system_error>
#include <utility>

#include "ppd/PPDTextFile.h"
#include "sync/TemporaryFiles.h"

namespace TkPPDUpdating {

namespace {

std::string systemError() {
    return std::generic_category().message(errno);
}

/// Why nobody can be sure of what is in the folder; empty when its owner can.
std::string objectionToFolder(const struct stat& status) {
    if (status.st_uid != 0 && status.st_uid != ::geteuid()) {
        return "belongs to another user, who could change what is kept there";
    }
    return (status.st_mode & S_IWOTH) != 0
               ? "everybody may write there, and could change what is kept there"
               : "";
}

std::string lastNameOf(const std::string& queueName) {
    return queueName + ".ppd";
}

/// While another one takes its place.
std::string formerNameOf(const std::string& queueName) {
    return "." + queueName + ".ppd.former";
}

/// What `Entry::writeFile` makes: ".QUEUE.ppd.PROCESS-COUNT".
bool isTemporaryName(std::string_view name) {
    constexpr std::string_view kMiddle = ".ppd.";
    const std::size_t middle = name.rfind(kMiddle);
    return name.starts_with('.') && middle != std::string_view::npos && middle > 1 &&
           name.find_first_not_of("0123456789-", middle + kMiddle.size()) == std::string_view::npos;
}

}  // namespace

std::unique_ptr<QueueBackups> QueueBackups::open(const std::string& path, bool keepsAll,
                                                 std::string& reason) {
    constexpr mode_t kForOwner = 0700;
    if (::mkdir(path.c_str(), kForOwner) != 0 && errno != EEXIST) {
        reason = "cannot be made: " + systemError();
        return nullptr;
    }
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the pointer owns it.
    auto backups = openExisting(path, reason);
    if (backups) {
        backups->keepsAll_ = keepsAll;
        removeAbandonedFiles(backups->folder_.get(), isTemporaryName, ::geteuid());
    }
    return backups;
}

std::unique_ptr<QueueBackups> QueueBackups::openExisting(const std::string& path,
                                                         std::string& reason) {
    FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat status {};
    if (!folder.isOpen() || ::fstat(folder.get(), &status) != 0) {
        reason = systemError();
        return nullptr;
    }
    reason = objectionToFolder(status);
    return reason.empty() ? std::unique_ptr<QueueBackups>(new QueueBackups(std::move(folder)))
                          : nullptr;
}

PPDText QueueBackups::lastOf(const std::string& queueName, std::string& reason) const {
    const std::string name = lastNameOf(queueName);
    // O_NONBLOCK: opening a named pipe must not wait for a writer.
    const FileDescriptor file(
        ::openat(folder_.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen()) {
        reason = systemError();
        return nullptr;
    }
    return PPDTextWithContentsOfDescriptor(file.get(), &reason);
}

void QueueBackups::settleInterruptedRun(const std::string& queueName,
                                        const std::string& text) const {
    const std::string lastName = lastNameOf(queueName);
    const std::string formerName = formerNameOf(queueName);
    if (::faccessat(folder_.get(), formerName.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) != 0) {
        return;
    }
    std::string ignored;
    const bool isMissing =
        ::faccessat(folder_.get(), lastName.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) != 0 &&
        errno == ENOENT;
    const PPDText last = isMissing ? nullptr : lastOf(queueName, ignored);
    if (!isMissing && !last) {
        return;  // What cannot be known stays.
    }
    if (!last || *last == text) {
        ::renameat(folder_.get(), formerName.c_str(), folder_.get(), lastName.c_str());
    }
    // Gone by now, but where both are one file.
    ::unlinkat(folder_.get(), formerName.c_str(), 0);
}

QueueBackups::Entry::Entry(const QueueBackups& backups, const std::string& queueName)
    : backups_(backups),
      folder_(backups.folder_.get()),
      queueName_(queueName),
      lastName_(lastNameOf(queueName)),
      formerName_(formerNameOf(queueName)) {}

QueueBackups::Entry::~Entry() {
    if (isKept_) {
        return;
    }
    if (!nameWithTime_.empty()) {
        ::unlinkat(folder_, nameWithTime_.c_str(), 0);
    }
    if (isPlaced_ && !hasFormer_) {
        ::unlinkat(folder_, lastName_.c_str(), 0);
    } else if (hasFormer_ &&
               ::renameat(folder_, formerName_.c_str(), folder_, lastName_.c_str()) == 0) {
        // Where the two are one file with two names, they still are.
        ::unlinkat(folder_, formerName_.c_str(), 0);
    }
    if (!isPlaced_ && !newName_.empty()) {
        ::unlinkat(folder_, newName_.c_str(), 0);
    }
}

bool QueueBackups::Entry::write(const std::string& text, std::string& reason) {
    return writeFile(text, newName_, file_, reason) &&
           (!backups_.keepsAll_ || writeFileWithTime(text, reason));
}

bool QueueBackups::Entry::writeFile(const std::string& text, std::string& name,
                                    FileDescriptor& file, std::string& reason) const {
    constexpr mode_t kForOwner = 0600;
    static std::atomic<unsigned> count{0};
    const std::string begin = "." + lastName_ + "." + std::to_string(::getpid()) + "-";
    std::string newName;
    do {
        newName = begin + std::to_string(++count);
        file = newTemporaryFile(folder_, newName, kForOwner);
    } while (!file.isOpen() && errno == EEXIST);
    if (file.isOpen()) {
        name.swap(newName);
    }
    // It stays open, and so locked, until it has its own name.
    if (file.isOpen() && writeAll(file.get(), text) && ::fsync(file.get()) == 0) {
        return true;
    }
    reason = systemError();
    return false;
}

/// Only what is whole gets such a name.
bool QueueBackups::Entry::writeFileWithTime(const std::string& text, std::string& reason) {
    FileDescriptor file;
    std::string nameWithTime = nameForTime();
    // Known to the destructor from the moment that it is there.
    if (!writeFile(text, nameWithTime_, file, reason)) {
        return false;
    }
    if (::renameat(folder_, nameWithTime_.c_str(), folder_, nameWithTime.c_str()) != 0) {
        reason = systemError();
        return false;
    }
    nameWithTime_.swap(nameWithTime);
    return true;
}

std::string QueueBackups::Entry::nameForTime() const {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::array<char, 32> time{};
    (void)std::strftime(time.data(), time.size(), "%Y%m%dT%H%M%SZ", &parts);
    const std::string begin = queueName_ + "." + time.data();
    std::string name = begin + ".ppd";
    for (int count = 2; ::faccessat(folder_, name.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
         ++count) {
        name = begin + "-" + std::to_string(count) + ".ppd";
    }
    return name;
}

/// Gives what is kept now a second name, so that there is always one under its own; on a file
/// system without links, another one.
bool QueueBackups::Entry::setFormerAside() {
    const char* const last = lastName_.c_str();
    const char* const former = formerName_.c_str();
    hasFormer_ = ::linkat(folder_, last, folder_, former, 0) == 0;
    if (!hasFormer_ && (errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS)) {
        hasFormer_ = ::renameat(folder_, last, folder_, former) == 0;
    }
    return hasFormer_ || errno == ENOENT;
}

bool QueueBackups::Entry::place(std::string& reason) {
    isPlaced_ =
        setFormerAside() && ::renameat(folder_, newName_.c_str(), folder_, lastName_.c_str()) == 0;
    if (!isPlaced_ || ::fsync(folder_) != 0) {
        reason = systemError();
        return false;
    }
    return true;
}

void QueueBackups::Entry::keep() {
    isKept_ = true;
    if (hasFormer_) {
        ::unlinkat(folder_, formerName_.c_str(), 0);
    }
}

}  // namespace TkPPDUpdating
