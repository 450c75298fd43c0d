#pragma once

#include <memory>
#include <optional>
#include <string>

#include "backends/ppdmodel/PPDModelFile.h"
#include "manager/ITkPPDUpdater.h"
#include "tools/Backends.h"
#include "tools/Command.h"
#include "tools/DeviceInquiry.h"
#include "tools/UpdaterSelection.h"

namespace TkPPDUpdating {

/// "values": what the updaters would write into a PPD, as one JSON object.
class ValuesCommand : public Command {
  public:
    static constexpr const char* kName = "values";

    /// Neither is owned; both outlive the command.
    ValuesCommand(CLI::App& application, const Backends& backends);

    ExitStatus run() override;

  private:
    std::shared_ptr<const PPDModelFile> PPDOfQueue() const;
    std::shared_ptr<const PPDModelFile> PPDOfFile() const;
    OrbPPDUpdatingValues valuesFor(const std::shared_ptr<const PPDModelFile>& PPDFile,
                                   const std::string& place) const;

    const Backends& backends_;
    UpdaterSelection updaters_;
    DeviceInquiry device_;
    std::optional<std::string> queueName_;
    std::string file_;
};

}  // namespace TkPPDUpdating
