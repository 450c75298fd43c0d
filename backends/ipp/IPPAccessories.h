#pragma once

#include "backends/ipp/IPPAnswer.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"

namespace TkPPDUpdating {

/// Adds the automatic duplexer to the accessories when the printer tells whether it prints on both
/// sides ("sides-supported"): one two-sided value is enough for one. That there is none is told
/// only when every value could be read.
void readDuplexer(IPPAnswer& answer, ReportedDeviceStatus::Values& values, OrbCSToldEntries& told);

/// Adds the lower tray to the accessories: whether the printer has a second tray among its inputs.
///
/// The sources ("media-source-supported") and the descriptions ("printer-input-tray") of the inputs
/// stand in one order (PWG 5100.13), and are read in pairs when there are as many of both. A source
/// that is the automatic choice, a feeder (manual, by-pass, envelope, hagaki), a disc tray, a roll
/// or virtual is no tray. An input whose description has another type than a tray from which sheets
/// are fed automatically (RFC 3805, prtInputType) is none either. One without a description is
/// judged by its source, where "alternate" may be anything and is not counted; one without a source
/// by its description, where the name must not be that of a feeder. What has one source, or without
/// sources one name, counts once.
///
/// That there is no second tray is told only when every input could be judged.
void readLowerTray(IPPAnswer& answer, ReportedDeviceStatus::Values& values, OrbCSToldEntries& told);

}  // namespace TkPPDUpdating
