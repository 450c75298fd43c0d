#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace TkPPDUpdating::Testing {

/// One connection that a script serves. Every operation gives false once the other side is gone or
/// the responder ends.
class ResponderConnection {
  public:
    explicit ResponderConnection(int socket) : socket_(socket) {}

    /// Reads one HTTP request with its body.
    bool readRequest() const;
    bool send(std::string_view bytes) const;
    /// Sends byte by byte.
    bool drip(std::string_view bytes, std::chrono::milliseconds pause) const;
    /// Waits until the other side closes.
    void waitForClose() const;

  private:
    int socket_;
};

/// A TCP server on a free port of 127.0.0.1 that does to each connection what a script says: for
/// all that a decent printer would never do.
class HostileIPPResponder {
  public:
    /// Called on a thread of its own for each connection, which is closed when it returns.
    using Script = std::function<void(const ResponderConnection& connection)>;

    explicit HostileIPPResponder(Script script);
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

/// Builds the bytes of an IPP answer by hand, so that they can be wrong in every way.
class IPPBytes {
  public:
    /// Version 2.0, a status code, request 1, and the operation group that every answer begins
    /// with.
    explicit IPPBytes(std::uint16_t statusCode = 0);

    IPPBytes& delimiter(unsigned char tag);
    /// A named value, or a further one when the name is empty.
    IPPBytes& value(unsigned char tag, std::string_view name, std::string_view value);
    IPPBytes& integer(std::string_view name, std::int32_t number);
    IPPBytes& keyword(std::string_view name, std::string_view keyword);
    /// Ends the message.
    std::string end();

    const std::string& bytes() const { return bytes_; }

  private:
    std::string bytes_;
};

}  // namespace TkPPDUpdating::Testing
