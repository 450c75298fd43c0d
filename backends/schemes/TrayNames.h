#pragma once

#include <string_view>

namespace TkPPDUpdating {

/// Whether the name that a printer gives one of its inputs says that it is no tray of its own: a
/// manual or by-pass feeder (also "MP" and "multi-purpose"), an envelope feeder, or the automatic
/// choice among the others ("auto" and nothing else: "Rear Auto Sheet Feeder" is a tray).
///
/// Whole words count, whatever their case and whether hyphens, blanks or nothing stand in between
/// ("By-Pass", "by pass" and "bypass" are one word; "Manuals" is no "manual").
bool isNameOfNoTray(std::string_view name);

}  // namespace TkPPDUpdating
