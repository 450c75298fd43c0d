#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sync/QueueBackups.h"
#include "sync/QueueScheduler.h"
#include "sync/QueueSync.h"
#include "sync/QueueSyncRun.h"
#include "tools/Backends.h"
#include "tools/Command.h"
#include "tools/SchedulerOptions.h"
#include "tools/StatusURIOptions.h"
#include "tools/SyncReport.h"
#include "tools/UpdaterSelection.h"

namespace TkPPDUpdating {

/// "sync": brings the PPDs of print queues in step with the printers behind them, through the
/// scheduler. Interrupted by a signal, it finishes or abandons each queue whole and says which.
class SyncCommand : public Command {
  public:
    static constexpr const char* kName = "sync";

    /// `backends` is not owned and must outlive the object.
    SyncCommand(CLI::App& application, const Backends& backends);

    ExitStatus run() override;

  private:
    void addQueueOptions();
    void addTimeOptions();
    void addBackupOptions();
    void addResultOptions();
    std::unique_ptr<QueueBackups> openBackups() const;
    std::vector<std::string> queuesToSync(const QueueScheduler& scheduler) const;
    std::vector<std::string> allQueues(const QueueScheduler& scheduler) const;
    std::unique_ptr<OrbPPDConcreteUpdatingManager> makeManager() const;
    QueueSync::Options syncOptions(std::map<std::string, std::string> statusURIs,
                                   const QueueBackups* backups) const;
    QueueSyncRun::Summary reportedRun(const QueueSync& sync,
                                      const std::vector<std::string>& queueNames,
                                      const SyncReport::Options& reportOptions) const;
    ExitStatus statusFor(const QueueSyncRun::Summary& summary) const;

    const Backends& backends_;
    std::vector<std::string> queueNames_;
    bool areAllWanted_ = false;
    SchedulerOptions schedulerOptions_;
    StatusURIOptions statusURIOptions_;
    std::vector<std::string> excluded_;
    bool isDryRun_ = false;
    bool isExplained_ = false;
    bool isChangeAnExitStatus_ = false;
    bool isPageSizeWanted_ = false;
    bool asksPostScript_ = false;
    std::vector<std::string> accepted_;
    std::size_t jobs_ = 4;
    std::optional<unsigned> timeLimit_;
    std::optional<std::string> backupFolder_;
    bool keepsAllBackups_ = false;
    SyncReport::Options reportOptions_;
    UpdaterSelection updaters_;
};

}  // namespace TkPPDUpdating
