#pragma once

#include <memory>
#include <string>

#include "tests/real/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {

/// An IPP printer: ippeveprinter on a free port of 127.0.0.1, with a message bus of its own.
class SimulatedPrinter {
  public:
    /// As `PrivateScheduler::missingPrograms`.
    static std::string missingPrograms();

    /// `attributes` in the format of ippeveprinter's attributes file: "ATTR SYNTAX NAME VALUES".
    explicit SimulatedPrinter(const std::string& attributes);

    /// "ipp://localhost:PORT/ipp/print", the same for the life of the object.
    std::string URI() const { return URIWithScheme("ipp"); }
    std::string URIWithScheme(const std::string& scheme) const {
        return scheme + "://localhost:" + std::to_string(port_) + "/ipp/print";
    }

    /// Becomes a printer with other attributes, at the same URI.
    void setAttributes(const std::string& attributes);

    void stop() { printer_.reset(); }

  private:
    void startBus();
    bool startPrinter();

    TemporaryDirectory directory_;
    int port_ = 0;
    std::unique_ptr<ChildProcess> bus_;
    std::unique_ptr<ChildProcess> printer_;
};

}  // namespace TkPPDUpdating::Testing
