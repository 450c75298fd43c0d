#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "backends/addresses/NetworkAddresses.h"

namespace TkPPDUpdating {

/// An object identifier.
using SNMPName = std::vector<std::uint32_t>;

enum class SNMPVersion { two, one };

/// Asks for what follows each of the names: GetBulkRequest in version 2c, as often as
/// `repetitions`, or GetNextRequest in version 1 (RFC 3416, sections 4.2.2 and 4.2.3). With
/// `isExact` it asks for just what the names name: GetRequest (section 4.2.1).
struct SNMPQuestion {
    std::vector<SNMPName> names;
    int repetitions = 1;
    bool isExact = false;
};

struct SNMPVariable {
    SNMPName name;
    /// Nothing for a value that is neither an INTEGER nor an OCTET STRING.
    std::variant<std::monostate, std::int64_t, std::string> value;
    /// Whether nothing follows or is there (RFC 3416, section 3: endOfMibView and its like).
    bool isEnd = false;
};

struct SNMPAnswer {
    /// RFC 3416, section 3; 0 is noError.
    int errorStatus = 0;
    /// The variable that it is about, counted from 1; 0 for none.
    int errorIndex = 0;
    /// At most as many as were asked for. Texts are cut after a kilobyte.
    std::vector<SNMPVariable> variables;
};

/// One conversation with one printer, over a single session of net-snmp.
///
/// That library keeps state of the process that no lock of its own protects, so each of its calls
/// is made under one lock of ours; none of them waits, and while an answer is waited for the lock
/// is free. The socket is connected, so that only answers from the address that was asked arrive,
/// and each request has a random ID, which its answer has to have.
class SNMPSession {
  public:
    enum class End { answered, refused, timeOver, cancelled };

    /// Null, with the cause in `error`, when there is no socket for it.
    static std::unique_ptr<SNMPSession> opened(const NetworkAddress& address, SNMPVersion version,
                                               const std::string& community, OrbCSError& error);

    SNMPSession(const SNMPSession&) = delete;
    SNMPSession& operator=(const SNMPSession&) = delete;
    ~SNMPSession();

    SNMPVersion version() const { return version_; }

    /// Begins another question; answers to earlier ones no longer count.
    void begin(SNMPQuestion question);

    /// Sends the question (again, if it was before) and waits for its answer until then, or until
    /// anybody sets `isCancelled` (may be null).
    End ask(std::chrono::steady_clock::time_point until, const std::atomic<bool>* isCancelled,
            SNMPAnswer& answer);

  private:
    struct Receiver;

    SNMPSession(void* session, int socket, SNMPVersion version)
        : session_(session), socket_(socket), version_(version) {}

    bool send();
    /// False when the system tells that nobody listens there.
    bool receive();
    bool isNobodyThere(bool isFailed) const;

    void* session_;
    int socket_;
    SNMPVersion version_;
    SNMPQuestion question_;
    std::set<int> requestIDs_;
    std::optional<SNMPAnswer> answer_;
    std::random_device random_;
};

}  // namespace TkPPDUpdating
