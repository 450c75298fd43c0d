#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>

namespace TkPPDUpdating {

/// How much of a printer's time and talk is put up with.
struct IPPDeviceStatusLimits {
    /// For the whole exchange, from looking up the name to the last byte of the answer.
    std::chrono::milliseconds time = std::chrono::seconds(15);
    /// The same with `kTkCSIsCUPSFilterModeKey`, where a print job waits.
    std::chrono::milliseconds filterModeTime = std::chrono::seconds(3);
    /// The longest answer, in bytes.
    std::size_t bytes = std::size_t{4} << 20U;
    /// The most attributes in an answer, those that nobody asked for included.
    std::size_t attributes = 10'000;
    /// Set by anybody at any time to end all exchanges early, without a status. Null for none;
    /// else it outlives the last exchange.
    const std::atomic<bool>* isCancelled = nullptr;
};

}  // namespace TkPPDUpdating
