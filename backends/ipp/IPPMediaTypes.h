#pragma once

#include "backends/ipp/IPPAnswer.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"

namespace TkPPDUpdating {

/// Adds the custom media types: of the media types in "media-col-database" and then of
/// "media-type-supported" those that an administrator made, each once. These are names (RFC 8011,
/// section 5.1.4) that are no registered word, and keywords that begin with "custom-" (PWG 5101.1).
/// Other keywords that nobody registered are the maker's, and its driver has them anyway. Where a
/// value was dropped, or "media-col-database" was not asked for, those that are there are told
/// (`kTkCSReportedMediaTypesPart`), and not whether there are others.
///
/// The display name is "media-info", else the type's own name; the media ID is "media-key". Without
/// one it is the type itself when that can be an ID (`PrinterText::mediaID`) of at most 100 bytes,
/// else "t-" and 16 hexadecimal digits that belong to the type for good (FNV-1a of 64 bits). A type
/// with a text that is refused is left out whole. No standard attribute gives a parent ID, and no
/// colour profile is read: a network printer names no file of this machine.
void readCustomMediaTypes(IPPAnswer& answer, ReportedDeviceStatus::Values& values,
                          OrbCSToldEntries& told);

}  // namespace TkPPDUpdating
