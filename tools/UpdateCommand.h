#pragma once

#include <optional>
#include <string>

#include "ppd/PPDText.h"
#include "tools/Backends.h"
#include "tools/Command.h"
#include "tools/DeviceOutcome.h"
#include "tools/RunOptions.h"

namespace TkPPDUpdating {

/// "update": the PPD with the values of a printer or of a queue's PPD, to standard output or into a
/// file.
class UpdateCommand : public Command {
  public:
    /// Neither is owned; both outlive the command.
    UpdateCommand(CLI::App& application, const Backends& backends);

    ExitStatus run() override;

  private:
    PPDText textOfFile() const;
    PPDText updatedText(const PPDText& before) const;
    void refuseHarm(const PPDText& before, const std::string& after) const;
    void tellChanges(const PPDText& before, const PPDText& after) const;

    const Backends& backends_;
    RunOptions runOptions_;
    DeviceOutcome device_;
    std::string file_;
    std::optional<std::string> queueName_;
    std::optional<std::string> output_;
    bool isInPlace_ = false;
    bool isDiff_ = false;
};

}  // namespace TkPPDUpdating
