#pragma once

#include "backends/snmp/SNMPRows.h"
#include "backends/snmp/SNMPStatusValues.h"

namespace TkPPDUpdating {

/// Tells the highest resolution in dots per inch: the largest of the finer direction of each of the
/// printer's markers (prtMarkerAddressabilityFeedDir, -XFeedDir, per 10,000 of
/// prtMarkerAddressabilityUnit); dots per centimetre become dots per inch by
/// `dotsPerInchFromCentimetre`. It is the engine's own, so that one marker is enough; it is not
/// told when one of them has a direction or a unit that is not known.
void readHighestResolution(const SNMPRows& rows, SNMPStatusValues& values);

}  // namespace TkPPDUpdating
