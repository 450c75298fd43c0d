#pragma once

#include <stdexcept>
#include <string>

#include "tools/ExitStatus.h"

namespace TkPPDUpdating {

/// Ends a command: what the user is told, and the exit status.
class Failure : public std::runtime_error {
  public:
    /// `place` is the file or queue that it is about; empty when there is none. `reason` is one
    /// phrase.
    Failure(ExitStatus status, std::string place, const std::string& reason);

    ExitStatus status() const { return status_; }
    const std::string& place() const { return place_; }

  private:
    ExitStatus status_;
    std::string place_;
};

}  // namespace TkPPDUpdating
