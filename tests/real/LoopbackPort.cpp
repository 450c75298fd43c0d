#include "tests/real/LoopbackPort.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace TkPPDUpdating::Testing {

namespace {

sockaddr_in loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<in_port_t>(port));
    return address;
}

}  // namespace

int freeLoopbackPort() {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = loopback(0);
    socklen_t length = sizeof(address);
    (void)bind(listener, reinterpret_cast<sockaddr*>(&address), length);
    getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
    close(listener);
    return ntohs(address.sin_port);
}

bool isListening(int port) {
    const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(port);
    const bool isAccepted =
        connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    close(client);
    return isAccepted;
}

}  // namespace TkPPDUpdating::Testing
