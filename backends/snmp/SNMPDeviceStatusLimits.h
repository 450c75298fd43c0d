#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>

namespace TkPPDUpdating {

/// How much of a printer's time and talk is put up with.
struct SNMPDeviceStatusLimits {
    /// For the whole exchange, from looking up the name to the last row.
    std::chrono::milliseconds time = std::chrono::seconds(15);
    /// The same with `kTkCSIsCUPSFilterModeKey`, where a print job waits.
    std::chrono::milliseconds filterModeTime = std::chrono::seconds(3);
    /// The most cells of tables, of all columns together. Texts are kept to their first kilobyte,
    /// so that all of them take less than 16 MB.
    std::size_t cells = 10'000;
    /// Set by anybody at any time to end all exchanges early, without a status. Null for none;
    /// else it outlives the last exchange.
    const std::atomic<bool>* isCancelled = nullptr;
};

}  // namespace TkPPDUpdating
