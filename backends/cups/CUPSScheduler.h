#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

#include "backends/cups/QueueScheduler.h"
#include "backends/ppdmodel/PPDModelCore.h"

namespace TkPPDUpdating {

/// The CUPS scheduler (CUPS 2.x, "CUPS Implementation of IPP"), asked through libcups. Nobody is
/// ever asked for a password: where the scheduler's policy wants one, it refuses. Safe for several
/// threads.
class CUPSScheduler : public QueueScheduler {
  public:
    struct Limits {
        /// For each operation as a whole.
        std::chrono::milliseconds time = std::chrono::seconds(30);
        /// The longest PPD, in bytes.
        std::size_t bytes = std::size_t{8} << 20U;
    };

    /// `server` is HOST, HOST:PORT or the path of a domain socket; empty for the one that
    /// `CUPS_SERVER` and client.conf name, which is the machine's own when they do not.
    explicit CUPSScheduler(std::string server = {});
    CUPSScheduler(std::string server, const Limits& limits);

    /// What the scheduler is called: as it was named, else as the environment and client.conf name
    /// it.
    std::string name() const;

    std::optional<std::vector<std::string>> queueNames(QueueFailure& failure) const override;
    SchedulerPPD PPDOfQueue(const std::string& name, QueueFailure& failure) const override;
    SchedulerQueueAndPPD queueAndPPDWithName(const std::string& name,
                                             QueueFailure& failure) const override;
    bool installPPD(const std::string& name, const std::string& text,
                    QueueFailure& failure) const override;

  private:
    template <typename Result, typename Talk>
    Result ask(QueueFailure& failure, const Talk& talk) const;

    std::string server_;
    Limits limits_;
};

/// Gives the core library the PPDs of queues as the scheduler holds them.
PPDModelCore::QueuePPDSource queuePPDSource(std::shared_ptr<const QueueScheduler> scheduler);

}  // namespace TkPPDUpdating
