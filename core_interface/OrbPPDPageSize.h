#pragma once

namespace TkPPDUpdating {

/// A page size of a parsed PPD: only its presence is of interest.
class OrbPPDPageSize {
  public:
    virtual ~OrbPPDPageSize() = default;
};

}  // namespace TkPPDUpdating
