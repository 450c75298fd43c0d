#include "text/LargeString.h"

#include <sys/mman.h>

#include <cstdint>

namespace TkPPDUpdating {

namespace {

/// Of x86-64 and of ARM with pages of 4 KB. Where they are larger, the system passes over the rest.
constexpr std::uintptr_t kLargePage = std::uintptr_t{2} * 1024 * 1024;

}  // namespace

std::string stringWithRoom(std::size_t bytes) {
    std::string string;
    string.reserve(bytes);
#ifdef MADV_HUGEPAGE
    const auto start = reinterpret_cast<std::uintptr_t>(string.data());
    const std::uintptr_t first = (start + kLargePage - 1) / kLargePage * kLargePage;
    const std::uintptr_t end = (start + string.capacity()) / kLargePage * kLargePage;
    if (first < end) {
        // An advice: nothing depends on whether it is taken.
        (void)::madvise(string.data() + (first - start), end - first, MADV_HUGEPAGE);
    }
#endif
    return string;
}

}  // namespace TkPPDUpdating
