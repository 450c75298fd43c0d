#include "fuzz/SNMPResponder.h"

#include <netinet/in.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <tuple>

#include "backends/snmp/PrinterMIB.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/TalkInput.h"
#include "tests/backends/snmp/SNMPTestRows.h"

namespace TkPPDUpdating::Fuzzing {

using Testing::SNMPSeenRequest;
namespace SNMPBytes = Testing::SNMPBytes;

namespace {

/// As many numbers as the text has between full stops; what is none is 0.
SNMPBytes::Name numbersOf(std::string_view text, std::size_t most) {
    SNMPBytes::Name numbers;
    while (!text.empty() && numbers.size() < most) {
        const std::string number(takenUpTo(text, "."));
        numbers.push_back(static_cast<std::uint32_t>(std::strtoul(number.c_str(), nullptr, 10)));
    }
    return numbers;
}

std::string valueOf(std::string_view text, SNMPColumn::Syntax syntax) {
    if (text.starts_with('&')) {
        const std::string tag = bytesOfText("\\x" + std::string(takenUpTo(text, " ").substr(1)));
        return SNMPBytes::value(static_cast<unsigned char>(tag.front()), bytesOfText(text));
    }
    const bool isNumber =
        text.starts_with('#') || (syntax == SNMPColumn::Syntax::number && !text.starts_with('"'));
    text.remove_prefix(text.starts_with('#') || text.starts_with('"') ? 1 : 0);
    return isNumber ? SNMPBytes::integer(std::strtoll(std::string(text).c_str(), nullptr, 10))
                    : SNMPBytes::octets(bytesOfText(text));
}

constexpr std::size_t kMostNumbers = 20;

/// Whether an object can have that name (RFC 2578, section 7.1.3).
bool canBeName(const SNMPBytes::Name& numbers) {
    constexpr std::uint32_t kMostBelow = 39;
    return numbers.size() >= 2 && numbers[0] <= 2 && numbers[1] <= kMostBelow;
}

/// Of "x NAME|VALUE".
std::string variableOf(const Operation& fault) {
    const auto name = numbersOf(fault.arguments[0].value_or(""), kMostNumbers);
    return canBeName(name) ? SNMPBytes::variable(name, valueOf(fault.arguments[1].value_or(""),
                                                               SNMPColumn::Syntax::text))
                           : std::string();
}

std::string withChangedByte(std::string bytes, const Operation& fault) {
    if (!bytes.empty()) {
        const std::string byte = bytesOfText(fault.arguments[1].value_or("\\x00"));
        bytes[numberIn(fault.arguments[0]) % bytes.size()] = byte.empty() ? '\0' : byte.front();
    }
    return bytes;
}

/// What is no answer to the request, so that a decent one has to follow; nothing when the fault
/// leaves it an answer.
std::optional<std::string> strayDatagram(const Operation& fault, const SNMPSeenRequest& request,
                                         const std::string& decent) {
    switch (fault.letter) {
        case 'c':
            return decent.substr(0, numberIn(fault.arguments[0]));
        case 'b':
            return withChangedByte(decent, fault);
        case 'r':
            return bytesOfText(fault.arguments[0].value_or(""));
        case 'i':
            return SNMPBytes::message(request.version, request.ID ^ 1, "");
        case 'v':
            return SNMPBytes::message(1 - request.version, request.ID, "");
        case 't':
            return SNMPBytes::message(request.version, request.ID, "", SNMPBytes::kReport);
        default:
            return std::nullopt;
    }
}

std::string answerWith(const Operation& fault, const SNMPSeenRequest& request,
                       const std::string& decent) {
    std::string variables;
    switch (fault.letter) {
        case 'e':
            return SNMPBytes::message(request.version, request.ID, "", SNMPBytes::kResponse,
                                      static_cast<int>(numberIn(fault.arguments[0])),
                                      static_cast<int>(numberIn(fault.arguments[1])));
        case 'n':
            for (const auto& name : request.names) {
                variables += SNMPBytes::variable(name, SNMPBytes::integer(3));
            }
            return request.answer(variables);
        case 'm':
            return request.answer("");
        case 'x':
            return request.answer(variableOf(fault));
        default:
            return decent;
    }
}

void setObject(Testing::SNMPObjects& objects, std::string_view line) {
    const std::string_view place = takenUpTo(line, " = ");
    std::string_view row = place;
    const std::string_view name = takenUpTo(row, ".");
    const auto* const column =
        std::ranges::find(Testing::kColumnsAskedFor, name, &SNMPColumn::name);
    if (column != Testing::kColumnsAskedFor.end()) {
        objects.set(SNMPBytes::name(column->identifier, numbersOf(row, kMostNumbers)),
                    valueOf(line, column->syntax));
        return;
    }
    const auto numbers = numbersOf(place, kMostNumbers);
    if (canBeName(numbers)) {
        objects.set(numbers, valueOf(line, SNMPColumn::Syntax::text));
    }
}

}  // namespace

SNMPPrinter SNMPPrinter::printerOfInput(std::string_view objects, std::string_view faults) {
    constexpr std::size_t kMostObjects = 500;
    constexpr std::size_t kMostFaults = 40;
    constexpr std::ptrdiff_t kMostLosses = 4;
    SNMPPrinter printer;
    printer.hasTags =
        objects.find('&') != std::string_view::npos || faults.find('&') != std::string_view::npos;
    for (std::size_t count = 0; count < kMostObjects && !objects.empty(); ++count) {
        setObject(printer.objects, takenLine(objects));
    }
    std::ptrdiff_t losses = 0;
    forEachOperation(faults, kMostFaults, [&](const Operation& fault) {
        losses += fault.letter == 'l' ? 1 : 0;
        if (fault.letter != 'l' || losses <= kMostLosses) {
            printer.faults.push_back(fault);
        }
    });
    return printer;
}

bool SNMPPrinter::isEverSilent() const {
    return hasTags || !knowsVersionTwo ||
           std::ranges::any_of(faults, [](const Operation& fault) { return fault.letter == 'l'; });
}

SNMPResponder& SNMPResponder::ofProcess() {
    static SNMPResponder responder;
    return responder;
}

SNMPResponder::SNMPResponder() : elsewhere_(boundSocket().first) {
    std::tie(socket_, port_) = boundSocket();
}

SNMPResponder::~SNMPResponder() {
    close(socket_);
    close(elsewhere_);
}

void SNMPResponder::begin(SNMPPrinter printer) {
    serveWhatCame();  // from an input that waited no longer
    printer_ = std::move(printer);
    requests_.clear();
}

void SNMPResponder::serveWhatCame() {
    std::array<char, 8192> buffer{};
    for (;;) {
        length_ = sizeof(client_);
        const ssize_t count = recvfrom(socket_, buffer.data(), buffer.size(), MSG_DONTWAIT,
                                       reinterpret_cast<sockaddr*>(&client_), &length_);
        if (count < 0) {
            return;
        }
        const auto request = SNMPSeenRequest::requestOfBytes(
            std::string_view(buffer.data(), static_cast<std::size_t>(count)));
        if (request) {
            requests_.push_back(*request);
            answer(*request);
        }
    }
}

std::pair<int, int> SNMPResponder::boundSocket() {
    const int bound = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    require(bind(bound, reinterpret_cast<sockaddr*>(&address), length) == 0,
            "the printer can listen");
    getsockname(bound, reinterpret_cast<sockaddr*>(&address), &length);
    return {bound, ntohs(address.sin_port)};
}

void SNMPResponder::send(int from, const std::string& datagram) const {
    (void)sendto(from, datagram.data(), datagram.size(), MSG_DONTWAIT,
                 reinterpret_cast<const sockaddr*>(&client_), length_);
}

void SNMPResponder::answer(const SNMPSeenRequest& request) {
    constexpr std::size_t kLongestAnswer = 60'000;  // A datagram holds little more.
    constexpr int kTooBig = 1;
    if (request.version != 0 && !printer_.knowsVersionTwo) {
        return;
    }
    const Operation fault = printer_.takenFault();
    if (fault.letter == 'l') {
        return;
    }
    std::string decent = printer_.objects.answerTo(request);
    if (decent.size() > kLongestAnswer) {
        decent = SNMPBytes::message(request.version, request.ID, "", SNMPBytes::kResponse, kTooBig);
    }
    if (fault.letter == 'p' || fault.letter == 'd') {
        send(fault.letter == 'p' ? elsewhere_ : socket_, decent);
    } else if (const auto stray = strayDatagram(fault, request, decent)) {
        send(socket_, *stray);
    }
    send(socket_, answerWith(fault, request, decent));
}

}  // namespace TkPPDUpdating::Fuzzing

/// net-snmp sends with it: the printer has answered before it waits for the answer.
extern "C" ssize_t sendmsg(int socket, const msghdr* message, int flags) {
    const ssize_t count = syscall(SYS_sendmsg, socket, message, flags);
    TkPPDUpdating::Fuzzing::SNMPResponder::ofProcess().serveWhatCame();
    return count;
}
