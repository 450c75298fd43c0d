#pragma once

#include "backends/ipp/IPPDeviceStatusLimits.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Registers the backend for "ipp", "ipps" and "dnssd": the printer is asked with one
/// Get-Printer-Attributes (RFC 8011, section 4.2.5) over libcups, whose answer
/// `IPPStatusMapping` turns into a status.
///
/// Nobody is ever asked for a password, in filter mode or out of it: a printer that wants one gives
/// no status. No redirect is followed. With "ipps" the exchange is encrypted, but the printer's
/// certificate proves nothing here, since nearly all are self-signed: any is accepted, and none is
/// stored (docs/ipp-mapping.md says why). A "dnssd" name is resolved where libcups can, that is
/// with Avahi running.
TKPPDUPDATING_PUBLIC void registerIPPDeviceStatus(DeviceStatusSchemes& schemes,
                                                  const IPPDeviceStatusLimits& limits = {});

}  // namespace TkPPDUpdating
