#pragma once

#include <optional>
#include <string>

#include "tools/Backends.h"
#include "tools/Command.h"

namespace TkPPDUpdating {

/// "updaters": the registered updater classes, or those that apply to a PPD.
class UpdatersCommand : public Command {
  public:
    static constexpr const char* kName = "updaters";

    /// Neither is owned; both outlive the command.
    UpdatersCommand(CLI::App& application, const Backends& backends);

    ExitStatus run() override;

  private:
    const Backends& backends_;
    std::optional<std::string> file_;
};

}  // namespace TkPPDUpdating
