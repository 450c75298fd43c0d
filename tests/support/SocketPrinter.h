#pragma once

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "text/FileDescriptor.h"

namespace TkPPDUpdating::Testing {

/// One connection to a printer that a test plays.
class SocketTalk {
  public:
    SocketTalk(int socket, const std::atomic<bool>& isOver) : socket_(socket), isOver_(isOver) {}

    /// What comes next, a few bytes or many; nothing when the other side, or the test, has ended.
    std::optional<std::string> next() const;

    /// False when nobody takes it any more.
    bool send(std::string_view bytes) const;

    /// False when the test has ended meanwhile.
    bool pause(std::chrono::milliseconds time) const;

  private:
    int socket_;
    const std::atomic<bool>& isOver_;
};

/// A printer that takes jobs on a port of 127.0.0.1, one connection at a time, and does with each
/// what a function says.
class SocketPrinter {
  public:
    using Conduct = std::function<void(const SocketTalk& talk)>;

    explicit SocketPrinter(Conduct conduct);
    SocketPrinter(const SocketPrinter&) = delete;
    SocketPrinter& operator=(const SocketPrinter&) = delete;
    ~SocketPrinter();

    std::string URI() const { return "socket://127.0.0.1:" + std::to_string(port_); }

    /// How many connections it has had.
    int connectionCount() const { return connections_; }

  private:
    void serve();

    Conduct conduct_;
    FileDescriptor listener_;
    int port_ = 0;
    std::atomic<bool> isOver_ = false;
    std::atomic<int> connections_ = 0;
    std::jthread thread_;
};

/// A PostScript printer: Ghostscript behind a port, with a printer's language switch before it.
class PostScriptPrinter {
  public:
    /// As `PrivateScheduler::missingPrograms`.
    static std::string missingPrograms();

    /// `setup` is PostScript code that every job begins with, such as what is in the page device.
    /// Interpreters for that many jobs are ready before it is, so that nobody waits for them.
    explicit PostScriptPrinter(const std::string& setup, int jobs = 1);
    ~PostScriptPrinter();

    const std::string& URI() const { return URI_; }
    int connectionCount() const { return printer_->connectionCount(); }

    /// All that it was sent.
    std::string received() const;

  private:
    class Interpreter;
    void print(const SocketTalk& talk);

    std::string URI_;
    mutable std::mutex mutex_;
    std::string received_;
    /// For the next jobs.
    std::vector<std::unique_ptr<Interpreter>> ready_;
    std::unique_ptr<SocketPrinter> printer_;
};

}  // namespace TkPPDUpdating::Testing
