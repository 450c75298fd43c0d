#include "core_interface/OrbInvalidOperationError.h"

#include <string>

namespace TkPPDUpdating {

OrbInvalidOperationError::OrbInvalidOperationError(std::string_view className,
                                                   std::string_view operation)
    : std::logic_error(std::string(className) + " does not implement " + std::string(operation)) {}

}  // namespace TkPPDUpdating
