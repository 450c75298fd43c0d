#pragma once

#include <functional>
#include <optional>
#include <string>

#include "ppd/PPDText.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// The PPDs of queues as a CUPS scheduler holds them, for `PPDModelCore`: its `QueuePPDSource`.
///
/// `server` is HOST, HOST:PORT or the path of a domain socket; empty for the scheduler that
/// `CUPS_SERVER` and client.conf name, which is the machine's own when they do not. Nobody is ever
/// asked for a password, and a talk ends after half a minute. May be called from several threads.
TKPPDUPDATING_PUBLIC
std::function<std::optional<PPDText>(const std::string& queueName, std::string& reason)>
queuePPDsOfCUPS(std::string server = {});

}  // namespace TkPPDUpdating
