#include "backends/addresses/NetworkAddresses.h"

#include <netdb.h>
#include <netinet/in.h>

#include <cstddef>
#include <cstring>

#include "backends/schemes/HostLookUp.h"

namespace TkPPDUpdating {

namespace {

constexpr std::size_t kMostAddresses = 2;

/// Adds those of an address that is given as a number.
void addAddresses(const std::string& number, std::uint16_t port,
                  std::vector<NetworkAddress>& addresses) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_DGRAM;
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    addrinfo* list = nullptr;
    if (getaddrinfo(number.c_str(), std::to_string(port).c_str(), &hints, &list) != 0) {
        return;
    }
    for (const addrinfo* each = list; each && addresses.size() < kMostAddresses;
         each = each->ai_next) {
        if (each->ai_family == AF_INET || each->ai_family == AF_INET6) {
            NetworkAddress& address = addresses.emplace_back();
            std::memcpy(&address.storage, each->ai_addr, each->ai_addrlen);
            address.length = each->ai_addrlen;
        }
    }
    freeaddrinfo(list);
}

}  // namespace

std::vector<NetworkAddress> addressesOfHost(const std::string& host, std::uint16_t port,
                                            std::chrono::steady_clock::time_point deadline,
                                            const std::atomic<bool>* isCancelled,
                                            OrbCSError& error) {
    std::vector<NetworkAddress> addresses;
    for (const std::string& number : addressesOfHostName(host, deadline, isCancelled, error)) {
        addAddresses(number, port, addresses);
    }
    return addresses;
}

}  // namespace TkPPDUpdating
