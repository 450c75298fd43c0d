#include "tests/support/SNMPBytes.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "tests/backends/snmp/SNMPTestRows.h"

namespace TkPPDUpdating::Testing {

namespace SNMPBytes {

std::string value(unsigned char tag, std::string_view contents) {
    std::string length;
    if (contents.size() < 0x80) {
        length += static_cast<char>(contents.size());
    } else {
        for (std::size_t rest = contents.size(); rest > 0; rest >>= 8U) {
            length.insert(length.begin(), static_cast<char>(rest & 0xFFU));
        }
        length.insert(length.begin(), static_cast<char>(0x80U | length.size()));
    }
    return static_cast<char>(tag) + length + std::string(contents);
}

std::string integer(std::int64_t number) {
    std::string bytes;
    bool isShortest = false;
    for (int index = 0; !isShortest; ++index) {
        bytes.insert(bytes.begin(), static_cast<char>(static_cast<std::uint64_t>(number) & 0xFFU));
        number >>= 8;
        const bool isNegative = (static_cast<unsigned char>(bytes.front()) & 0x80U) != 0;
        isShortest = (number == 0 && !isNegative) || (number == -1 && isNegative) || index == 7;
    }
    return value(kInteger, bytes);
}

std::string octets(std::string_view text) {
    return value(kOctets, text);
}

std::string identifier(const Name& name) {
    std::string bytes;
    const auto append = [&bytes](std::uint64_t number) {
        std::string digits(1, static_cast<char>(number & 0x7FU));
        while ((number >>= 7U) > 0) {
            digits.insert(digits.begin(), static_cast<char>(0x80U | (number & 0x7FU)));
        }
        bytes += digits;
    };
    append(std::uint64_t{name.at(0)} * 40 + name.at(1));
    std::for_each(name.begin() + 2, name.end(), append);
    return value(kIdentifier, bytes);
}

std::string variable(const Name& name, std::string_view value) {
    return SNMPBytes::value(kSequence, identifier(name) + std::string(value));
}

std::string message(int version, std::int64_t requestID, std::string_view variables,
                    unsigned char tag, int errorStatus, int errorIndex,
                    std::string_view community) {
    const std::string PDU = integer(requestID) + integer(errorStatus) + integer(errorIndex) +
                            value(kSequence, variables);
    return value(kSequence, integer(version) + octets(community) + value(tag, PDU));
}

Name name(std::string_view dottedNumbers, const Name& behind) {
    Name made;
    std::istringstream numbers{std::string(dottedNumbers)};
    for (std::string number; std::getline(numbers, number, '.');) {
        made.push_back(static_cast<std::uint32_t>(std::stoul(number)));
    }
    made.insert(made.end(), behind.begin(), behind.end());
    return made;
}

}  // namespace SNMPBytes

namespace {

/// Reads what a decent client sends; raises std::out_of_range for anything cut short.
class Reader {
  public:
    explicit Reader(std::string_view bytes) : rest_(bytes) {}

    bool isAtEnd() const { return rest_.empty(); }
    unsigned char tag() const { return static_cast<unsigned char>(rest_.at(0)); }

    std::string_view value() {
        std::size_t length = static_cast<unsigned char>(rest_.at(1));
        std::size_t head = 2;
        if (length >= 0x80) {
            const std::size_t count = length & 0x7FU;
            length = 0;
            for (std::size_t index = 0; index < count; ++index) {
                length = length << 8U | static_cast<unsigned char>(rest_.at(head++));
            }
        }
        const std::string_view contents = rest_.substr(head, length);
        rest_.remove_prefix(std::min(rest_.size(), head + length));
        return contents;
    }

    std::int64_t integer() {
        const std::string_view bytes = value();
        std::int64_t number = (static_cast<unsigned char>(bytes.at(0)) & 0x80U) != 0 ? -1 : 0;
        for (const char byte : bytes) {
            number = number * 256 + static_cast<unsigned char>(byte);
        }
        return number;
    }

    SNMPBytes::Name identifier() {
        SNMPBytes::Name name;
        std::uint64_t number = 0;
        for (const char byte : value()) {
            number = number << 7U | (static_cast<unsigned char>(byte) & 0x7FU);
            if ((static_cast<unsigned char>(byte) & 0x80U) == 0) {
                if (name.empty()) {
                    name.push_back(static_cast<std::uint32_t>(number / 40));
                    number %= 40;
                }
                name.push_back(static_cast<std::uint32_t>(number));
                number = 0;
            }
        }
        return name;
    }

  private:
    std::string_view rest_;
};

}  // namespace

std::optional<SNMPSeenRequest> SNMPSeenRequest::requestOfBytes(std::string_view bytes) {
    try {
        SNMPSeenRequest request;
        Reader message(Reader(bytes).value());
        request.version = static_cast<int>(message.integer());
        request.community = message.value();
        request.tag = message.tag();
        Reader PDU(message.value());
        request.ID = PDU.integer();
        PDU.integer();
        const auto repetitions = static_cast<int>(PDU.integer());
        request.repetitions = request.tag == SNMPBytes::kGetBulkRequest ? repetitions : 1;
        for (Reader variables(PDU.value()); !variables.isAtEnd();) {
            request.names.push_back(Reader(variables.value()).identifier());
        }
        return request;
    } catch (const std::out_of_range&) {
        return std::nullopt;
    }
}

SNMPObjects::SNMPObjects(const std::string& rows) {
    const SNMPRows cells = rowsOfText(rows);
    for (const SNMPColumn& column : kColumnsAskedFor) {
        for (const SNMPRows::Row& row : cells.rowsOf({column})) {
            const auto number = cells.number(column, row);
            set(SNMPBytes::name(column.identifier, row),
                number ? SNMPBytes::integer(*number) : SNMPBytes::octets(*cells.text(column, row)));
        }
    }
}

std::string SNMPObjects::answerTo(const SNMPSeenRequest& request) const {
    constexpr int kNoSuchName = 2;
    std::string variables;
    auto names = request.names;
    if (request.tag == SNMPBytes::kGetRequest) {
        for (std::size_t index = 0; index < names.size(); ++index) {
            const auto found = values_.find(names[index]);
            if (found == values_.end() && request.version == 0) {
                return SNMPBytes::message(request.version, request.ID, "", SNMPBytes::kResponse,
                                          kNoSuchName, static_cast<int>(index) + 1);
            }
            variables += SNMPBytes::variable(names[index],
                                             found == values_.end()
                                                 ? SNMPBytes::value(SNMPBytes::kNoSuchObject, "")
                                                 : found->second);
        }
        return request.answer(variables);
    }
    for (int repetition = 0; repetition < request.repetitions; ++repetition) {
        for (std::size_t index = 0; index < names.size(); ++index) {
            const auto next = values_.upper_bound(names[index]);
            if (next != values_.end()) {
                variables += SNMPBytes::variable(next->first, next->second);
                names[index] = next->first;
            } else if (request.version == 0) {
                return SNMPBytes::message(request.version, request.ID, "", SNMPBytes::kResponse,
                                          kNoSuchName, static_cast<int>(index) + 1);
            } else {
                variables += SNMPBytes::variable(names[index],
                                                 SNMPBytes::value(SNMPBytes::kEndOfMibView, ""));
            }
        }
    }
    return request.answer(variables);
}

}  // namespace TkPPDUpdating::Testing
