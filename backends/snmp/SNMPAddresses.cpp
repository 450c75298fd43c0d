#include "backends/snmp/SNMPAddresses.h"

#include <netdb.h>
#include <netinet/in.h>

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <cstring>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace TkPPDUpdating {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostAddresses = 2;

std::vector<SNMPAddress> lookedUp(const std::string& host, std::uint16_t port, int flags) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_DGRAM;
    hints.ai_flags = flags | AI_NUMERICSERV;
    addrinfo* list = nullptr;
    if (getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &list) != 0) {
        return {};
    }
    std::vector<SNMPAddress> addresses;
    for (const addrinfo* each = list; each && addresses.size() < kMostAddresses;
         each = each->ai_next) {
        if (each->ai_family == AF_INET || each->ai_family == AF_INET6) {
            SNMPAddress& address = addresses.emplace_back();
            std::memcpy(&address.storage, each->ai_addr, each->ai_addrlen);
            address.length = each->ai_addrlen;
        }
    }
    freeaddrinfo(list);
    return addresses;
}

/// Shared with the thread, which may outlive the call.
struct LookUp {
    std::mutex mutex;
    std::condition_variable finishedChange;
    bool isFinished = false;
    std::vector<SNMPAddress> addresses;
};

/// False when the time was over, or nobody wants it any more.
bool waitForEnd(LookUp& lookUp, std::unique_lock<std::mutex>& lock, Clock::time_point deadline,
                const std::atomic<bool>* isCancelled) {
    // Whoever cancels can set a flag but wake nobody.
    constexpr auto kPause = std::chrono::milliseconds(50);
    while (!lookUp.isFinished) {
        if (Clock::now() >= deadline || (isCancelled && *isCancelled)) {
            return false;
        }
        lookUp.finishedChange.wait_until(lock, std::min(deadline, Clock::now() + kPause));
    }
    return true;
}

}  // namespace

std::vector<SNMPAddress> addressesOfHost(const std::string& host, std::uint16_t port,
                                         Clock::time_point deadline,
                                         const std::atomic<bool>* isCancelled, OrbCSError& error) {
    if (auto addresses = lookedUp(host, port, AI_NUMERICHOST); !addresses.empty()) {
        return addresses;
    }
    const auto lookUp = std::make_shared<LookUp>();
    try {
        std::thread([lookUp, host, port] {
            auto addresses = lookedUp(host, port, 0);
            const std::lock_guard lock(lookUp->mutex);
            lookUp->addresses = std::move(addresses);
            lookUp->isFinished = true;
            lookUp->finishedChange.notify_one();
        }).detach();
    } catch (const std::system_error&) {
        error = {OrbCSError::Cause::unknown, "there is no thread left for it"};
        return {};
    }
    std::unique_lock lock(lookUp->mutex);
    if (!waitForEnd(*lookUp, lock, deadline, isCancelled)) {
        error = isCancelled && *isCancelled
                    ? OrbCSError{OrbCSError::Cause::cancelled, "interrupted"}
                    : OrbCSError{OrbCSError::Cause::timeout, "its name was not found in time"};
        return {};
    }
    if (lookUp->addresses.empty()) {
        error = {OrbCSError::Cause::unknownHost, "its name is not known"};
    }
    return std::move(lookUp->addresses);
}

}  // namespace TkPPDUpdating
