#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/QueueReport.h"

namespace TkPPDUpdating {

/// The queues of one server, in their order.
struct ServerReport {
    /// What the user calls it; empty when he has no name for it.
    std::string name;
    /// What it calls itself; the same for each of its queues.
    std::string server;
    std::vector<QueueReport> queues;
};

/// How every page begins.
inline constexpr std::string_view kHTMLBegin = "<!DOCTYPE html>";

/// A page (HTML, UTF-8) with a table of the servers and one of each server's queues: how they
/// ended, what changed or would change, and the inks, trays and media types of their printers.
/// `made` is when.
///
/// It holds all that it shows, has no script and fetches nothing. Every text of a report is text
/// in it, whatever stands there; control characters are shown as "\xNN".
std::string HTMLReportOfServers(const std::vector<ServerReport>& servers, const std::string& made);

}  // namespace TkPPDUpdating
