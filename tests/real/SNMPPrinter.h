#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "tests/real/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {

/// An SNMP printer: snmpd of net-snmp on 127.0.0.1 and ::1, which serves the rows of a printer
/// through a script of its "pass_persist".
class SNMPPrinter {
  public:
    /// As `PrivateScheduler::missingPrograms`.
    static std::string missingPrograms();

    /// `rows` in the format of `rowsOfText`. `port` 0 stands for a free one; those below 1024 need
    /// the right to (see `PrivateNetwork`).
    explicit SNMPPrinter(const std::string& rows, int port = 0,
                         const std::string& community = "public");

    std::string URI() const { return "snmp://127.0.0.1:" + std::to_string(port_); }

    /// How many requests it has been sent.
    std::size_t requests() const;

    void stop() { process_.reset(); }

  private:
    bool start(const std::string& community);
    bool answers(const std::string& community) const;

    TemporaryDirectory directory_;
    int port_ = 0;
    std::unique_ptr<ChildProcess> process_;
};

}  // namespace TkPPDUpdating::Testing
