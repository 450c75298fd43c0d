#pragma once

#include <stdexcept>
#include <string_view>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Raised by an abstract operation that no subclass has implemented. A programming error, never a
/// condition of the data. `what()` names the class and the operation.
class TKPPDUPDATING_PUBLIC OrbInvalidOperationError : public std::logic_error {
  public:
    /// `className` and `operation` as they stand in the code, for example "OrbPPDUpdatingManager"
    /// and "registerUpdaterClass".
    OrbInvalidOperationError(std::string_view className, std::string_view operation);
};

}  // namespace TkPPDUpdating
