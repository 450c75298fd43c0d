#include "tools/InterruptionWatch.h"

#include <unistd.h>

#include <cstddef>

namespace TkPPDUpdating {

namespace {

std::atomic<bool> interrupted{false};
std::atomic<bool> timeOver{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

void setInterrupted(int signal) {
    // Of two, the first is the reason.
    if (signal == SIGALRM && !interrupted) {
        timeOver = true;
    }
    interrupted = true;
}

}  // namespace

InterruptionWatch::InterruptionWatch(std::optional<std::chrono::seconds> timeLimit)
    : isTimed_(timeLimit.has_value()) {
    interrupted = false;
    timeOver = false;
    struct sigaction action = {};
    action.sa_handler = setInterrupted;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t each = 0; each < kSignals.size(); ++each) {
        const int signal = kSignals.at(each);
        sigaction(signal, nullptr, &before_.at(each));
        const bool isIgnored = before_.at(each).sa_handler == SIG_IGN;
        if (signal == SIGALRM ? isTimed_ : !isIgnored) {
            sigaction(signal, &action, nullptr);
        }
    }
    if (isTimed_) {
        alarm(static_cast<unsigned>(timeLimit->count()));
    }
}

InterruptionWatch::~InterruptionWatch() {
    if (isTimed_) {
        alarm(0);
    }
    for (std::size_t each = 0; each < kSignals.size(); ++each) {
        sigaction(kSignals.at(each), &before_.at(each), nullptr);
    }
}

const std::atomic<bool>& InterruptionWatch::isInterrupted() {
    return interrupted;
}

const std::atomic<bool>& InterruptionWatch::isTimeOver() {
    return timeOver;
}

const char* InterruptionWatch::reason() {
    return timeOver ? "the time limit of the run was over" : "interrupted";
}

}  // namespace TkPPDUpdating
