#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "backends/cups/QueueScheduler.h"
#include "tools/Command.h"
#include "tools/RunOptions.h"
#include "tools/SyncReport.h"

namespace TkPPDUpdating {

/// "sync": brings the PPDs of print queues in step with the printers behind them, through the
/// scheduler. Interrupted by a signal, it finishes or abandons each queue whole and says which.
class SyncCommand : public Command {
  public:
    explicit SyncCommand(CLI::App& application);

    ExitStatus run() override;

  private:
    std::vector<std::string> queuesToSync(const QueueScheduler& scheduler) const;

    std::vector<std::string> queueNames_;
    bool areAllWanted_ = false;
    std::string server_;
    bool isDryRun_ = false;
    std::size_t jobs_ = 4;
    SyncReport::Options reportOptions_;
    RunOptions runOptions_;
};

}  // namespace TkPPDUpdating
