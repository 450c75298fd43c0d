#include "tests/support/HostileIPPResponder.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace TkPPDUpdating::Testing {

bool ResponderConnection::readRequest(std::string* whole) const {
    std::string request;
    std::array<char, 4096> buffer{};
    for (;;) {
        const std::size_t head = request.find("\r\n\r\n");
        if (head != std::string::npos) {
            std::string headers = request.substr(0, head);
            std::transform(headers.begin(), headers.end(), headers.begin(), ::tolower);
            const std::size_t field = headers.find("content-length:");
            const std::size_t length =
                field == std::string::npos
                    ? 0
                    : std::strtoul(headers.c_str() + field + sizeof("content-length:") - 1, nullptr,
                                   10);
            if (request.size() >= head + 4 + length) {
                if (whole) {
                    *whole = std::move(request);
                }
                return true;
            }
        }
        const ssize_t count = recv(socket_, buffer.data(), buffer.size(), 0);
        if (count <= 0) {
            return false;
        }
        request.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

bool ResponderConnection::send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool ResponderConnection::drip(std::string_view bytes, std::chrono::milliseconds pause) const {
    for (const char byte : bytes) {
        if (!send({&byte, 1})) {
            return false;
        }
        pollfd closing{socket_, POLLRDHUP, 0};
        if (poll(&closing, 1, static_cast<int>(pause.count())) > 0) {
            return false;
        }
    }
    return true;
}

void ResponderConnection::waitForClose() const {
    std::array<char, 4096> buffer{};
    while (recv(socket_, buffer.data(), buffer.size(), 0) > 0) {
    }
}

HostileIPPResponder::HostileIPPResponder(Script script, int port) : script_(std::move(script)) {
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(port == 0 ? INADDR_LOOPBACK : INADDR_ANY);
    address.sin_port = htons(static_cast<in_port_t>(port));
    socklen_t length = sizeof(address);
    constexpr int kBacklog = 256;
    if (bind(listener_, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
        listen(listener_, kBacklog) != 0) {
        throw std::runtime_error("the responder cannot listen");
    }
    getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
    port_ = ntohs(address.sin_port);
    acceptor_ = std::thread([this] { accept(); });
}

HostileIPPResponder::~HostileIPPResponder() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        for (const int connected : sockets_) {
            shutdown(connected, SHUT_RDWR);
        }
    }
    shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    for (std::thread& server : servers_) {
        server.join();
    }
    for (const int connected : sockets_) {
        close(connected);
    }
    close(listener_);
}

void HostileIPPResponder::accept() {
    for (;;) {
        const int connected = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connected < 0) {
            return;
        }
        const std::lock_guard lock(mutex_);
        if (isEnding_) {
            close(connected);
            return;
        }
        ++connections_;
        sockets_.push_back(connected);
        servers_.emplace_back([this, connected] {
            script_(ResponderConnection(connected));
            shutdown(connected, SHUT_RDWR);
        });
    }
}

HostileIPPResponder::Script HostileIPPResponder::answering(std::string bytes) {
    return [bytes = std::move(bytes)](const ResponderConnection& connection) {
        while (connection.readRequest() && connection.send(bytes)) {
        }
    };
}

std::string HostileIPPResponder::HTTPAnswer(std::string_view body) {
    return "HTTP/1.1 200 OK\r\nContent-Type: application/ipp\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
}

}  // namespace TkPPDUpdating::Testing
