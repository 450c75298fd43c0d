#include "tools/Failure.h"

#include <cerrno>
#include <system_error>

#include "tools/Diagnostics.h"

namespace TkPPDUpdating {

Failure::Failure(ExitStatus status, const std::optional<std::string>& place,
                 const std::string& reason)
    : std::runtime_error(reason),
      status_(status),
      place_(place ? Diagnostics::nameOfPlace(*place) : "") {}

Failure Failure::ofSystem(const std::string& place, const std::string& what) {
    const std::string message = std::generic_category().message(errno);
    return {ExitStatus::noResult, place, what.empty() ? message : what + ": " + message};
}

}  // namespace TkPPDUpdating
