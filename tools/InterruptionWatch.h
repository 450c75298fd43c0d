#pragma once

#include <atomic>
#include <csignal>

namespace TkPPDUpdating {

/// Turns SIGINT and SIGTERM into a flag for the life of the object, so that work is ended between
/// two steps instead of in the middle of one. One at a time.
class InterruptionWatch {
  public:
    InterruptionWatch();
    InterruptionWatch(const InterruptionWatch&) = delete;
    InterruptionWatch& operator=(const InterruptionWatch&) = delete;
    ~InterruptionWatch();

    /// True once a signal came.
    static const std::atomic<bool>& isInterrupted();

  private:
    struct sigaction interruptBefore_ = {};
    struct sigaction terminateBefore_ = {};
};

}  // namespace TkPPDUpdating
