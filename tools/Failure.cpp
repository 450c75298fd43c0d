#include "tools/Failure.h"

namespace TkPPDUpdating {

Failure::Failure(ExitStatus status, const std::optional<std::string>& place,
                 const std::string& reason)
    : std::runtime_error(reason),
      status_(status),
      place_(place && place->empty() ? "\"\"" : place.value_or("")) {}

}  // namespace TkPPDUpdating
