#pragma once

#include <memory>
#include <string>

#include "tests/real/ChildProcess.h"
#include "tests/real/MessageBus.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {

/// An IPP printer: ippeveprinter on the loopback interface.
class SimulatedPrinter {
  public:
    /// Where it is to be found.
    struct Place {
        /// 0 stands for a free one; those below 1024 need the right to (see `PrivateNetwork`).
        int port = 0;
        /// The message bus (of a `MulticastDNSResponder`); one of its own when empty.
        std::string busAddress = {};
        /// Whether it announces the service "Test" (_ipp._tcp) on that bus.
        bool isAnnounced = false;
    };

    /// As `PrivateScheduler::missingPrograms`.
    static std::string missingPrograms();

    /// `attributes` in the format of ippeveprinter's attributes file: "ATTR SYNTAX NAME VALUES";
    /// those that ippeveprinter makes up when empty.
    explicit SimulatedPrinter(const std::string& attributes) : SimulatedPrinter(attributes, {}) {}
    SimulatedPrinter(const std::string& attributes, Place place);

    /// "ipp://localhost:PORT/ipp/print", the same for the life of the object.
    std::string URI() const { return URIWithScheme("ipp"); }
    std::string URIWithScheme(const std::string& scheme) const {
        return scheme + "://localhost:" + std::to_string(port_) + "/ipp/print";
    }

    /// Becomes a printer with other attributes, at the same URI.
    void setAttributes(const std::string& attributes);

    void stop() { printer_.reset(); }

  private:
    bool startPrinter();

    Place place_;
    TemporaryDirectory directory_;
    int port_ = 0;
    std::unique_ptr<MessageBus> bus_;
    std::unique_ptr<ChildProcess> printer_;
};

}  // namespace TkPPDUpdating::Testing
