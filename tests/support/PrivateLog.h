#pragma once

#include <string>
#include <vector>

#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {

/// A log in the place of the system's: a socket to which syslog(3) writes.
class PrivateLog {
  public:
    PrivateLog();
    PrivateLog(const PrivateLog&) = delete;
    PrivateLog& operator=(const PrivateLog&) = delete;
    ~PrivateLog();

    /// Runs a program that has this log, in a mount namespace of its own.
    ProgramResult run(const std::vector<std::string>& arguments) const;

    /// What was written since the last call, a datagram each: "<priority>time program[process]:
    /// text".
    std::vector<std::string> messages() const;

  private:
    TemporaryDirectory folder_;
    int socket_;
};

}  // namespace TkPPDUpdating::Testing
