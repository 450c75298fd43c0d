#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/support/SNMPBytes.h"

namespace TkPPDUpdating::Testing {

/// A UDP server on a free port of 127.0.0.1 that answers each request as a script says: for all
/// that a decent printer would never do.
class HostileSNMPResponder {
  public:
    /// Sends a datagram to who asked; from another port when `isElsewhere`.
    using Sender = std::function<void(std::string_view datagram, bool isElsewhere)>;
    /// Called for each request, on the responder's thread.
    using Script = std::function<void(const SNMPSeenRequest& request, const Sender& send)>;

    explicit HostileSNMPResponder(Script script);
    HostileSNMPResponder(const HostileSNMPResponder&) = delete;
    HostileSNMPResponder& operator=(const HostileSNMPResponder&) = delete;
    ~HostileSNMPResponder();

    /// A script that sends what is made of each request.
    static Script answering(std::function<std::string(const SNMPSeenRequest& request)> answer);

    std::string URI() const { return "snmp://127.0.0.1:" + std::to_string(port_); }

    /// All requests so far.
    std::vector<SNMPSeenRequest> requests() const;

  private:
    void serve();
    void wake() const;

    Script script_;
    int socket_ = -1;
    int elsewhere_ = -1;
    int port_ = 0;
    std::atomic<bool> isEnding_{false};
    mutable std::mutex mutex_;
    std::vector<SNMPSeenRequest> requests_;
    std::thread server_;
};

}  // namespace TkPPDUpdating::Testing
