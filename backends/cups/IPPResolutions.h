#pragma once

#include "backends/cups/IPPAnswer.h"
#include "backends/cups/IPPDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"

namespace TkPPDUpdating {

/// Adds the highest resolution in dots per inch: the largest of the finer direction of each that
/// the printer names ("printer-resolution-supported", "pwg-raster-document-resolution-supported",
/// and the "RS" list of "urf-supported"). Dots per centimetre are turned into the nearest whole
/// number of dots per inch.
void readHighestResolution(IPPAnswer& answer, IPPDeviceStatus::Values& values,
                           OrbCSToldEntries& told);

}  // namespace TkPPDUpdating
