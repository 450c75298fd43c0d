#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/Backends.h"

namespace TkPPDUpdating {

/// The options by which a user names other places at which the printers of some queues are asked:
/// "--status-uri QUEUE=URI", and a file of such lines.
class StatusURIOptions {
  public:
    void addTo(CLI::App& subcommand);

    /// The device URIs by queue name. For a queue that both name, the command line counts. "socket"
    /// URIs are for printers that may be asked over PostScript. Raises a `Failure` about the file
    /// and line, or the argument, that is wrong; no printer is asked.
    std::map<std::string, std::string> URIs(const Backends& backends, bool asksPostScript) const;

    /// Warns of queues that were named on the command line and are not among those of the run: they
    /// may be mistyped. The file may be for all queues of a server.
    void warnOfOtherQueues(const std::vector<std::string>& queueNames) const;

    /// One pair, without blanks around its parts: QUEUE is what stands before the first "=" that a
    /// URI's scheme follows, since a queue's name may have one, too. Nothing, with one phrase in
    /// `reason`, when it is no pair or QUEUE could be no queue.
    struct Pair {
        std::string queueName;
        std::string URI;
    };
    static std::optional<Pair> pairIn(std::string_view text, std::string& reason);

  private:
    using Complaint = std::function<std::optional<std::string>(const std::string& deviceURI)>;

    void addPairsOfFile(const Complaint& complaintAbout,
                        std::map<std::string, std::string>& URIs) const;

    std::vector<std::string> arguments_;
    std::optional<std::string> file_;
};

}  // namespace TkPPDUpdating
