#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TkPPDUpdating {

/// Lines for the system's log (syslog(3), facility lpr): what this program changed on a machine is
/// to be found there, whoever started it and wherever its output went. Under a service of systemd
/// they are entries of its journal with the queue in a field (`Journal`). May be called from
/// several threads.
class SystemLog {
  public:
    SystemLog() = delete;

    /// The field that names the queue of an entry.
    static constexpr std::string_view kJournalFieldOfQueue = "TKPPDUPDATE_QUEUE";

    /// Opens the log; without it, nothing is logged.
    static void open();

    /// Tells of a queue whose PPD was replaced: what was done ("updated", "restored", ...) and the
    /// main keywords of the lines that changed.
    static void tellReplacement(const std::string& queueName, const std::string& what,
                                const std::vector<std::string>& keywords);

    /// The line of the above: no more than a log takes (RFC 5424 asks for 2,048 bytes with what the
    /// system puts before it), and nothing in it that could look like another line.
    static std::string lineForReplacement(const std::string& queueName, const std::string& what,
                                          const std::vector<std::string>& keywords);
};

}  // namespace TkPPDUpdating
