#pragma once

#include <string>

#include "tools/Backends.h"
#include "tools/Command.h"

namespace TkPPDUpdating {

/// "status": what a device reports, in the recorded format, so that a printer can be recorded once
/// and replayed anywhere.
class StatusCommand : public Command {
  public:
    static constexpr const char* kName = "status";

    /// Neither is owned; both outlive the command.
    StatusCommand(CLI::App& application, const Backends& backends);

    ExitStatus run() override;

  private:
    const Backends& backends_;
    std::string deviceURI_;
};

}  // namespace TkPPDUpdating
