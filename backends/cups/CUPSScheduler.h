#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "sync/QueueScheduler.h"

namespace TkPPDUpdating {

/// The CUPS scheduler (CUPS 2.x, "CUPS Implementation of IPP"), asked through libcups. Nobody is
/// ever asked for a password: where the scheduler's policy wants one, it refuses. Safe for several
/// threads.
class CUPSScheduler : public QueueScheduler {
  public:
    struct Limits {
        /// For each talk as a whole.
        std::chrono::milliseconds time = std::chrono::seconds(30);
        /// The longest answer, in bytes, a PPD included.
        std::size_t bytes = std::size_t{8} << 20U;
        /// Set by anybody at any time to end all talks early. Null for nobody; else it outlives the
        /// last talk.
        const std::atomic<bool>* isCancelled = nullptr;
    };

    /// `server` is HOST, HOST:PORT or the path of a domain socket; empty for the one that
    /// `CUPS_SERVER` and client.conf name, which is the machine's own when they do not.
    explicit CUPSScheduler(std::string server = {});
    CUPSScheduler(std::string server, const Limits& limits);

    std::string name() const override;
    std::optional<std::vector<std::string>> queueNames(QueueFailure& failure) const override;
    bool talkAbout(const std::string& queueName, const std::function<void(QueueTalk& queue)>& talk,
                   Patience patience, QueueFailure& failure) const override;

  private:
    std::string server_;
    Limits limits_;
};

}  // namespace TkPPDUpdating
