#pragma once

#include "backends/cups/IPPAnswer.h"
#include "backends/cups/IPPDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"

namespace TkPPDUpdating {

/// Adds the pens that are in: ink and toner supplies from "printer-supply" with
/// "printer-supply-description", else from the "marker-" attributes.
///
/// `kTkCSPPDPenDyesKey` becomes the dyes in the printer's order, joined with commas: of each supply
/// the name of its colorant, else its colour, else its own name; the primary colours by their
/// letters ("C,M,Y,K"). `kTkCSPPDPenInkSufficientKey` becomes 1 or 0 for each of them, joined with
/// commas: whether the level is above the one at which the printer calls it low (above empty, when
/// it does not tell one); nothing unless all levels are known. IPP knows no code name of a
/// configuration and none of the other values.
void readPens(IPPAnswer& answer, IPPDeviceStatus::Values& values, OrbCSToldEntries& told);

}  // namespace TkPPDUpdating
