#pragma once

#include "backends/schemes/DeviceStatusSchemes.h"
#include "backends/snmp/SNMPDeviceStatusLimits.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Registers the backend for "snmp://HOST[:PORT]": the printer's tables (RFC 3805) are walked over
/// SNMP, in version 2c and, when that is not answered, in version 1, and `SNMPStatusMapping` turns
/// them into a status. What stands under `kTkCSSNMPQuestionsKey` in the parameters of a request is
/// asked besides.
///
/// The community is that of the scheduler's "snmp.conf" in the server root, else "public". It
/// stands on net-snmp, of which only single sessions are used, one for each printer: no
/// configuration file and no MIB of that library is read. A printer is asked without any lock held
/// while it is waited for, so that many can be asked side by side.
TKPPDUPDATING_PUBLIC void registerSNMPDeviceStatus(DeviceStatusSchemes& schemes,
                                                   const SNMPDeviceStatusLimits& limits = {});

}  // namespace TkPPDUpdating
