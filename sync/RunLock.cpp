#include "sync/RunLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>
#include <system_error>
#include <thread>

namespace TkPPDUpdating {

RunLock::~RunLock() {
    if (isTaken_) {
        // While it is still locked: a process that opens the path from now on makes a new file.
        ::unlink(path_.c_str());
    }
}

RunLock::End RunLock::take(std::chrono::milliseconds wait, const std::atomic<bool>* isCancelled,
                           std::string& reason) {
    using Clock = std::chrono::steady_clock;
    constexpr auto kPause = std::chrono::milliseconds(100);
    const auto deadline = Clock::now() + wait;
    for (;;) {
        const End end = tryToTake(reason);
        if (end != End::held) {
            return end;
        }
        if (isCancelled && *isCancelled) {
            return End::cancelled;
        }
        const auto now = Clock::now();
        if (now >= deadline) {
            return End::held;
        }
        std::this_thread::sleep_for(std::min<Clock::duration>(kPause, deadline - now));
    }
}

RunLock::End RunLock::tryToTake(std::string& reason) {
    constexpr mode_t kForOwner = 0600;
    for (;;) {
        file_ = FileDescriptor(
            ::open(path_.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, kForOwner));
        struct stat status {};
        if (!file_.isOpen() || ::fstat(file_.get(), &status) != 0) {
            reason = path_ + ": " + std::generic_category().message(errno);
            return End::failed;
        }
        if (!S_ISREG(status.st_mode) || status.st_uid != ::geteuid()) {
            reason = path_ + ": is not a file of this user";
            return End::failed;
        }
        if (::flock(file_.get(), LOCK_EX | LOCK_NB) != 0) {
            reason = wordsForOwner();
            return End::held;
        }
        // Whoever had it before may have taken the file away in between.
        if (isStillThere()) {
            isTaken_ = true;
            tellOwner();
            return End::taken;
        }
    }
}

bool RunLock::isStillThere() const {
    struct stat opened {};
    struct stat named {};
    return ::fstat(file_.get(), &opened) == 0 && ::lstat(path_.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

void RunLock::tellOwner() const {
    // For people only: the lock holds without it.
    (void)(::ftruncate(file_.get(), 0) == 0 &&
           writeAll(file_.get(), std::to_string(::getpid()) + "\n"));
}

std::string RunLock::wordsForOwner() const {
    std::array<char, 20> text{};
    const ssize_t count = ::pread(file_.get(), text.data(), text.size(), 0);
    const std::string_view told(text.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    const std::string_view number =
        told.substr(0, std::min(told.find_first_not_of("0123456789"), told.size()));
    return "process " + (number.empty() ? "unknown" : std::string(number));
}

}  // namespace TkPPDUpdating
