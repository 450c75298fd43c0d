// Linked into every test program: a test that loops for ever, as one may after a change that is
// wrong, ends with a message that names it, and does not take all memory before.
#include "tests/support/TestTimeLimit.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "tests/support/SanitizerInUse.h"

namespace TkPPDUpdating::Testing {
namespace {

/// What is written when the time is over. A signal handler may not put texts together.
std::string message;  // NOLINT(*-avoid-non-const-global-variables)

void endProcess(int /*signal*/) {
    // There is nothing left to do when even this fails.
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, message.data(), message.size());
    std::_Exit(EXIT_FAILURE);
}

class TimeLimitOfTests : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& test) override {
        limitProcessorTime(std::string(test.test_suite_name()) + "." + test.name(), longestTest());
    }
    void OnTestEnd(const testing::TestInfo& /*test*/) override { limitProcessorTime({}, {}); }
};

/// An allocation beyond it raises std::bad_alloc, which fails the test. The sanitizers take memory
/// of their own, and have a limit of their own.
void limitMemory() {
#if !TKPPDUPDATING_ADDRESS_SANITIZER && !TKPPDUPDATING_THREAD_SANITIZER
    constexpr rlim_t kMost = rlim_t{4} << 30U;
    rlimit limit{};
    if (::getrlimit(RLIMIT_DATA, &limit) == 0 && limit.rlim_cur > kMost) {
        limit.rlim_cur = kMost;
        (void)::setrlimit(RLIMIT_DATA, &limit);
    }
#endif
}

[[maybe_unused]] const bool isListening = [] {
    limitMemory();
    testing::UnitTest::GetInstance()->listeners().Append(new TimeLimitOfTests);
    return true;
}();

}  // namespace

std::chrono::seconds longestTest() {
    // Many times what the slowest test takes, and less than the time after which CTest ends it.
    constexpr int kSeconds = 90;
    const char* const chosen = std::getenv("TKPPDUPDATING_LONGEST_TEST");
    const int seconds = chosen ? std::atoi(chosen) : 0;
    return std::chrono::seconds(seconds > 0 ? seconds : kSeconds);
}

void limitProcessorTime(const std::string& test, std::chrono::milliseconds time) {
    itimerval limit{};
    (void)::setitimer(ITIMER_PROF, &limit, nullptr);
    if (time.count() == 0) {
        return;
    }
    message = test + " has used " + std::to_string(time.count()) +
              " ms of the processor: it seems to loop for ever\n";
    (void)std::signal(SIGPROF, endProcess);
    limit.it_value.tv_sec = time.count() / 1000;
    limit.it_value.tv_usec = time.count() % 1000 * 1000;
    (void)::setitimer(ITIMER_PROF, &limit, nullptr);
}

}  // namespace TkPPDUpdating::Testing
