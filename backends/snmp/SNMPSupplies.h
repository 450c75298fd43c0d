#pragma once

#include "backends/snmp/SNMPRows.h"
#include "backends/snmp/SNMPStatusValues.h"

namespace TkPPDUpdating {

/// Tells the pens that are in: the printer's supplies of ink and toner, in the order of its table.
///
/// The dyes (`kTkCSPPDPenDyesKey`) are those of `dyesOfInkSupplies`: a supply's colour is the name
/// of its colorant (prtMarkerColorantValue), its own name prtMarkerSuppliesDescription. A colorant
/// that is missing or refused is not replaced by a name, since it might be any; then the dyes are
/// not told.
///
/// Whether there is enough ink (`kTkCSPPDPenInkSufficientKey`) is told beside the dyes when each
/// level is known (`isInkSufficient`). Nothing is told when a supply's type is unknown, or its type
/// or class is missing: it may be a pen or not.
void readPens(const SNMPRows& rows, SNMPStatusValues& values);

}  // namespace TkPPDUpdating
