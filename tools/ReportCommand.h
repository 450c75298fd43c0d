#pragma once

#include <string>
#include <vector>

#include "tools/Backends.h"
#include "tools/Command.h"
#include "tools/HTMLReport.h"
#include "tools/SchedulerOptions.h"

namespace TkPPDUpdating {

/// "report": makes one page of what synchronisations of one or many servers have told as JSON, or
/// of a dry run of its own.
class ReportCommand : public Command {
  public:
    static constexpr const char* kName = "report";

    /// `backends` is not owned and must outlive the object.
    ReportCommand(CLI::App& application, const Backends& backends);

    ExitStatus run() override;

  private:
    std::vector<ServerReport> serversOfFiles() const;
    ServerReport serverOfOwnRun() const;

    const Backends& backends_;
    std::string page_;
    std::vector<std::string> files_;
    bool isOwnRun_ = false;
    SchedulerOptions schedulerOptions_;
};

}  // namespace TkPPDUpdating
