#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>

#include "backends/schemes/DeviceStatusSchemes.h"
#include "backends/schemes/ReportedDeviceStatus.h"

namespace TkPPDUpdating {

/// A device status that a printer gave over IPP.
class IPPDeviceStatus : public ReportedDeviceStatus {
  public:
    using ReportedDeviceStatus::ReportedDeviceStatus;
};

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

/// Registers the backend for "ipp", "ipps" and "dnssd": the printer is asked with one
/// Get-Printer-Attributes (RFC 8011, section 4.2.5) over libcups, whose answer
/// `IPPStatusMapping` turns into a status.
///
/// Nobody is ever asked for a password, in filter mode or out of it: a printer that wants one gives
/// no status. No redirect is followed. With "ipps" the exchange is encrypted, but the printer's
/// certificate proves nothing here, since nearly all are self-signed: any is accepted, and none is
/// stored (docs/ipp-mapping.md says why). A "dnssd" name is resolved where libcups can, that is
/// with Avahi running.
void registerIPPDeviceStatus(DeviceStatusSchemes& schemes,
                             const IPPDeviceStatusLimits& limits = {});

}  // namespace TkPPDUpdating
