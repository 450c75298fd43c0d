#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <optional>

namespace TkPPDUpdating {

/// Turns the signals by which a program is ended (SIGINT, SIGTERM, SIGHUP), and the end of a limit
/// of time, into a flag for the life of the object, so that work is ended between two steps instead
/// of in the middle of one. A signal that the caller of the program wants ignored stays so
/// (nohup(1)). One at a time.
class InterruptionWatch {
  public:
    explicit InterruptionWatch(std::optional<std::chrono::seconds> timeLimit = std::nullopt);
    InterruptionWatch(const InterruptionWatch&) = delete;
    InterruptionWatch& operator=(const InterruptionWatch&) = delete;
    ~InterruptionWatch();

    /// True once a signal came or the time was over.
    static const std::atomic<bool>& isInterrupted();

    /// True when it was the time.
    static const std::atomic<bool>& isTimeOver();

    /// What has ended the work, for people.
    static const char* reason();

  private:
    static constexpr std::array<int, 4> kSignals = {SIGINT, SIGTERM, SIGHUP, SIGALRM};

    std::array<struct sigaction, kSignals.size()> before_ = {};
    bool isTimed_;
};

}  // namespace TkPPDUpdating
