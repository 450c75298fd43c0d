#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/snmp/SNMPRows.h"

namespace TkPPDUpdating::Testing {

/// Builds the bytes of SNMP messages by hand (BER as RFC 3417, section 8, restricts it), so that
/// they can be wrong in every way.
namespace SNMPBytes {

/// Tags of values and of PDUs (RFC 3416, section 3).
inline constexpr unsigned char kInteger = 0x02;
inline constexpr unsigned char kOctets = 0x04;
inline constexpr unsigned char kNull = 0x05;
inline constexpr unsigned char kIdentifier = 0x06;
inline constexpr unsigned char kSequence = 0x30;
inline constexpr unsigned char kNoSuchObject = 0x80;
inline constexpr unsigned char kEndOfMibView = 0x82;
inline constexpr unsigned char kGetRequest = 0xA0;
inline constexpr unsigned char kGetNextRequest = 0xA1;
inline constexpr unsigned char kResponse = 0xA2;
inline constexpr unsigned char kGetBulkRequest = 0xA5;
inline constexpr unsigned char kReport = 0xA8;

using Name = std::vector<std::uint32_t>;

/// Any tag with its length and contents.
std::string value(unsigned char tag, std::string_view contents);
std::string integer(std::int64_t number);
std::string octets(std::string_view text);
std::string identifier(const Name& name);
/// A name with its value.
std::string variable(const Name& name, std::string_view value);

/// A whole message with the variables' bytes.
std::string message(int version, std::int64_t requestID, std::string_view variables,
                    unsigned char tag = kResponse, int errorStatus = 0, int errorIndex = 0,
                    std::string_view community = "public");

/// "1.3.6.1" as numbers, with more behind them.
Name name(std::string_view dottedNumbers, const Name& behind = {});

}  // namespace SNMPBytes

/// A request as a printer sees it.
struct SNMPSeenRequest {
    /// As on the wire: 0 is version 1, 1 is 2c.
    int version = 0;
    std::string community;
    unsigned char tag = 0;
    std::int64_t ID = 0;
    /// Max-repetitions of a GetBulkRequest.
    int repetitions = 1;
    std::vector<SNMPBytes::Name> names;

    /// Nothing when the bytes are no request.
    static std::optional<SNMPSeenRequest> requestOfBytes(std::string_view bytes);

    /// An answer of its version and ID.
    std::string answer(std::string_view variables) const {
        return SNMPBytes::message(version, ID, variables);
    }
};

/// The objects of a decent printer: their values' bytes by name, which answers requests as RFC 3416
/// says.
class SNMPObjects {
  public:
    SNMPObjects() = default;
    /// From the rows, in the format of `rowsOfText`.
    explicit SNMPObjects(const std::string& rows);

    void set(const SNMPBytes::Name& name, std::string value) { values_[name] = std::move(value); }

    std::string answerTo(const SNMPSeenRequest& request) const;

  private:
    std::map<SNMPBytes::Name, std::string> values_;
};

}  // namespace TkPPDUpdating::Testing
