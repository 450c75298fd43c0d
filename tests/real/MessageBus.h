#pragma once

#include <memory>
#include <string>

#include "tests/real/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {

/// A D-Bus message bus of the test's own.
class MessageBus {
  public:
    MessageBus();

    /// What a program gets that is to use it instead of the system's.
    ChildProcess::Environment environment() const {
        return {{"DBUS_SYSTEM_BUS_ADDRESS", address()}};
    }
    std::string address() const { return "unix:path=" + (directory_.path() / "bus.sock").string(); }

  private:
    TemporaryDirectory directory_;
    std::unique_ptr<ChildProcess> process_;
};

}  // namespace TkPPDUpdating::Testing
