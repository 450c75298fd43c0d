#pragma once

#include <sys/socket.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/FuzzInput.h"
#include "tests/support/SNMPBytes.h"

namespace TkPPDUpdating::Fuzzing {

/// The SNMP printer of an input.
struct SNMPPrinter {
    Testing::SNMPObjects objects;
    /// What becomes of the answers, in the order of the requests; the others are decent. "l" loses
    /// one. Another comes first with "p" from another port, with "d" the same, with "c LENGTH" its
    /// beginning, with "b PLACE|BYTE" one byte of it changed, with "r BYTES" those, with "i"
    /// another ID, with "v" another version, with "t" a report. "e STATUS|INDEX" is an error
    /// instead, "n" gives each name back as it came, "m" holds no variables, "x NAME|VALUE" that
    /// one.
    std::vector<Operation> faults;
    std::size_t answers = 0;
    bool knowsVersionTwo = true;
    /// Whether values have tags of their own, with which net-snmp may read nothing of an answer.
    bool hasTags = false;

    /// `objects` has one a line: "prtInputName.1.2 = Tray 2", or numbers of an object identifier
    /// before " = ". Behind it, "&41 VALUE" has that tag, "#5" is a number and "\"5" a text; the
    /// rest is what the column says. What is beyond some hundreds is left out, and so are all but a
    /// few losses, which take time.
    static SNMPPrinter printerOfInput(std::string_view objects, std::string_view faults);

    Operation takenFault() { return answers < faults.size() ? faults[answers++] : Operation(); }

    /// Whether somebody may have to wait for an answer in vain.
    bool isEverSilent() const;
};

/// Answers for the printer of an input, on 127.0.0.1 and on the thread that asks: nobody waits for
/// another thread to be given its turn.
class SNMPResponder {
  public:
    static SNMPResponder& ofProcess();

    SNMPResponder(const SNMPResponder&) = delete;
    SNMPResponder& operator=(const SNMPResponder&) = delete;
    ~SNMPResponder();

    int port() const { return port_; }

    void begin(SNMPPrinter printer);

    /// What the printer of the input was asked.
    const std::vector<Testing::SNMPSeenRequest>& requests() const { return requests_; }

    void serveWhatCame();

  private:
    SNMPResponder();
    /// A socket on a free port, and the port.
    static std::pair<int, int> boundSocket();
    void send(int from, const std::string& datagram) const;
    void answer(const Testing::SNMPSeenRequest& request);

    int socket_ = -1;
    int elsewhere_ = -1;
    int port_ = 0;
    sockaddr_storage client_{};
    socklen_t length_ = 0;
    SNMPPrinter printer_;
    std::vector<Testing::SNMPSeenRequest> requests_;
};

}  // namespace TkPPDUpdating::Fuzzing
