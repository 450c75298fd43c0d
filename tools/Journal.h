#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TkPPDUpdating {

/// Entries for the journal of systemd that have fields of their own, by its native protocol
/// (systemd.io, "Native Journal Protocol", of which systemd promises that it stays). May be used
/// from several threads.
///
/// What a service writes to its standard streams becomes an entry for each line, without fields.
class Journal {
  public:
    /// Syslog's numbers (RFC 5424), which the journal has, too.
    enum class Priority { error = 3, warning = 4, notice = 5, information = 6 };

    /// A field's name (upper case letters, digits and "_", a letter first) and its value, any
    /// bytes.
    using Fields = std::vector<std::pair<std::string_view, std::string>>;

    /// `socketPath` is where the journal listens.
    explicit Journal(std::string socketPath = "/run/systemd/journal/socket")
        : socketPath_(std::move(socketPath)) {}

    /// Whether what is written to this stream becomes an entry of the journal: the service manager
    /// says which file it is that leads there (systemd.exec(5), $JOURNAL_STREAM).
    static bool isBehind(int stream);

    /// Makes an entry of "tkppdupdate" with that text, which may have several lines, and these
    /// fields. False when the journal does not take it: it does not listen, or the entry is longer
    /// than a datagram. Nothing is made then.
    bool add(Priority priority, std::string_view message, Fields fields) const;

    /// How an entry with these fields is sent.
    static std::string datagram(const Fields& fields);

    /// What a line on a stream begins with for the journal to give it this priority (sd-daemon(3)).
    static std::string prefix(Priority priority);

  private:
    std::string socketPath_;
};

}  // namespace TkPPDUpdating
