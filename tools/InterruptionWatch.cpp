#include "tools/InterruptionWatch.h"

namespace TkPPDUpdating {

namespace {

std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

void setInterrupted(int /*signal*/) {
    interrupted = true;
}

}  // namespace

InterruptionWatch::InterruptionWatch() {
    interrupted = false;
    struct sigaction action = {};
    action.sa_handler = setInterrupted;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, &interruptBefore_);
    sigaction(SIGTERM, &action, &terminateBefore_);
}

InterruptionWatch::~InterruptionWatch() {
    sigaction(SIGINT, &interruptBefore_, nullptr);
    sigaction(SIGTERM, &terminateBefore_, nullptr);
}

const std::atomic<bool>& InterruptionWatch::isInterrupted() {
    return interrupted;
}

}  // namespace TkPPDUpdating
