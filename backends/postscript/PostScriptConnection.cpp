#include "backends/postscript/PostScriptConnection.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace TkPPDUpdating {

bool PostScriptConnection::open(const NetworkAddress& address, Clock::time_point deadline,
                                OrbCSError& error) {
    using Cause = OrbCSError::Cause;
    socket_ = FileDescriptor(
        ::socket(address.storage.ss_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const auto* const name = reinterpret_cast<const sockaddr*>(&address.storage);
    const bool isBegun = socket_.isOpen() && (::connect(socket_.get(), name, address.length) == 0 ||
                                              errno == EINPROGRESS);
    short happened = 0;
    const End end = isBegun ? waitFor(POLLOUT, deadline, happened) : End::closed;
    int failure = 0;
    socklen_t length = sizeof failure;
    if (end == End::none &&
        getsockopt(socket_.get(), SOL_SOCKET, SO_ERROR, &failure, &length) == 0 && failure == 0) {
        return true;
    }
    error = end == End::timeout     ? OrbCSError{Cause::timeout, "it took no connection in time"}
            : end == End::cancelled ? OrbCSError{Cause::cancelled, "interrupted"}
                                    : OrbCSError{Cause::noConnection, "it takes no connection"};
    return false;
}

PostScriptConnection::End PostScriptConnection::waitFor(short events, Clock::time_point deadline,
                                                        short& happened) const {
    // Whoever cancels can set a flag but wake nobody.
    constexpr auto kPause = std::chrono::milliseconds(50);
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (isCancelled_ && *isCancelled_) {
            return End::cancelled;
        }
        if (left.count() <= 0) {
            return End::timeout;
        }
        pollfd entry{socket_.get(), events, 0};
        const int count = poll(&entry, 1, static_cast<int>(std::min(left, kPause).count()));
        if (count > 0) {
            happened = entry.revents;
            return End::none;
        }
        if (count < 0 && errno != EINTR) {
            return End::closed;
        }
    }
}

PostScriptConnection::End PostScriptConnection::take(std::size_t mostBytes) {
    std::array<char, 4096> bytes{};
    const ssize_t count = ::recv(socket_.get(), bytes.data(), bytes.size(), 0);
    if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)) {
        return End::none;
    }
    if (count <= 0) {
        return End::closed;
    }
    received_.append(bytes.data(), static_cast<std::size_t>(count));
    return received_.size() > mostBytes ? End::tooMuch : End::none;
}

PostScriptConnection::End PostScriptConnection::send(std::string_view bytes, std::size_t mostBytes,
                                                     Clock::time_point deadline) {
    while (!bytes.empty()) {
        short happened = 0;
        // A printer that nobody listens to may not listen either.
        const End end = waitFor(POLLIN | POLLOUT, deadline, happened);
        if (end != End::none) {
            return end;
        }
        if (happened & (POLLIN | POLLHUP)) {
            const End taken = take(mostBytes);
            if (taken != End::none) {
                return taken;
            }
        }
        if (happened & POLLOUT) {
            const ssize_t count = ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (count < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) {
                return End::closed;
            }
            bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
        } else if (happened & (POLLERR | POLLNVAL)) {
            return End::closed;
        }
    }
    return End::none;
}

PostScriptConnection::End PostScriptConnection::receive(std::size_t mostBytes,
                                                        Clock::time_point deadline) {
    short happened = 0;
    const End end = waitFor(POLLIN, deadline, happened);
    return end == End::none ? take(mostBytes) : end;
}

void PostScriptConnection::finish(std::string_view last, Clock::time_point deadline) {
    constexpr std::size_t kMostBytes = 65'536;
    forget();
    const ssize_t count = ::send(socket_.get(), last.data(), last.size(), MSG_NOSIGNAL);
    last.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    (void)send(last, kMostBytes, deadline);
    (void)::shutdown(socket_.get(), SHUT_WR);
    while (receive(kMostBytes, deadline) == End::none) {
    }
}

}  // namespace TkPPDUpdating
