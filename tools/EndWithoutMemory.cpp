#include "tools/EndWithoutMemory.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <exception>
#include <new>

#include "tools/Diagnostics.h"
#include "tools/ExitStatus.h"

namespace TkPPDUpdating {

namespace {

[[noreturn]] void tellAndEnd() {
    static std::atomic_flag isTelling;
    // Another thread is about to end them all.
    while (isTelling.test_and_set()) {
        ::pause();
    }
    Diagnostics::outOfMemory();
    std::_Exit(static_cast<int>(ExitStatus::noResult));
}

}  // namespace

void endWithoutMemory() {
    try {
        if (std::current_exception()) {
            std::rethrow_exception(std::current_exception());
        }
    } catch (const std::bad_alloc&) {
        tellAndEnd();
    } catch (...) {
        std::abort();
    }
    std::abort();
}

}  // namespace TkPPDUpdating
