#pragma once

#include "backends/ipp/IPPAnswer.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"

namespace TkPPDUpdating {

/// Adds what is known of the pens that are in: the ink and toner supplies, in the printer's order.
///
/// Two families of attributes list them: "printer-supply" with "printer-supply-description"
/// (PWG 5100.13), and the "marker-" attributes (CUPS extensions). The first may have empty slots
/// that the second does not: where the numbers of inks and toners differ, the markers count; else
/// the supplies do, and the markers for what these do not tell.
///
/// `kTkCSPPDPenDyesKey` becomes the dyes, joined with commas: those that each supply's colour
/// stands for (`dyesOfInkColour`), else the supply's own name. Where supplies share a dye (photo
/// and matte black), they have their own names, if these differ. It is not told when one of them
/// has neither a colour nor a name that can stand in the list.
///
/// `kTkCSPPDPenInkSufficientKey` becomes 1 or 0 for each of the dyes, joined with commas: whether
/// the supply is not empty. It is not told unless all levels are known. IPP knows no code name of a
/// configuration and none of the other values.
void readPens(IPPAnswer& answer, ReportedDeviceStatus::Values& values, OrbCSToldEntries& told);

}  // namespace TkPPDUpdating
