#pragma once

#include <cups/http.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

#include "core_interface/OrbCSError.h"

namespace TkPPDUpdating {

/// What tells an opening that nobody waits for it any longer.
struct HTTPOpeningTime {
    const std::atomic<bool>& isOver;
    /// The same for libcups.
    int& cancel;
};

/// Opens a connection of libcups that is not yet connected (a time limit of 0 ms). Called on the
/// thread that talks. Null, with the cause and reason in `error`, when there is nothing to connect
/// to.
using HTTPOpening = std::function<http_t*(const HTTPOpeningTime& time, OrbCSError& error)>;

/// How long a talk may take.
struct HTTPPatience {
    /// For all of it.
    std::chrono::milliseconds limit;
    /// Anybody may set it at any time: the time is then over within a twentieth of a second. Null
    /// for nobody; else it belongs to the caller.
    const std::atomic<bool>* isCancelled = nullptr;
    /// Set by the talk once something has begun that must not be cut off: a cancelled talk then has
    /// `kTimeToFinish` left. Null for never; else it belongs to the caller.
    const std::atomic<bool>* mustFinish = nullptr;

    static constexpr auto kTimeToFinish = std::chrono::seconds(5);
};

/// An open connection within the time of a talk.
class HTTPConnection {
  public:
    using Clock = std::chrono::steady_clock;

    HTTPConnection(http_t* http, Clock::time_point deadline, int& cancel)
        : http_(http), deadline_(deadline), cancel_(cancel) {}

    http_t* http() const { return http_; }

    /// Connects again where the connection cannot carry another request: the peer has said that it
    /// closes it (RFC 9112, section 9.6), its last answer was none of success, the rest of which
    /// nobody has read, or an error has ended it. libcups would do so itself, with a limit of time
    /// of its own. False when it cannot be connected within the time of the
    /// talk.
    bool isReadyForRequest();

  private:
    http_t* http_;
    Clock::time_point deadline_;
    int& cancel_;
};

/// What is said over an open connection. Called on the thread that talks; everything that it does
/// with the connection ends early when the time is over.
using HTTPTalk = std::function<void(HTTPConnection& connection)>;

/// Opens a connection, connects it and lets `talk` use it, all within one time limit; false, with
/// the cause and reason in `error`, when it could not be connected or the time was over.
///
/// libcups limits the time of each step, not of all of them: a peer that sends a byte now and then
/// keeps it busy for ever. So the talk has a thread of its own, whose socket is shut down at the
/// end of the time; the thread's own settings of libcups (server, user, password call-back) also
/// leave those of the caller's thread alone. When it gives the caller an answer, the thread has
/// ended, with one exception: where libcups itself looks up a DNS-SD name, it may not listen to
/// anybody for seconds; that thread is left alone and ends by itself, without having called `talk`.
/// Everything that `opening` uses must therefore belong to it; `talk` may use the caller's
/// variables, and what either raises is raised here. It never asks for a password.
bool talkOverHTTP(HTTPOpening opening, const HTTPPatience& patience, const HTTPTalk& talk,
                  OrbCSError& error);

/// Opens a connection to a host and port, or to the domain socket whose path `host` is. For
/// `HTTPOpening`s.
http_t* openedConnection(const std::string& host, int port, http_encryption_t encryption,
                         const HTTPOpeningTime& time, OrbCSError& error);

/// Reads the status and the fields of an answer; `HTTP_STATUS_ERROR` when they are not whole.
/// Whoever answers may send any number: what is beyond libcups's enumeration is no value of it, and
/// stays a number.
int readHTTPHead(http_t* connection);

/// Reads the body of an answer into a text of at most `limit` bytes; false, with the cause and
/// reason in `error`, when it is longer or cut short.
bool readHTTPBody(http_t* connection, std::size_t limit, std::string& body, OrbCSError& error);

}  // namespace TkPPDUpdating
