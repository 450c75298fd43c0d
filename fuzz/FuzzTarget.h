#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

/// What every fuzz target starts with (https://llvm.org/docs/LibFuzzer.html).
namespace TkPPDUpdating::Fuzzing {

/// Longer inputs only take longer: they find nothing that shorter ones do not.
inline constexpr std::size_t kLongestInput = 1U << 16U;

/// The input as a text, or an empty one when it is too long.
inline std::string_view textOfInput(const std::uint8_t* data, std::size_t size) {
    // An empty input may come as a null pointer.
    return size == 0 || size > kLongestInput
               ? std::string_view()
               : std::string_view(reinterpret_cast<const char*>(data), size);
}

/// Ends the process, which is how a fuzz target says that something is wrong.
inline void require(bool holds, const char* what) {
    if (!holds) {
        (void)std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

}  // namespace TkPPDUpdating::Fuzzing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
