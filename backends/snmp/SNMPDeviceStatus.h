#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>

#include "backends/schemes/DeviceStatusSchemes.h"

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

/// Registers the backend for "snmp://HOST[:PORT]": the printer's tables (RFC 3805) are walked over
/// SNMP, in version 2c and, when that is not answered, in version 1, and `SNMPStatusMapping` turns
/// them into a status.
///
/// The community is that of the scheduler's "snmp.conf" in the server root, else "public". It
/// stands on net-snmp, of which only single sessions are used, one for each printer: no
/// configuration file and no MIB of that library is read. A printer is asked without any lock held
/// while it is waited for, so that many can be asked side by side.
void registerSNMPDeviceStatus(DeviceStatusSchemes& schemes,
                              const SNMPDeviceStatusLimits& limits = {});

}  // namespace TkPPDUpdating
