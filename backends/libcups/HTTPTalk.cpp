#include "backends/libcups/HTTPTalk.h"

#include <cups/cups.h>
#include <fcntl.h>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <exception>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "backends/schemes/HostLookUp.h"

namespace TkPPDUpdating {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kNoPassword = nullptr;

const char* refusePassword(const char* /*prompt*/, http_t* /*connection*/, const char* /*method*/,
                           const char* /*resource*/, void* /*data*/) {
    return kNoPassword;
}

/// The state that the caller and the thread share. It outlives both.
struct Exchange {
    std::mutex mutex;
    std::condition_variable finishedChange;
    /// The name has been looked up, so that the caller waits for the thread.
    bool isOpen = false;
    bool isFinished = false;
    /// The caller no longer waits.
    bool isAbandoned = false;
    bool isConnected = false;
    http_t* connection = nullptr;
    /// What the talk raised.
    std::exception_ptr failure;
    /// Read by libcups while it connects.
    int cancel = 0;
    /// The same for our own looking-up of names.
    std::atomic<bool> isOver{false};
    OrbCSError error;
};

std::chrono::milliseconds timeUntil(Clock::time_point deadline) {
    return std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
}

/// libcups says EHOSTDOWN of every address that it could not connect in the end, whatever it met.
std::string reasonOfFailedConnection(int code) {
    return code == 0 || code == EHOSTDOWN
               ? "it does not take a connection"
               : "it does not take a connection (" + std::generic_category().message(code) + ")";
}

enum class WaitEnd { finished, timeOver, cancelled };

WaitEnd waitUntilFinished(Exchange& exchange, std::unique_lock<std::mutex>& lock,
                          Clock::time_point deadline, const HTTPPatience& patience) {
    // A signal handler, which may be the one to cancel, can set a flag but wake nobody.
    constexpr auto kPause = std::chrono::milliseconds(50);
    const auto isFinished = [&exchange] { return exchange.isFinished; };
    bool isHurried = false;
    for (;;) {
        const auto until =
            patience.isCancelled ? std::min(deadline, Clock::now() + kPause) : deadline;
        if (exchange.finishedChange.wait_until(lock, until, isFinished)) {
            return WaitEnd::finished;
        }
        if (patience.isCancelled && *patience.isCancelled && !isHurried) {
            if (!patience.mustFinish || !*patience.mustFinish) {
                return WaitEnd::cancelled;
            }
            isHurried = true;
            deadline = std::min(deadline, Clock::now() + HTTPPatience::kTimeToFinish);
        }
        if (Clock::now() >= deadline) {
            return isHurried ? WaitEnd::cancelled : WaitEnd::timeOver;
        }
    }
}

OrbCSError errorOfEnd(WaitEnd end, bool isOpen, std::chrono::milliseconds limit) {
    if (end == WaitEnd::cancelled) {
        return {OrbCSError::Cause::cancelled, "interrupted"};
    }
    const std::string within = " within " + std::to_string(limit.count()) + " ms";
    return {OrbCSError::Cause::timeout,
            (isOpen ? "there was no whole answer" : "its name was not found") + within};
}

int remainingMilliseconds(Clock::time_point deadline) {
    return std::max<int>(1, static_cast<int>(timeUntil(deadline).count()));
}

/// Gives the connection, which may be null, to the exchange, which closes it in the end; false when
/// there is none, or nobody waits any more.
bool handOver(Exchange& exchange, http_t* connection) {
    const std::lock_guard lock(exchange.mutex);
    exchange.isOpen = !exchange.isAbandoned;
    exchange.connection = connection;
    return connection && exchange.isOpen;
}

/// Frees what libcups keeps for a compressed answer that nobody reads to its end, which httpClose
/// does not.
void endCoding(http_t* connection) {
    if (*httpGetField(connection, HTTP_FIELD_CONTENT_ENCODING) != '\0') {
        httpFlush(connection);
    }
}

void connectAndTalk(Exchange& exchange, http_t* connection, Clock::time_point deadline,
                    const HTTPTalk& talk, OrbCSError& error) {
    // A connection that was made while it was opened stays.
    if (httpGetFd(connection) < 0 &&
        httpReconnect2(connection, remainingMilliseconds(deadline), &exchange.cancel) != 0) {
        error = {OrbCSError::Cause::noConnection, reasonOfFailedConnection(httpError(connection))};
        return;
    }
    {
        // Locked, so that the thread that waits sees the socket as it now is.
        const std::lock_guard lock(exchange.mutex);
        exchange.isConnected = true;
    }
    HTTPConnection talked(connection, deadline, exchange.cancel);
    talk(talked);
    endCoding(connection);
}

/// Whatever it raises is raised by the caller: a thread has nobody to raise it to.
void talkOnThread(const std::shared_ptr<Exchange>& exchange, const HTTPOpening& opening,
                  Clock::time_point deadline, const HTTPTalk* talk) {
    OrbCSError error;
    std::exception_ptr failure;
    try {
        cupsSetPasswordCB2(refusePassword, nullptr);
        http_t* const connection = opening({exchange->isOver, exchange->cancel}, error);
        if (handOver(*exchange, connection)) {
            connectAndTalk(*exchange, connection, deadline, *talk, error);
        }
    } catch (...) {
        failure = std::current_exception();
    }
    const std::lock_guard lock(exchange->mutex);
    exchange->error = std::move(error);
    exchange->failure = std::move(failure);
    httpClose(exchange->connection);
    exchange->connection = nullptr;
    exchange->isFinished = true;
    exchange->finishedChange.notify_one();
}

/// Whether the socket leads to one of the addresses of the connection: its number might have been
/// closed and given to another file in between.
bool leadsToPeer(int socket, http_t* connection) {
    http_addr_t peer{};
    socklen_t length = sizeof(peer);
    if (getpeername(socket, &peer.addr, &length) != 0) {
        return false;
    }
    const http_addr_t* address = httpGetAddress(connection);
    return address && (peer.addr.sa_family == AF_UNIX ? address->addr.sa_family == AF_UNIX
                                                      : httpAddrEqual(&peer, address) != 0);
}

/// While the thread still connects, libcups may make the socket at this very moment. It gives no
/// other way to a socket that TLS is being agreed upon over, whose peer may be as slow as any.
void shutDown(http_t* connection) {
    const int socket = connection ? fcntl(httpGetFd(connection), F_DUPFD_CLOEXEC, 0) : -1;
    if (socket >= 0) {
        if (leadsToPeer(socket, connection)) {
            shutdown(socket, SHUT_RDWR);
        }
        close(socket);
    }
}

/// Ends the talk of a thread that nobody waits for any longer, and waits for its end; it is left
/// alone when it is in the hands of libcups and does not listen.
void breakOff(Exchange& exchange, std::unique_lock<std::mutex>& lock, std::thread& thread) {
    const auto isFinished = [&exchange] { return exchange.isFinished; };
    constexpr auto kTimeToLeave = std::chrono::milliseconds(500);
    constexpr auto kPause = std::chrono::milliseconds(10);
    exchange.isOver = true;
    exchange.cancel = 1;
    if (!exchange.isOpen) {
        exchange.isAbandoned = true;
        if (!exchange.finishedChange.wait_for(lock, kTimeToLeave, isFinished)) {
            thread.detach();
            return;
        }
    }
    // Again and again: the socket may be made only now.
    while (!exchange.isFinished) {
        shutDown(exchange.connection);
        exchange.finishedChange.wait_for(lock, kPause, isFinished);
    }
    lock.unlock();
    thread.join();
}

/// Domain sockets, and the machine itself, which libcups knows, need no looking-up.
bool isName(const std::string& host) {
    return !host.starts_with('/') && !host.starts_with('[') && host != "localhost";
}

/// The addresses of a host, for libcups.
http_addrlist_t* addressesOf(const std::string& host, int port, const HTTPOpeningTime& time,
                             OrbCSError& error) {
    const std::string service = std::to_string(port);
    if (!isName(host)) {
        return httpAddrGetList(host.c_str(), AF_UNSPEC, service.c_str());
    }
    http_addrlist_t* first = nullptr;
    http_addrlist_t** next = &first;
    for (const std::string& number :
         addressesOfHostName(host, Clock::time_point::max(), &time.isOver, error)) {
        *next = httpAddrGetList(number.c_str(), AF_UNSPEC, service.c_str());
        while (*next) {
            next = &(*next)->next;
        }
    }
    return first;
}

}  // namespace

bool HTTPConnection::isReadyForRequest() {
    const int status = httpGetStatus(http_);
    const bool isOver = httpGetFd(http_) < 0 || status == HTTP_STATUS_ERROR ||
                        status >= HTTP_STATUS_MULTIPLE_CHOICES ||
                        strcasecmp(httpGetField(http_, HTTP_FIELD_CONNECTION), "close") == 0;
    if (!isOver) {
        return true;
    }
    endCoding(http_);
    httpClearFields(http_);
    return httpReconnect2(http_, remainingMilliseconds(deadline_), &cancel_) == 0;
}

bool talkOverHTTP(HTTPOpening opening, const HTTPPatience& patience, const HTTPTalk& talk,
                  OrbCSError& error) {
    const auto deadline = Clock::now() + patience.limit;
    const auto exchange = std::make_shared<Exchange>();
    std::thread thread;
    try {
        thread = std::thread(talkOnThread, exchange, std::move(opening), deadline, &talk);
    } catch (const std::system_error&) {
        error = {OrbCSError::Cause::unknown, "there is no thread left for it"};
        return false;
    }
    std::unique_lock lock(exchange->mutex);
    const WaitEnd end = waitUntilFinished(*exchange, lock, deadline, patience);
    if (end != WaitEnd::finished) {
        const bool isOpen = exchange->isOpen;
        // First: to tell may take memory that there is not, and the thread must not be left.
        breakOff(*exchange, lock, thread);
        error = errorOfEnd(end, isOpen, patience.limit);
        return false;
    }
    lock.unlock();
    thread.join();
    if (exchange->failure) {
        std::rethrow_exception(exchange->failure);
    }
    if (!exchange->isConnected) {
        error = exchange->error;
    }
    return exchange->isConnected;
}

http_t* openedConnection(const std::string& host, int port, http_encryption_t encryption,
                         const HTTPOpeningTime& time, OrbCSError& error) {
    error = {OrbCSError::Cause::unknownHost, "its name is not known"};
    http_addrlist_t* addresses = addressesOf(host, port, time, error);
    http_t* connection = addresses ? httpConnect2(host.c_str(), port, addresses, AF_UNSPEC,
                                                  encryption, 1, 0, nullptr)
                                   : nullptr;
    httpAddrFreeList(addresses);  // The connection has a copy.
    return connection;
}

int readHTTPHead(http_t* connection) {
    int status = HTTP_STATUS_CONTINUE;
    while (status == HTTP_STATUS_CONTINUE) {
        status = httpUpdate(connection);
        // Where libcups takes the request for answered, it reads nothing more.
        if (status == HTTP_STATUS_CONTINUE && httpGetState(connection) == HTTP_STATE_WAITING) {
            return HTTP_STATUS_ERROR;
        }
    }
    // libcups tells the status of a head that ends too early all the same.
    return status == HTTP_STATUS_OK && httpError(connection) != 0 ? HTTP_STATUS_ERROR : status;
}

bool readHTTPBody(http_t* connection, std::size_t limit, std::string& body, OrbCSError& error) {
    std::array<char, 16384> buffer{};
    for (;;) {
        const ssize_t count = httpRead2(connection, buffer.data(), buffer.size());
        if (count < 0) {
            error = {OrbCSError::Cause::brokenAnswer, "the answer is cut short"};
            return false;
        }
        if (count == 0) {
            break;
        }
        if (body.size() + static_cast<std::size_t>(count) > limit) {
            error = {OrbCSError::Cause::brokenAnswer,
                     "the answer is longer than " + std::to_string(limit) + " bytes"};
            return false;
        }
        body.append(buffer.data(), static_cast<std::size_t>(count));
    }
    // RFC 9112, section 6.3: without a length and chunks, the end of the connection is the end.
    const bool isEndTold = *httpGetField(connection, HTTP_FIELD_CONTENT_LENGTH) != '\0' ||
                           *httpGetField(connection, HTTP_FIELD_TRANSFER_ENCODING) != '\0';
    // A connection that ends where a chunk should begin leaves nothing but an error.
    const bool isAtEnd = httpGetRemaining(connection) == 0 && httpError(connection) == 0;
    if (isEndTold && !isAtEnd) {
        error = {OrbCSError::Cause::brokenAnswer, "the answer is cut short"};
        return false;
    }
    return true;
}

}  // namespace TkPPDUpdating
