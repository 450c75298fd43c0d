#pragma once

#include "backends/cups/IPPAnswer.h"
#include "backends/cups/IPPDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"

namespace TkPPDUpdating {

/// Adds the automatic duplexer to the accessories when the printer tells whether it prints on both
/// sides ("sides-supported").
void readDuplexer(IPPAnswer& answer, IPPDeviceStatus::Values& values, OrbCSToldEntries& told);

/// Adds the lower tray to the accessories when the printer names its paper sources
/// ("media-source-supported", "printer-input-tray"): it is installed when one of the two attributes
/// has a second tray, besides what is no tray of its own (automatic choice, manual feed, by-pass,
/// envelope feeder).
void readLowerTray(IPPAnswer& answer, IPPDeviceStatus::Values& values, OrbCSToldEntries& told);

}  // namespace TkPPDUpdating
