#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/real/ChildProcess.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {

/// A CUPS scheduler of the test's own, on a free port of 127.0.0.1 and a domain socket, with all
/// that it writes in a directory of its own.
class PrivateScheduler {
  public:
    /// The programs that it needs and that are not installed, for the word with which a test
    /// fails; empty when all are.
    static std::string missingPrograms();

    /// Lets everybody on this machine do everything.
    PrivateScheduler();

    /// Starts it again with its queues, so that only who has a password may change them.
    void lock();

    std::string server() const { return "127.0.0.1:" + std::to_string(port_); }
    std::string socketPath() const { return (directory_.path() / "cups.sock").string(); }

    /// Makes a queue with a PPD; without one when `PPDPath` is empty.
    void addQueue(const std::string& name, const std::string& deviceURI,
                  const std::string& PPDPath) const;

    /// Runs lpadmin, lpoptions or another client of CUPS ("-h" and the server are added) and gives
    /// what it wrote.
    ProgramResult runClient(std::vector<std::string> arguments) const;

    /// Ends it; the port is then closed.
    void stop() { process_->stop(); }

    /// The scheduler's own file of the queue's PPD.
    std::string PPDPath(const std::string& queueName) const {
        return (directory_.path() / "ppd" / (queueName + ".ppd")).string();
    }

    const TemporaryDirectory& directory() const { return directory_; }

  private:
    void startOnFreePort(bool isLocked);
    void configure(bool isLocked) const;
    bool start();

    TemporaryDirectory directory_;
    int port_ = 0;
    std::unique_ptr<ChildProcess> process_;
};

}  // namespace TkPPDUpdating::Testing
