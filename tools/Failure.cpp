#include "tools/Failure.h"

#include <utility>

namespace TkPPDUpdating {

Failure::Failure(ExitStatus status, std::string place, const std::string& reason)
    : std::runtime_error(reason), status_(status), place_(std::move(place)) {}

}  // namespace TkPPDUpdating
