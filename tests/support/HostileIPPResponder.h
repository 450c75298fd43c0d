#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/IPPBytes.h"

namespace TkPPDUpdating::Testing {

/// One connection that a script serves. Every operation gives false once the other side is gone or
/// the responder ends.
class ResponderConnection {
  public:
    explicit ResponderConnection(int socket) : socket_(socket) {}

    /// Reads one HTTP request with its body, into `whole` unless that is null.
    bool readRequest(std::string* whole = nullptr) const;
    bool send(std::string_view bytes) const;
    /// Sends byte by byte.
    bool drip(std::string_view bytes, std::chrono::milliseconds pause) const;
    /// Waits until the other side closes.
    void waitForClose() const;

  private:
    int socket_;
};

/// A TCP server that does to each connection what a script says: for all that a decent printer
/// would never do.
class HostileIPPResponder {
  public:
    /// Called on a thread of its own for each connection, which is closed when it returns.
    using Script = std::function<void(const ResponderConnection& connection)>;

    /// On a free port of 127.0.0.1.
    explicit HostileIPPResponder(Script script) : HostileIPPResponder(std::move(script), 0) {}
    /// On that port of all addresses of this computer (for a `PrivateNetwork`); 0 is as above.
    HostileIPPResponder(Script script, int port);
    HostileIPPResponder(const HostileIPPResponder&) = delete;
    HostileIPPResponder& operator=(const HostileIPPResponder&) = delete;
    ~HostileIPPResponder();

    /// A script that answers each request of a connection with the bytes.
    static Script answering(std::string bytes);
    /// An HTTP answer with status 200 and an IPP body of known length.
    static std::string HTTPAnswer(std::string_view body);

    int port() const { return port_; }
    std::string URI(const std::string& path = "/ipp/print") const {
        return "ipp://127.0.0.1:" + std::to_string(port_) + path;
    }
    int connections() const { return connections_; }

  private:
    void accept();

    Script script_;
    int listener_ = -1;
    int port_ = 0;
    std::atomic<int> connections_{0};
    std::mutex mutex_;
    bool isEnding_ = false;
    std::vector<int> sockets_;
    std::vector<std::thread> servers_;
    std::thread acceptor_;
};

}  // namespace TkPPDUpdating::Testing
