#pragma once

#include <cups/http.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

#include "core_interface/OrbCSError.h"

namespace TkPPDUpdating {

/// Opens a connection of libcups that is not yet connected (a time limit of 0 ms). Called on the
/// thread that talks. Null, with the cause and reason in `error`, when there is nothing to connect
/// to.
using HTTPOpening = std::function<http_t*(OrbCSError& error)>;

/// What is said over an open connection. Called on the thread that talks; everything that it does
/// with the connection ends early when the time is over.
using HTTPTalk = std::function<void(http_t* connection)>;

/// Opens a connection, connects it and lets `talk` use it, all within one time limit; false, with
/// the cause and reason in `error`, when it could not be connected or the time was over.
///
/// libcups limits the time of each step, not of all of them: a peer that sends a byte now and then
/// keeps it busy for ever. So the talk has a thread of its own, whose socket is shut down at the
/// end of the time; the thread's own settings of libcups (server, user, password call-back) also
/// leave those of the caller's thread alone. Looking up a host name cannot be ended: a thread that
/// still does so at the end of the time is left alone and ends by itself, without having called
/// `talk`. Everything that `opening` uses must therefore belong to it; `talk` may use the caller's
/// variables, and what it raises is raised here. It never asks for a password.
///
/// Where `isCancelled` is not null, anybody may set it at any time: the time is then over within a
/// twentieth of a second. It belongs to the caller.
bool talkOverHTTP(HTTPOpening opening, std::chrono::milliseconds limit, const HTTPTalk& talk,
                  OrbCSError& error, const std::atomic<bool>* isCancelled = nullptr);

/// Opens a connection to a host and port, or to the domain socket whose path `host` is. For
/// `HTTPOpening`s.
http_t* openedConnection(const std::string& host, int port, http_encryption_t encryption,
                         OrbCSError& error);

/// Reads the status and the fields of an answer; `HTTP_STATUS_ERROR` when they are not whole.
http_status_t readHTTPHead(http_t* connection);

/// Reads the body of an answer into a text of at most `limit` bytes; false, with the cause and
/// reason in `error`, when it is longer or cut short.
bool readHTTPBody(http_t* connection, std::size_t limit, std::string& body, OrbCSError& error);

}  // namespace TkPPDUpdating
