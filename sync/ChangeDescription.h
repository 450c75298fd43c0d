#pragma once

#include <string>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "sync/PPDChange.h"

namespace TkPPDUpdating {

/// What an update did to a PPD, for people: one line each, without a line feed, in the order of the
/// changes. `changes` are those between `before` and `after`.
///
///     Automatic Duplexer: Not Installed -> Installed       the default choice of an option
///     Media Type: 2 custom types added, 1 removed          its choices
///     Automatic Duplexer: added to Installable Options (Installed), with 2 constraints
///     Two-Sided: removed, with 24 constraints and 2 page sizes
///     ZrMaxSupportedResolution: 600 -> 1200                any other attribute
///
/// Options and choices have their texts in the first of `languages` that the PPD is translated to
/// (`userLanguages`); the words between them are English. Custom media types are the same ones when
/// their media IDs are, whatever their number. The four default page-size lines are one, and so are
/// the lines of a choice. When the texts differ although no attribute does, one line says that.
///
/// A piece of the PPD is shortened to 80 characters. The lines may hold control characters: make
/// them harmless before a terminal gets them.
std::vector<std::string> describedChanges(const PPDModelFile& before, const PPDModelFile& after,
                                          const std::vector<PPDChange>& changes,
                                          const std::vector<std::string>& languages);

}  // namespace TkPPDUpdating
