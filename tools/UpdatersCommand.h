#pragma once

#include <optional>
#include <string>

#include "tools/Command.h"

namespace TkPPDUpdating {

/// "updaters": the registered updater classes, or those that apply to a PPD.
class UpdatersCommand : public Command {
  public:
    static constexpr const char* kName = "updaters";

    /// Not owned; outlives the command.
    explicit UpdatersCommand(CLI::App& application);

    ExitStatus run() override;

  private:
    std::optional<std::string> file_;
};

}  // namespace TkPPDUpdating
