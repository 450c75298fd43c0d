#pragma once

#include "backends/cups/IPPAnswer.h"
#include "backends/cups/IPPDeviceStatus.h"

namespace TkPPDUpdating {

/// Adds the custom media types: of the media types in "media-col-database" and then of
/// "media-type-supported" those that are names, or keywords that no standard lists, each once.
///
/// The display name is "media-info", else the type's own name; the media ID is "media-key", else
/// the type. No standard attribute gives a parent ID. The colour profile is that of
/// "printer-icc-profiles" whose member "media-type" names the type: its qualifier is
/// "profile-name", which counts only when it can be a PPD option keyword, its URL "profile-url", or
/// "profile-uri" as some printers have it; a profile without either is none.
void readCustomMediaTypes(IPPAnswer& answer, IPPDeviceStatus::Values& values);

}  // namespace TkPPDUpdating
