#include "tests/support/HostileSNMPResponder.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <tuple>
#include <utility>

namespace TkPPDUpdating::Testing {

namespace {

/// A socket on a free port of 127.0.0.1, and the port.
std::pair<int, int> boundSocket() {
    const int bound = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    if (bind(bound, reinterpret_cast<sockaddr*>(&address), length) != 0) {
        throw std::runtime_error("the responder cannot listen");
    }
    getsockname(bound, reinterpret_cast<sockaddr*>(&address), &length);
    return {bound, ntohs(address.sin_port)};
}

}  // namespace

HostileSNMPResponder::HostileSNMPResponder(Script script) : script_(std::move(script)) {
    std::tie(socket_, port_) = boundSocket();
    elsewhere_ = boundSocket().first;
    server_ = std::thread([this] { serve(); });
}

HostileSNMPResponder::~HostileSNMPResponder() {
    isEnding_ = true;
    wake();
    server_.join();
    close(socket_);
    close(elsewhere_);
}

/// By a datagram of its own, which is no request.
void HostileSNMPResponder::wake() const {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<in_port_t>(port_));
    sendto(elsewhere_, nullptr, 0, 0, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
}

HostileSNMPResponder::Script HostileSNMPResponder::answering(
    std::function<std::string(const SNMPSeenRequest& request)> answer) {
    return [answer = std::move(answer)](const SNMPSeenRequest& request, const Sender& send) {
        send(answer(request), false);
    };
}

std::vector<SNMPSeenRequest> HostileSNMPResponder::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

void HostileSNMPResponder::serve() {
    constexpr int kPause = 20;
    std::string buffer(65'536, '\0');
    while (!isEnding_) {
        pollfd waiting{socket_, POLLIN, 0};
        if (poll(&waiting, 1, kPause) <= 0) {
            continue;
        }
        sockaddr_in client{};
        socklen_t length = sizeof(client);
        const ssize_t count = recvfrom(socket_, buffer.data(), buffer.size(), 0,
                                       reinterpret_cast<sockaddr*>(&client), &length);
        const auto request = SNMPSeenRequest::requestOfBytes(
            std::string_view(buffer.data(), count < 0 ? 0 : static_cast<std::size_t>(count)));
        if (!request) {
            continue;
        }
        {
            const std::lock_guard lock(mutex_);
            requests_.push_back(*request);
        }
        script_(*request, [&](std::string_view datagram, bool isElsewhere) {
            sendto(isElsewhere ? elsewhere_ : socket_, datagram.data(), datagram.size(), 0,
                   reinterpret_cast<const sockaddr*>(&client), length);
        });
    }
}

}  // namespace TkPPDUpdating::Testing
