#pragma once

#include "backends/snmp/SNMPRows.h"
#include "backends/snmp/SNMPStatusValues.h"

namespace TkPPDUpdating {

/// Tells the pens that are in: the printer's supplies of ink and toner, in the order of its table.
///
/// The dyes (`kTkCSPPDPenDyesKey`) are told when each of them has a name: that of its colorant
/// (prtMarkerColorantValue; C, M, Y and K for the printing colours), its own
/// (prtMarkerSuppliesDescription) when it has no colorant, or one that is called other, unknown or
/// none. Supplies of one colorant (photo and matte black) are told apart by their own names. A
/// colorant that is missing is not replaced by a name, since it might be any.
///
/// Whether there is enough ink (`kTkCSPPDPenInkSufficientKey`) is told when each level is known: a
/// level of 0 is empty, "at least some" (-3) and "no restriction" (-1) are not. Nothing is told
/// when a supply's type is unknown, or its type or class is missing: it may be a pen or not.
void readPens(const SNMPRows& rows, SNMPStatusValues& values);

}  // namespace TkPPDUpdating
