#pragma once

#include <atomic>
#include <chrono>
#include <string>
#include <vector>

#include "core_interface/OrbCSError.h"

namespace TkPPDUpdating {

/// The addresses of a host as numbers (such that getaddrinfo(3) takes them with AI_NUMERICHOST), in
/// the order in which the system would try them, each once. An address is its own. Empty, with the
/// cause and reason in `error`, when the name is not known or was not found until `deadline` or
/// before anybody set `isCancelled` (may be null).
///
/// Nothing ends the look-up of a name in a process: getaddrinfo(3) waits as long as the machine's
/// resolver is told to. So getent(1), which comes with the C library, looks it up, the same way, in
/// a process of its own that is killed when the time is over. No thread and no process is left.
std::vector<std::string> addressesOfHostName(const std::string& host,
                                             std::chrono::steady_clock::time_point deadline,
                                             const std::atomic<bool>* isCancelled,
                                             OrbCSError& error);

}  // namespace TkPPDUpdating
