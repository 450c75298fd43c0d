#pragma once

#include <memory>
#include <optional>
#include <string>

#include "backends/ppdmodel/PPDModelFile.h"
#include "ppd/PPDText.h"
#include "sync/PPDUpdate.h"
#include "tools/Backends.h"
#include "tools/Command.h"
#include "tools/DeviceInquiry.h"
#include "tools/UpdaterSelection.h"

namespace TkPPDUpdating {

/// "update": the PPD with the values of a printer or of a queue's PPD, to standard output or into a
/// file.
class UpdateCommand : public Command {
  public:
    static constexpr const char* kName = "update";

    /// Neither is owned; both outlive the command.
    UpdateCommand(CLI::App& application, const Backends& backends);

    ExitStatus run() override;

  private:
    PPDText updatedText(const std::shared_ptr<const PPDModelFile>& before) const;
    PPDText textWithQueue(const PPDModelFile& before) const;
    PPDText textWithDevice(const std::shared_ptr<const PPDModelFile>& before) const;
    void refuseHarm(const PPDModelFile& before, const std::string& after) const;
    bool isFileWritten() const { return isInPlace_ || output_; }
    PPDUpdate::Defaults defaults() const;
    void tellChanges(const PPDText& before, const PPDText& after) const;

    const Backends& backends_;
    UpdaterSelection updaters_;
    DeviceInquiry device_;
    std::string file_;
    std::optional<std::string> queueName_;
    std::optional<std::string> output_;
    bool isInPlace_ = false;
    bool isDiff_ = false;
    bool isWithoutDevice_ = false;
};

}  // namespace TkPPDUpdating
