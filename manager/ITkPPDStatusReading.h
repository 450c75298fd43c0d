#pragma once

#include <string>
#include <vector>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// An optional second interface of an updater class: what it reads of a device's status, so that a
/// caller can leave it out when an answer does not tell that (`manager/OrbPPDToldRule.h`).
///
/// Implementers: derive from it beside `ITkPPDUpdater`. A class that does not say what it reads
/// counts as one that may read anything, and is always run. A class derived from one that says it
/// and reads more says it anew.
class TKPPDUPDATING_PUBLIC ITkPPDStatusReading {
  public:
    ITkPPDStatusReading() = default;
    ITkPPDStatusReading(const ITkPPDStatusReading&) = delete;
    ITkPPDStatusReading& operator=(const ITkPPDStatusReading&) = delete;
    virtual ~ITkPPDStatusReading() = default;

    /// The entries that a run needs (`core_interface/OrbCSPartialStatus.h`), the same for every
    /// PPD; empty for an updater that asks no device.
    virtual std::vector<std::string> statusEntriesRead() const = 0;
};

}  // namespace TkPPDUpdating
