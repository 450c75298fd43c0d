// A whole talk with an SNMP printer: the input is a URI and how to ask, what objects the printer
// has, and what it does to each answer before it sends it. The status that comes out may be handed
// over; for none there is a cause and a reason.
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <any>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "backends/schemes/DeviceStatusSchemes.h"
#include "backends/schemes/NetworkPlace.h"
#include "backends/snmp/SNMPCommunity.h"
#include "backends/snmp/SNMPOptionAnswers.h"
#include "backends/snmp/SNMPSchemes.h"
#include "core_interface/OrbCoreInterface.h"
#include "fuzz/NetworkStatus.h"
#include "fuzz/TalkInput.h"
#include "tests/backends/snmp/SNMPTestRows.h"
#include "tests/support/SNMPBytes.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TestDoubles.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;
using std::chrono::milliseconds;
using Testing::SNMPSeenRequest;
namespace SNMPBytes = Testing::SNMPBytes;

namespace {

/// Where nothing is lost, nobody waits; where something is, a try takes the sixth part of it.
constexpr auto kUsualTime = milliseconds(1200);
constexpr auto kTimeWithLosses = milliseconds(24);

std::atomic<bool> isCancelled{false};

/// The printer of an input.
struct Printer {
    Testing::SNMPObjects objects;
    /// What becomes of the answers, in the order of the requests; the others are decent.
    std::vector<Operation> faults;
    std::size_t answers = 0;
    bool knowsVersionTwo = true;

    Operation takenFault() { return answers < faults.size() ? faults[answers++] : Operation(); }
};

/// As many numbers as the text has between full stops; what is none is 0.
SNMPBytes::Name numbersOf(std::string_view text, std::size_t most) {
    SNMPBytes::Name numbers;
    while (!text.empty() && numbers.size() < most) {
        const std::string number(takenUpTo(text, "."));
        numbers.push_back(static_cast<std::uint32_t>(std::strtoul(number.c_str(), nullptr, 10)));
    }
    return numbers;
}

/// "&41 VALUE" has that tag; "#5" is a number, "\"5" a text, and the rest what its column says.
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

/// "e STATUS|INDEX" is an error, "n" gives each name back as it came, "m" holds no variables,
/// "x NAME|VALUE" holds one.
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

/// Answers for the printer of an input, on the thread that asks: nobody waits for another thread to
/// be given its turn.
class Responder {
  public:
    Responder() { std::tie(socket_, port_) = boundSocket(); }
    Responder(const Responder&) = delete;
    Responder& operator=(const Responder&) = delete;
    ~Responder() {
        close(socket_);
        close(elsewhere_);
    }

    int port() const { return port_; }

    void begin(Printer printer) {
        serveWhatCame();  // from an input that waited no longer
        printer_ = std::move(printer);
        requests_.clear();
    }

    /// What the printer of the input was asked.
    const std::vector<SNMPSeenRequest>& requests() const { return requests_; }

    void serveWhatCame() {
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

  private:
    /// A socket on a free port of 127.0.0.1, and the port.
    static std::pair<int, int> boundSocket() {
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

    void send(int from, const std::string& datagram) const {
        (void)sendto(from, datagram.data(), datagram.size(), MSG_DONTWAIT,
                     reinterpret_cast<const sockaddr*>(&client_), length_);
    }

    /// "l" loses the answer, "p" sends it from another port as well, "d" twice.
    void answer(const SNMPSeenRequest& request) {
        if (request.version != 0 && !printer_.knowsVersionTwo) {
            return;
        }
        const Operation fault = printer_.takenFault();
        if (fault.letter == 'l') {
            return;
        }
        const std::string decent = printer_.objects.answerTo(request);
        if (fault.letter == 'p' || fault.letter == 'd') {
            send(fault.letter == 'p' ? elsewhere_ : socket_, decent);
        } else if (const auto stray = strayDatagram(fault, request, decent)) {
            send(socket_, *stray);
        }
        send(socket_, answerWith(fault, request, decent));
    }

    int socket_ = -1;
    int elsewhere_ = boundSocket().first;
    int port_ = 0;
    sockaddr_storage client_{};
    socklen_t length_ = 0;
    Printer printer_;
    std::vector<SNMPSeenRequest> requests_;
};

Responder& responder() {
    static Responder ofProcess;
    return ofProcess;
}

/// "prtInputName.1.2 = Tray 2", or with the numbers of an object identifier before " = ".
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

Printer printerOf(std::string_view objects, std::string_view faults) {
    constexpr std::size_t kMostObjects = 500;
    constexpr std::size_t kMostFaults = 40;
    constexpr std::ptrdiff_t kMostLosses = 4;
    Printer printer;
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

/// As a PPD that can be parsed has it.
bool isKeyword(std::string_view text) {
    constexpr std::size_t kLongestKeyword = 40;
    return !text.empty() && text.size() <= kLongestKeyword &&
           std::ranges::all_of(text,
                               [](char character) { return isASCIILetterOrDigit(character); });
}

/// "DuplexUnit|1.3.6.1.4.1.99.1|1=True|2=False|Unknown": an option, its object, what the object may
/// hold, and the choice for everything else.
std::optional<OrbCSObjectQuestion> questionOf(std::string_view line) {
    OrbCSObjectQuestion question;
    question.option = takenUpTo(line, "|");
    question.identifier = takenUpTo(line, "|");
    while (!line.empty()) {
        std::string_view choice = takenUpTo(line, "|");
        const bool isForOthers = choice.find('=') == std::string_view::npos;
        if (isForOthers) {
            question.choiceForOthers = choice;
        } else {
            const std::string_view held = takenUpTo(choice, "=");
            question.choices.emplace(held, choice);
        }
    }
    const bool hasKeywords =
        isKeyword(question.option) &&
        (question.choiceForOthers.empty() || isKeyword(question.choiceForOthers)) &&
        std::ranges::all_of(question.choices,
                            [](const auto& choice) { return isKeyword(choice.second); });
    return hasKeywords ? std::optional(std::move(question)) : std::nullopt;
}

/// How the printer is asked.
struct Asking {
    SNMPDeviceStatusLimits limits;
    OrbDictionary parameters;
    bool hasParameters = false;
    std::shared_ptr<OrbCSSNMPQuestions> questions;
    /// Of the scheduler's snmp.conf, which is no file when `isDirectory`, and nowhere without
    /// lines.
    std::string configuration;
    bool isDirectory = false;
    bool knowsVersionTwo = true;

    void setParameter(std::string_view key, std::any value) {
        hasParameters = true;
        parameters[std::string(key)] = std::move(value);
    }

    std::string community() const {
        return isDirectory ? std::string(SNMPCommunity::kUsual)
                           : SNMPCommunity::communityInConfiguration(configuration);
    }

    /// A line each: "filter", "time 20", "cells 5", "cancelled", "directory", "conf LINE",
    /// "version 1" (for a printer that is silent to version 2c), "option QUESTION".
    void take(std::string_view line) {
        const std::string_view word = takenUpTo(line, " ");
        if (word == "filter") {
            setParameter(kTkCSIsCUPSFilterModeKey, true);
        } else if (word == "time") {
            setParameter(kTkCSTimeLimitKey, milliseconds(numberIn(line)));
        } else if (word == "cells") {
            limits.cells = numberIn(line);
        } else if (word == "cancelled") {
            isCancelled = true;
            limits.isCancelled = &isCancelled;
        } else if (word == "directory") {
            isDirectory = true;
        } else if (word == "version") {
            knowsVersionTwo = false;
        } else if (word == "conf") {
            configuration += std::string(line) + "\n";
        } else if (word == "option") {
            if (auto question = questionOf(line)) {
                questions->questions.push_back(*std::move(question));
            }
        }
    }
};

/// The server root of the scheduler: a folder of its own for each kind of snmp.conf.
void setServerRoot(const Asking& asking) {
    static const Testing::TemporaryDirectory kRoot;
    static std::string written;
    const std::string folder = asking.isDirectory             ? "unreadable"
                               : asking.configuration.empty() ? "none"
                                                              : "some";
    if (asking.isDirectory) {
        std::filesystem::create_directories(kRoot.path() / folder / "snmp.conf");
    } else if (!asking.configuration.empty() && asking.configuration != written) {
        kRoot.write(folder + "/snmp.conf", asking.configuration);
        written = asking.configuration;
    }
    OrbCoreInterface::setEnvironment(std::make_shared<const Testing::FakeEnvironment>(
        std::map<std::string, std::string>{{"CUPS_SERVERROOT", (kRoot.path() / folder).string()}}));
}

/// What holds of any URI: what it says of the place reads back.
void requirePlaceReadsBack(std::string_view URI) {
    const auto place = NetworkPlace::placeOfURI(URI);
    if (!place) {
        return;
    }
    const auto again = NetworkPlace::placeOfURI(
        place->scheme + "://" + (place->hasUserInfo ? "user@" : "") + place->hostInURI() +
        (place->port ? ":" + std::to_string(*place->port) : "") + place->path +
        (place->hasQuery ? "?" : ""));
    require(again && again->scheme == place->scheme && again->host == place->host &&
                again->port == place->port && again->path == place->path &&
                again->hasUserInfo == place->hasUserInfo && again->hasQuery == place->hasQuery,
            "a place reads back");
}

/// What holds of what the printer says about the options of the PPD.
void requireChoices(const OrbCSDeviceStatus& status, const OrbCSSNMPQuestions& questions) {
    const auto* const installed =
        status.statusValueForKey<OrbCSInstalledOptions>(kTkCSInstalledOptionsKey);
    for (const auto& [option, choice] : installed ? *installed : OrbCSInstalledOptions()) {
        require(std::ranges::any_of(questions.questions,
                                    [&, &option = option, &choice = choice](const auto& question) {
                                        return question.option == option &&
                                               (question.choiceForOthers == choice ||
                                                std::ranges::any_of(
                                                    question.choices, [&](const auto& each) {
                                                        return each.second == choice;
                                                    }));
                                    }),
                "an option has a choice that its question names");
    }
}

void ask(const std::string& URI, const Asking& asking) {
    DeviceStatusSchemes schemes;
    registerSNMPDeviceStatus(schemes, asking.limits);
    OrbCSError error;
    const auto status = schemes.deviceStatusWithURI_parameters_error(
        URI, asking.hasParameters ? &asking.parameters : nullptr, &error);
    if (!status) {
        requireReason(error.reason);
        require(error.cause != OrbCSError::Cause::unknown, "no status has a cause");
        return;
    }
    const auto* const reported = dynamic_cast<const ReportedDeviceStatus*>(status.get());
    require(reported != nullptr, "a printer reports its status");
    requireSoundNetworkStatus(*reported);
    requireChoices(*status, *asking.questions);
    const auto& requests = responder().requests();
    require(!requests.empty() && requests.back().community == asking.community(),
            "the printer was asked with the community of the scheduler");
}

}  // namespace

/// net-snmp sends with it: the printer has answered before it waits for the answer.
extern "C" ssize_t sendmsg(int socket, const msghdr* message, int flags) {
    const ssize_t count = syscall(SYS_sendmsg, socket, message, flags);
    responder().serveWhatCame();
    return count;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view faults = textOfInput(data, size);
    std::string_view head = takenPart(faults);
    const std::string_view objects = takenPart(faults);
    const std::string_view URI = takenLine(head);
    const std::string place = placeOfText(URI, responder().port());
    requirePlaceReadsBack(place);
    if (!leadsToThisMachine(URI)) {
        return 0;
    }
    Asking asking;
    asking.questions = std::make_shared<OrbCSSNMPQuestions>();
    isCancelled = false;
    while (!head.empty()) {
        asking.take(takenLine(head));
    }
    if (!asking.questions->questions.empty()) {
        asking.setParameter(kTkCSSNMPQuestionsKey,
                            std::shared_ptr<const OrbCSSNMPQuestions>(asking.questions));
    }
    Printer printer = printerOf(objects, faults);
    printer.knowsVersionTwo = asking.knowsVersionTwo;
    // The library sends nothing with a community that is too long.
    constexpr std::size_t kLongestConfiguration = 200;
    const bool isSlow =
        !printer.knowsVersionTwo || asking.configuration.size() > kLongestConfiguration ||
        std::ranges::any_of(printer.faults,
                            [](const Operation& fault) { return fault.letter == 'l'; });
    asking.limits.time = isSlow ? kTimeWithLosses : kUsualTime;
    asking.limits.filterModeTime = asking.limits.time / 2;
    const bool hasLimit = asking.parameters.find(kTkCSTimeLimitKey) != asking.parameters.end();
    setServerRoot(asking);
    responder().begin(std::move(printer));
    ask(place, asking);
    const bool isSurelyAsked = URI == "snmp://127.0.0.1:PORT" && !asking.limits.isCancelled &&
                               asking.configuration.empty() && !isSlow && !hasLimit;
    require(!isSurelyAsked || !responder().requests().empty(), "the printer was asked");
    return 0;
}
