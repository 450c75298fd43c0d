#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace TkPPDUpdating {

/// Lets so many printers be asked at once, and the next only when one of them has answered. Safe
/// for several threads.
class PrinterTurns {
  public:
    explicit PrinterTurns(std::size_t count) : free_(count) {}

    /// Waits for a turn; false, without one, once `isCancelled`, which may be null, is set.
    bool take(const std::atomic<bool>* isCancelled);
    void giveBack();

  private:
    std::mutex mutex_;
    std::condition_variable freed_;
    std::size_t free_;
};

/// A turn for as long as the object lives.
class PrinterTurn {
  public:
    PrinterTurn(PrinterTurns& turns, const std::atomic<bool>* isCancelled)
        : turns_(turns), isTaken_(turns.take(isCancelled)) {}
    PrinterTurn(const PrinterTurn&) = delete;
    PrinterTurn& operator=(const PrinterTurn&) = delete;
    ~PrinterTurn() {
        if (isTaken_) {
            turns_.giveBack();
        }
    }

    /// False when the wait for it was cancelled.
    bool isTaken() const { return isTaken_; }

  private:
    PrinterTurns& turns_;
    bool isTaken_;
};

}  // namespace TkPPDUpdating
