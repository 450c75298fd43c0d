#pragma once

#include "backends/ipp/IPPAnswer.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"

namespace TkPPDUpdating {

/// Adds the highest resolution in dots per inch: the largest of the finer direction of each that
/// the printer names ("printer-resolution-supported", "pwg-raster-document-resolution-supported",
/// and the "RS" list of "urf-supported"), when it names at least two that differ. A printer that
/// names one names that of its raster format as a rule, and its engine is finer. Dots per
/// centimetre become dots per inch by `dotsPerInchFromCentimetre`. It is not told beside one that
/// was dropped.
void readHighestResolution(IPPAnswer& answer, ReportedDeviceStatus::Values& values,
                           OrbCSToldEntries& told);

}  // namespace TkPPDUpdating
