// A whole talk with an IPP printer: the input is a URI and how to ask, and what the printer says to
// each request, any bytes. The status that comes out may be handed over; for none there is a cause
// and a reason.
#include <algorithm>
#include <any>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/ipp/IPPSchemes.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "backends/schemes/RequestParameters.h"
#include "fuzz/AnswerServer.h"
#include "fuzz/NetworkStatus.h"
#include "fuzz/TalkInput.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;
using std::chrono::milliseconds;

namespace {

constexpr auto kUsualTime = milliseconds(1000);

const std::vector<std::string> kSchemes = {"dnssd", "ipp", "ipps"};

std::atomic<bool> isCancelled{false};

/// How the printer is asked.
struct Asking {
    IPPDeviceStatusLimits limits;
    OrbDictionary parameters;
    bool hasParameters = false;
    /// A scheme that has no backend any longer.
    std::string missingScheme;

    /// A line each: "filter", "time 20", "bytes 100", "attributes 3", "cancelled", "without ipps".
    void take(std::string_view line) {
        const std::string_view word = takenUpTo(line, " ");
        const std::size_t number = numberIn(line);
        if (word == "filter") {
            hasParameters = true;
            parameters[std::string(kTkCSIsCUPSFilterModeKey)] = true;
        } else if (word == "time") {
            hasParameters = true;
            parameters[std::string(kTkCSTimeLimitKey)] = milliseconds(number);
        } else if (word == "bytes") {
            limits.bytes = number;
        } else if (word == "attributes") {
            limits.attributes = number;
        } else if (word == "cancelled") {
            isCancelled = true;
            limits.isCancelled = &isCancelled;
        } else if (word == "without") {
            missingScheme = line;
        }
    }
};

/// Names of DNS-SD may be looked up: nothing resolves them here.
bool isServiceOfNobody(std::string_view URI) {
    return URI.starts_with("dnssd://Printer._ipp._tcp.local/") ||
           URI.starts_with("dnssd://Printer%20A._ipps._tcp.local/");
}

AnswerServer& printer() {
    static AnswerServer server;
    return server;
}

/// No settings of this machine or user, no resolver of DNS-SD.
void setOutside() {
    setenv("CUPS_SERVERROOT", "/nonexistent", 1);
    setenv("HOME", "/nonexistent", 1);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent", 1);
}

/// The URI may be null, which is none.
void ask(const DeviceStatusSchemes& schemes, std::optional<std::string_view> URI,
         const Asking& asking) {
    const auto wrong = schemes.errorInURI(URI.value_or(""));
    OrbCSError error;
    const auto status = schemes.deviceStatusWithURI_parameters_error(
        URI, asking.hasParameters ? &asking.parameters : nullptr, &error);
    require(!wrong || (!status && (!URI || wrong->reason == error.reason)),
            "a wrong URI stays wrong");
    (void)requireSoundOutcome(status.get(), error);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool kIsSet = (setOutside(), true);
    require(kIsSet, "the outside is set");
    std::string_view answers = textOfInput(data, size);
    std::string_view head = takenPart(answers);
    const std::string_view URI = takenLine(head);
    auto script = AnswerServer::Answer::answersOfInput(answers);
    Asking asking;
    isCancelled = false;
    const bool hasSilence = std::ranges::any_of(script, &AnswerServer::Answer::isSilence);
    asking.limits.time = hasSilence ? milliseconds(20) : kUsualTime;
    asking.limits.filterModeTime = asking.limits.time / 2;
    while (!head.empty()) {
        asking.take(takenLine(head));
    }
    DeviceStatusSchemes schemes;
    registerIPPDeviceStatus(schemes, asking.limits);
    require(schemes.schemes() == kSchemes, "the backend is there for its schemes");
    schemes.registerScheme(asking.missingScheme, nullptr);
    const std::string place = placeOfText(URI, printer().port());
    if (URI == "-") {
        ask(schemes, std::nullopt, asking);
    } else if (leadsToThisMachine(URI) || isServiceOfNobody(URI)) {
        printer().begin(std::move(script));
        ask(schemes, place, asking);
    } else if (const auto wrong = schemes.errorInURI(place)) {
        requireReason(wrong->reason);
        ask(schemes, place, asking);
    }
    return 0;
}
