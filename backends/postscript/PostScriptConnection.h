#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

#include "backends/addresses/NetworkAddresses.h"
#include "core_interface/OrbCSError.h"
#include "text/FileDescriptor.h"

namespace TkPPDUpdating {

/// One TCP connection to a printer, which ends in time whatever the printer does.
class PostScriptConnection {
  public:
    using Clock = std::chrono::steady_clock;

    enum class End { none, timeout, closed, tooMuch, cancelled };

    /// `isCancelled` may be null.
    explicit PostScriptConnection(const std::atomic<bool>* isCancelled)
        : isCancelled_(isCancelled) {}

    /// False, with the cause in `error`, when the printer takes no connection until then.
    bool open(const NetworkAddress& address, Clock::time_point deadline, OrbCSError& error);

    /// Sends all of it, and takes what comes meanwhile, at most `mostBytes`.
    End send(std::string_view bytes, std::size_t mostBytes, Clock::time_point deadline);

    /// Waits for more, at most `mostBytes` in all.
    End receive(std::size_t mostBytes, Clock::time_point deadline);

    /// What has come since it was last forgotten.
    const std::string& received() const { return received_; }
    void forget() { received_.clear(); }

    /// Sends these last bytes, and gives the printer until then to end the connection itself, so
    /// that it need not take it for broken. When somebody cancels, nothing is waited for, but the
    /// bytes go if the printer takes them at once.
    void finish(std::string_view last, Clock::time_point deadline);

  private:
    /// Waits until the connection is ready for one of the events of poll(2), or has ended.
    End waitFor(short events, Clock::time_point deadline, short& happened) const;
    End take(std::size_t mostBytes);

    const std::atomic<bool>* isCancelled_;
    FileDescriptor socket_;
    std::string received_;
};

}  // namespace TkPPDUpdating
