#include "sync/QueueBackups.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <ctime>
#include <system_error>
#include <utility>

#include "ppd/PPDTextFile.h"

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

}  // namespace

std::unique_ptr<QueueBackups> QueueBackups::open(const std::string& path, bool keepsAll,
                                                 std::string& reason) {
    constexpr mode_t kForOwner = 0700;
    if (::mkdir(path.c_str(), kForOwner) != 0 && errno != EEXIST) {
        reason = "cannot be made: " + systemError();
        return nullptr;
    }
    auto backups = openExisting(path, reason);
    if (backups) {
        backups->keepsAll_ = keepsAll;
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
    const std::string name = queueName + ".ppd";
    // O_NONBLOCK: opening a named pipe must not wait for a writer.
    const FileDescriptor file(
        ::openat(folder_.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen()) {
        reason = systemError();
        return nullptr;
    }
    return PPDTextWithContentsOfDescriptor(file.get(), &reason);
}

QueueBackups::Entry::Entry(const QueueBackups& backups, const std::string& queueName)
    : folder_(backups.folder_.get()), keepsAll_(backups.keepsAll_), name_(queueName) {}

QueueBackups::Entry::~Entry() {
    if (isKept_) {
        return;
    }
    if (!nameWithTime_.empty()) {
        ::unlinkat(folder_, nameWithTime_.c_str(), 0);
    }
    const std::string last = name_ + ".ppd";
    if (isPlaced_ && !formerName_.empty()) {
        ::renameat(folder_, formerName_.c_str(), folder_, last.c_str());
    } else if (isPlaced_) {
        ::unlinkat(folder_, last.c_str(), 0);
    } else if (!newName_.empty()) {
        ::unlinkat(folder_, newName_.c_str(), 0);
    }
}

bool QueueBackups::Entry::write(const std::string& text, std::string& reason) {
    static std::atomic<unsigned> count{0};
    const std::string newName =
        "." + name_ + ".ppd." + std::to_string(::getpid()) + "-" + std::to_string(++count);
    if (!writeFile(newName, text, reason)) {
        return false;
    }
    newName_ = newName;
    const std::string nameWithTime = keepsAll_ ? nameForTime() : "";
    if (keepsAll_ && !writeFile(nameWithTime, text, reason)) {
        return false;
    }
    nameWithTime_ = nameWithTime;
    return true;
}

bool QueueBackups::Entry::writeFile(const std::string& name, const std::string& text,
                                    std::string& reason) {
    constexpr mode_t kForOwner = 0600;
    FileDescriptor file(::openat(folder_, name.c_str(),
                                 O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kForOwner));
    const bool isMade = file.isOpen();
    if (isMade && writeAll(file.get(), text) && ::fsync(file.get()) == 0 && file.close()) {
        return true;
    }
    reason = systemError();
    if (isMade) {
        ::unlinkat(folder_, name.c_str(), 0);
    }
    return false;
}

std::string QueueBackups::Entry::nameForTime() const {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::array<char, 32> time{};
    (void)std::strftime(time.data(), time.size(), "%Y%m%dT%H%M%SZ", &parts);
    const std::string begin = name_ + "." + time.data();
    std::string name = begin + ".ppd";
    for (int count = 2; ::faccessat(folder_, name.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
         ++count) {
        name = begin + "-" + std::to_string(count) + ".ppd";
    }
    return name;
}

bool QueueBackups::Entry::place(std::string& reason) {
    const std::string last = name_ + ".ppd";
    const std::string former = "." + name_ + ".ppd.former";
    if (::renameat(folder_, last.c_str(), folder_, former.c_str()) == 0) {
        formerName_ = former;
    } else if (errno != ENOENT) {
        reason = systemError();
        return false;
    }
    isPlaced_ = true;
    if (::renameat(folder_, newName_.c_str(), folder_, last.c_str()) != 0 ||
        ::fsync(folder_) != 0) {
        reason = systemError();
        return false;
    }
    return true;
}

void QueueBackups::Entry::keep() {
    isKept_ = true;
    if (!formerName_.empty()) {
        ::unlinkat(folder_, formerName_.c_str(), 0);
    }
}

}  // namespace TkPPDUpdating
