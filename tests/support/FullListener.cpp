#include "tests/support/FullListener.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

#include "tests/support/HostileIPPResponder.h"

namespace TkPPDUpdating::Testing {

FullListener::FullListener(std::string answer, const std::string& field) {
    answer.insert(answer.find("\r\n") + 2, field);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (bind(listener_, generic, length) != 0 || listen(listener_, 0) != 0 ||
        getsockname(listener_, generic, &length) != 0) {
        throw std::runtime_error("there is no port to listen at");
    }
    port_ = ntohs(address.sin_port);
    server_ = std::jthread([this, answer, address] {
        const int served = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        // Those that wait here to be accepted are all that there is room for.
        for (int count = 0; count < 3; ++count) {
            others_.push_back(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
            (void)connect(others_.back(), reinterpret_cast<const sockaddr*>(&address),
                          sizeof(address));
        }
        ResponderConnection connection(served);
        connection.readRequest();
        connection.send(answer);
        close(served);
    });
}

FullListener::~FullListener() {
    server_.join();
    for (const int other : others_) {
        close(other);
    }
    close(listener_);
}

}  // namespace TkPPDUpdating::Testing
