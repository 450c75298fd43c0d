#include "sync/PrinterTurns.h"

#include <chrono>

namespace TkPPDUpdating {

bool PrinterTurns::take(const std::atomic<bool>* isCancelled) {
    // A signal handler, which may be the one to cancel, can set a flag but wake nobody.
    constexpr auto kPause = std::chrono::milliseconds(50);
    std::unique_lock lock(mutex_);
    while (!freed_.wait_for(lock, kPause, [this] { return free_ > 0; })) {
        if (isCancelled && *isCancelled) {
            return false;
        }
    }
    --free_;
    return true;
}

void PrinterTurns::giveBack() {
    {
        const std::lock_guard lock(mutex_);
        ++free_;
    }
    freed_.notify_one();
}

}  // namespace TkPPDUpdating
