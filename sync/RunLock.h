#pragma once

#include <atomic>
#include <chrono>
#include <string>
#include <utility>

#include "text/FileDescriptor.h"

namespace TkPPDUpdating {

/// A lock that one process of this machine has at a time: a file that is locked (flock(2)), which
/// the system sees to when a process dies. The file is gone when nobody has the lock.
class RunLock {
  public:
    /// `path` is that of the file, in a folder into which only trusted people may write, or with a
    /// name of which only this user's files are trusted.
    explicit RunLock(std::string path) : path_(std::move(path)) {}
    RunLock(const RunLock&) = delete;
    RunLock& operator=(const RunLock&) = delete;
    ~RunLock();

    enum class End {
        taken,
        /// Another process had it all the time.
        held,
        cancelled,
        /// The file cannot be made or is not to be trusted.
        failed,
    };

    /// Takes the lock, for as long as the object lives, and waits for it up to so long. Once. The
    /// reason for `held` (with the process that has it, where it tells) and `failed` is in
    /// `reason`, one phrase. `isCancelled` may be null.
    End take(std::chrono::milliseconds wait, const std::atomic<bool>* isCancelled,
             std::string& reason);

  private:
    End tryToTake(std::string& reason);
    bool isStillThere() const;
    void tellOwner() const;
    std::string wordsForOwner() const;

    std::string path_;
    FileDescriptor file_;
    bool isTaken_ = false;
};

}  // namespace TkPPDUpdating
