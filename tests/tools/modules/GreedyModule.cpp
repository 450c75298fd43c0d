// A module that raises an exception when there is no memory left for it, for AddedModules_test.cpp.
#include <TkPPDUpdating/backends/modules/TkPPDUpdatingModule.h>
#include <sys/resource.h>

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

/// Lets the process have no more memory, and takes what there is; the exception stands in what the
/// C++ library keeps in reserve.
[[noreturn]] void raiseWithoutMemory() {
    constexpr rlimit kNone{0, 0};
    constexpr std::size_t kSmall = 4096;
    constexpr std::size_t kStep = 16;
    setrlimit(RLIMIT_AS, &kNone);
    for (std::size_t size = std::size_t{1} << 20U; size > 0;) {
        if (!std::malloc(size)) {  // NOLINT(*-no-malloc, *-owning-memory): never given back
            size = size > kSmall ? size / 2 : size - kStep;
        }
    }
    throw std::bad_alloc();
}

}  // namespace

const TkPPDUpdating::Module TkPPDUpdatingModule = {
    .registerUpdaters = [](TkPPDUpdating::OrbPPDUpdatingManager& /*manager*/) {
        raiseWithoutMemory();
    }};
