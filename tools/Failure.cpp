#include "tools/Failure.h"

#include "tools/Diagnostics.h"

namespace TkPPDUpdating {

Failure::Failure(ExitStatus status, const std::optional<std::string>& place,
                 const std::string& reason)
    : std::runtime_error(reason),
      status_(status),
      place_(place ? Diagnostics::nameOfPlace(*place) : "") {}

}  // namespace TkPPDUpdating
