#include "sync/QueuePrinters.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "backends/schemes/NetworkPlace.h"
#include "core_interface/OrbCSIdentifiedStatus.h"
#include "core_interface/OrbDictionary.h"
#include "core_interface/TkCSKeys.h"
#include "sync/PrinterAgreement.h"
#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

using Clock = std::chrono::steady_clock;
using Cause = OrbCSError::Cause;

/// A protocol that only takes jobs, and the port at which a printer itself takes them.
struct OneWayProtocol {
    std::string_view scheme;
    std::uint16_t port;
};

constexpr std::uint16_t kIPPPort = 631;

constexpr auto kOneWayProtocols = std::to_array<OneWayProtocol>({{"socket", 9100}, {"lpd", 515}});

const OneWayProtocol* protocolOf(std::string_view scheme) {
    const auto* const found = std::ranges::find(kOneWayProtocols, scheme, &OneWayProtocol::scheme);
    return found == kOneWayProtocols.end() ? nullptr : found;
}

/// The host behind a URI of such a protocol; nothing for any other URI.
std::optional<NetworkPlace> oneWayPlace(const std::string& deviceURI) {
    auto place = NetworkPlace::placeOfURI(deviceURI);
    return place && protocolOf(place->scheme) ? std::move(place) : std::nullopt;
}

bool isPrintersOwnPort(const NetworkPlace& place) {
    return !place.port || *place.port == protocolOf(place.scheme)->port;
}

/// How much an error tells of why there is no status, the most first: what a printer said, that it
/// said nothing, that nobody was there to say anything.
int rankOf(Cause cause) {
    switch (cause) {
        case Cause::timeout:
            return 1;
        case Cause::noConnection:
            return 2;
        case Cause::unknown:
        case Cause::noBackend:
        case Cause::malformedURI:
            return 3;
        default:
            return 0;
    }
}

std::string adviceFor(const std::string& queueName) {
    return "name another place to ask with --status-uri " + queueName + "=URI";
}

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

/// Nothing when the status is that of the PPD's printer.
std::optional<std::string> reasonNotToBelieve(const OrbCSPrinterIdentity& answer,
                                              const OrbCSPrinterIdentity& ofPPD,
                                              const std::string& place) {
    if (PrinterAgreement::agree(answer, ofPPD)) {
        return std::nullopt;
    }
    const std::string model = PrinterAgreement::shownModel(answer);
    const std::string expected = PrinterAgreement::shownModel(ofPPD);
    if (model.empty()) {
        return "what answers at " + place + " does not say which printer it is";
    }
    return "at " + place + " answers " + quoted(model) +
           (expected.empty() ? ", and its PPD does not say which printer it is for"
                             : ", and its PPD is for " + quoted(expected));
}

}  // namespace

struct QueuePrinters::Host {
    std::once_flag once;
    std::shared_ptr<const OrbCSDeviceStatus> status;
    /// The place that gave the status.
    std::string URI;
    /// Why no place gave one.
    OrbCSError error;

    /// Both say whether no other place is to be asked.
    bool takeStatus(const std::string& place, std::shared_ptr<const OrbCSDeviceStatus> given);
    bool takeError(const std::string& place, const OrbCSError& given);
};

bool QueuePrinters::Host::takeStatus(const std::string& place,
                                     std::shared_ptr<const OrbCSDeviceStatus> given) {
    const bool isIdentified =
        !PrinterAgreement::shownModel(OrbCSIdentifiedStatus::identityOf(*given)).empty();
    if (isIdentified || !status) {
        status = std::move(given);
        URI = place;
    }
    return isIdentified;
}

bool QueuePrinters::Host::takeError(const std::string& place, const OrbCSError& given) {
    const bool isFirst = error.reason.empty();
    if (isFirst || rankOf(given.cause) < rankOf(error.cause)) {
        error.cause = given.cause;
    }
    error.reason += (isFirst ? "at " : "; at ") + place + ": " + given.reason;
    // All places have that host.
    return given.cause == Cause::unknownHost || given.cause == Cause::cancelled;
}

QueuePrinters::QueuePrinters(Options options) : options_(std::move(options)) {}

std::vector<std::string> QueuePrinters::placesOfHost(const std::string& deviceURI) {
    const auto place = oneWayPlace(deviceURI);
    if (!place || !isPrintersOwnPort(*place)) {
        return {};
    }
    const std::string host = place->hostInURI();
    return {"ipp://" + host + "/ipp/print", "ipp://" + host + "/", "snmp://" + host};
}

std::string QueuePrinters::SNMPPlace(const std::string& deviceURI) {
    const auto place = NetworkPlace::placeOfURI(deviceURI);
    if (!place) {
        return {};
    }
    if (place->scheme == "snmp") {
        return deviceURI;
    }
    const bool isPrinter = place->scheme == "ipp" || place->scheme == "ipps"
                               ? !place->port || *place->port == kIPPPort
                               : protocolOf(place->scheme) && isPrintersOwnPort(*place);
    return isPrinter ? "snmp://" + place->hostInURI() : std::string();
}

QueuePrinterAnswer QueuePrinters::askOverSNMP(const std::string& queueName,
                                              const std::string& deviceURI, const OrbPPDFile& PPD,
                                              const OrbDictionary& parameters) const {
    const std::string& known = placeOfQueue(queueName, deviceURI);
    const std::string place = SNMPPlace(known);
    OrbCSError error;
    auto status =
        OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(place, &parameters, &error);
    if (!status) {
        return {nullptr, {}, {&queueSyncCauseForError(error.cause), error.reason}};
    }
    const auto reason = place == known
                            ? std::nullopt
                            : reasonNotToBelieve(OrbCSIdentifiedStatus::identityOf(*status),
                                                 PrinterAgreement::identityOfPPD(PPD), place);
    if (reason) {
        return {nullptr, place, {&queueSyncCause("another-printer"), *reason}};
    }
    return {std::move(status), place, {}};
}

OrbCSPostScriptQuestions::Judge QueuePrinters::judgeOfProduct(const std::string& queueName,
                                                              const std::string& deviceURI,
                                                              const OrbPPDFile& PPD) const {
    if (isNamed(queueName) || !PrinterAgreement::saysProduct(PPD)) {
        return nullptr;
    }
    return [ofPPD = PrinterAgreement::identityOfPPD(PPD), queueName,
            deviceURI](const std::string& product) -> std::optional<std::string> {
        const OrbCSPrinterIdentity answer{{}, {product}, {}};
        const auto reason = PrinterAgreement::shownModel(answer).empty()
                                ? std::nullopt
                                : reasonNotToBelieve(answer, ofPPD, deviceURI);
        return reason
                   ? std::optional(*reason + "; if it is the right one, say so with --status-uri " +
                                   queueName + "=" + deviceURI)
                   : std::nullopt;
    };
}

const std::string& QueuePrinters::placeOfQueue(const std::string& queueName,
                                               const std::string& deviceURI) const {
    const auto named = options_.statusURIs.find(queueName);
    return named == options_.statusURIs.end() ? deviceURI : named->second;
}

QueuePrinterAnswer QueuePrinters::ask(const std::string& queueName, const std::string& deviceURI,
                                      const OrbPPDFile& PPD) const {
    const auto named = options_.statusURIs.find(queueName);
    if (named != options_.statusURIs.end()) {
        return askOnePlace(queueName, named->second);
    }
    const auto oneWay = oneWayPlace(deviceURI);
    if (!oneWay) {
        return askOnePlace(queueName, deviceURI);
    }
    if (!isPrintersOwnPort(*oneWay)) {
        return {nullptr,
                {},
                {&queueSyncCause("no-backend"),
                 "its printer cannot be asked: port " + std::to_string(*oneWay->port) +
                     " may lead to another printer than the host's own; " + adviceFor(queueName)}};
    }
    QueuePrinterAnswer answer = askHost(placesOfHost(deviceURI));
    if (answer.status) {
        const auto reason = reasonNotToBelieve(OrbCSIdentifiedStatus::identityOf(*answer.status),
                                               PrinterAgreement::identityOfPPD(PPD), answer.URI);
        if (reason) {
            answer.status = nullptr;
            answer.failure = {&queueSyncCause("another-printer"),
                              *reason + "; " + adviceFor(queueName)};
        }
    }
    return answer;
}

QueuePrinterAnswer QueuePrinters::askOnePlace(const std::string& queueName,
                                              const std::string& URI) const {
    OrbCSError error;
    auto status = OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(URI, nullptr, &error);
    if (status) {
        return {std::move(status), URI, {}};
    }
    const QueueSyncCause& cause = queueSyncCauseForError(error.cause);
    return {
        nullptr,
        {},
        {&cause, cause.result == QueueSyncResult::unsupported
                     ? "its printer cannot be asked: " + error.reason + "; " + adviceFor(queueName)
                     : "its printer gives no status: " + error.reason}};
}

std::unique_lock<std::mutex> QueuePrinters::turnAt(const std::string& deviceURI) const {
    const auto place = oneWayPlace(deviceURI);
    const std::string key =
        place ? textInASCIILowerCase(place->host) + ":" +
                    std::to_string(place->port.value_or(protocolOf(place->scheme)->port))
              : deviceURI;
    std::mutex* turn = nullptr;
    {
        const std::lock_guard lock(mutex_);
        turn = &turns_[key];
    }
    return std::unique_lock(*turn);
}

QueuePrinterAnswer QueuePrinters::askHost(const std::vector<std::string>& places) const {
    std::shared_ptr<Host> host;
    {
        const std::lock_guard lock(mutex_);
        auto& slot = hosts_[places.front()];
        if (!slot) {
            slot = std::make_shared<Host>();
        }
        host = slot;
    }
    // Outside the lock: one slow printer must not hold up the others.
    std::call_once(host->once, [&] { askPlaces(places, *host); });
    if (host->status) {
        return {host->status, host->URI, {}};
    }
    // Where one of its places has no backend, the others have, or nobody would be asked anything.
    const bool isTold = rankOf(host->error.cause) < rankOf(Cause::unknown);
    return {nullptr,
            {},
            {isTold ? &queueSyncCauseForError(host->error.cause) : &queueSyncCause("no-status"),
             "its printer gives no status: " + host->error.reason}};
}

void QueuePrinters::askPlaces(const std::vector<std::string>& places, Host& host) const {
    const auto deadline = Clock::now() + options_.time;
    for (std::size_t index = 0; index < places.size(); ++index) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        const auto share = left / static_cast<int>(places.size() - index);
        if (share.count() <= 0 || (options_.isCancelled && *options_.isCancelled)) {
            return;
        }
        const OrbDictionary parameters = {{std::string(kTkCSTimeLimitKey), share}};
        OrbCSError error;
        auto status = OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(places[index],
                                                                              &parameters, &error);
        const bool isLast = status ? host.takeStatus(places[index], std::move(status))
                                   : host.takeError(places[index], error);
        if (isLast) {
            return;
        }
    }
}

}  // namespace TkPPDUpdating
