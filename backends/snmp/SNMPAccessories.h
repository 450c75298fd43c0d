#pragma once

#include "backends/snmp/SNMPRows.h"
#include "backends/snmp/SNMPStatusValues.h"

namespace TkPPDUpdating {

/// Tells the automatic duplexer by the printer's media paths (prtMediaPathType): installed when one
/// is of a duplex kind, not installed when all are simplex. A path of another or unknown kind may
/// be anything: then it is not told.
void readDuplexer(const SNMPRows& rows, SNMPStatusValues& values);

/// Tells the lower tray by the printer's inputs (prtInputType, -Name, -Status): installed when two
/// are trays, not installed when fewer can be. A tray is an input of type
/// sheetFeedAutoRemovableTray or sheetFeedAutoNonRemovableTray whose name is none of a feeder (see
/// `isNameOfNoTray`): makers report by-pass feeders as trays. Whether it is there is not known of
/// one without a type or a name, of unknown type, whose status is missing, "unknown" or
/// "unavailable because broken", and of a second one of the same name; where those decide, it is
/// not told.
void readLowerTray(const SNMPRows& rows, SNMPStatusValues& values);

}  // namespace TkPPDUpdating
