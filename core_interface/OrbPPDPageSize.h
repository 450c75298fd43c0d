#pragma once

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// A page size of a parsed PPD: only its presence is of interest.
class TKPPDUPDATING_PUBLIC OrbPPDPageSize {
  public:
    virtual ~OrbPPDPageSize() = default;
};

}  // namespace TkPPDUpdating
