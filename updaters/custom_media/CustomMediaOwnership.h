#pragma once

#include <span>

#include "manager/ITkPPDLineOwnership.h"
#include "ppd/PPDStatements.h"

namespace TkPPDUpdating {

/// What the custom media updater owns: of the text before, the block of an earlier run, found
/// through the category line; of the text after, the block that its category line names, if it is
/// what a run writes, byte for byte where a printer has no say. The defaults of the media type and
/// its profile may follow the type that they named. The spans outlive the result.
OrbPPDOwnedLines ownedCustomMediaLines(std::span<const PPDStatement> before,
                                       std::span<const PPDStatement> after);

}  // namespace TkPPDUpdating
