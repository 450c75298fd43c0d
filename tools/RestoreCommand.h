#pragma once

#include <string>

#include "ppd/PPDText.h"
#include "sync/QueueInstallation.h"
#include "tools/Command.h"
#include "tools/SchedulerOptions.h"

namespace TkPPDUpdating {

/// "restore": puts back the PPD of a queue that "sync --backup" replaced.
class RestoreCommand : public Command {
  public:
    static constexpr const char* kName = "restore";

    explicit RestoreCommand(CLI::App& application);

    ExitStatus run() override;

  private:
    PPDText keptPPD() const;
    QueueInstallation::Wish wishFor(const QueueScheduler& scheduler, PPDText PPD) const;
    ExitStatus install(const QueueScheduler& scheduler, const QueueInstallation::Wish& wish) const;

    SchedulerOptions schedulerOptions_;
    std::string folder_;
    std::string queueName_;
};

}  // namespace TkPPDUpdating
