#pragma once

#include <memory>
#include <string>

#include "tests/real/ChildProcess.h"
#include "tests/real/MessageBus.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {

/// avahi-daemon on the loopback interface of the process's private network, through which programs
/// announce and find services (DNS-SD, RFC 6763). It keeps its files in /run, of which it would
/// take no second one of a computer: the process needs a private one (see `PrivateNetwork`).
class MulticastDNSResponder {
  public:
    /// As `PrivateScheduler::missingPrograms`.
    static std::string missingPrograms();

    /// The host gets the name "printer-host.local".
    MulticastDNSResponder();

    const MessageBus& bus() const { return bus_; }

  private:
    TemporaryDirectory directory_;
    MessageBus bus_;
    std::unique_ptr<ChildProcess> process_;
};

}  // namespace TkPPDUpdating::Testing
