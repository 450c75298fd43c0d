#pragma once

#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "core_interface/OrbCSError.h"

namespace TkPPDUpdating {

/// An IP address with a port.
struct NetworkAddress {
    sockaddr_storage storage = {};
    socklen_t length = 0;

    bool isIPv6() const { return storage.ss_family == AF_INET6; }
};

/// The addresses of a host, those that the system puts first, at most two, so that one that is
/// silent does not use up the time for many others. Empty, with the cause in `error`, when its
/// name was not found until `deadline` or before anybody set `isCancelled` (may be null).
std::vector<NetworkAddress> addressesOfHost(const std::string& host, std::uint16_t port,
                                            std::chrono::steady_clock::time_point deadline,
                                            const std::atomic<bool>* isCancelled,
                                            OrbCSError& error);

}  // namespace TkPPDUpdating
