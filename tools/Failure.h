#pragma once

#include <optional>
#include <stdexcept>
#include <string>

#include "tools/ExitStatus.h"

namespace TkPPDUpdating {

/// Ends a command: what the user is told, and the exit status.
class Failure : public std::runtime_error {
  public:
    /// `place` is the file or queue that it is about, by the name that the user gave. `reason` is
    /// one phrase.
    Failure(ExitStatus status, const std::optional<std::string>& place, const std::string& reason);

    /// No result, because of the system's last error (errno): "WHAT: MESSAGE", or just the message.
    static Failure ofSystem(const std::string& place, const std::string& what = {});

    ExitStatus status() const { return status_; }
    /// Empty when there is none; an empty name is shown as "".
    const std::string& place() const { return place_; }

  private:
    ExitStatus status_;
    std::string place_;
};

}  // namespace TkPPDUpdating
