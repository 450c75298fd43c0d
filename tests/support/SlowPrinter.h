#pragma once

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "tests/support/HostileIPPResponder.h"

namespace TkPPDUpdating::Testing {

/// A printer that takes what is sent to it only once it is let; remembers how often it was sent
/// something.
class SlowPrinter {
  public:
    SlowPrinter()
        : responder_([this](const ResponderConnection& /*connection*/) {
              for (int tries = 0; tries < 2000 && !mayPrint; ++tries) {
                  std::this_thread::sleep_for(std::chrono::milliseconds(10));
              }
          }) {}

    /// Without SNMP, which the scheduler's backend waits for in vain.
    std::string URI() const {
        return "socket://127.0.0.1:" + std::to_string(responder_.port()) + "/?snmp=false";
    }
    int documents() const { return responder_.connections(); }

    std::atomic<bool> mayPrint{false};

  private:
    HostileIPPResponder responder_;
};

}  // namespace TkPPDUpdating::Testing
