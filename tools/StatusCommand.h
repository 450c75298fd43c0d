#pragma once

#include <string>

#include "tools/Command.h"

namespace TkPPDUpdating {

/// "status": what a device reports, in the recorded format, so that a printer can be recorded once
/// and replayed anywhere.
class StatusCommand : public Command {
  public:
    explicit StatusCommand(CLI::App& application);

    ExitStatus run() override;

  private:
    std::string deviceURI_;
};

}  // namespace TkPPDUpdating
