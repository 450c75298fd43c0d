#include "backends/snmp/SNMPPrinterRequest.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "backends/addresses/NetworkAddresses.h"
#include "backends/schemes/NetworkPlace.h"
#include "backends/snmp/SNMPCommunity.h"
#include "backends/snmp/SNMPOptionAnswers.h"
#include "backends/snmp/SNMPSession.h"
#include "backends/snmp/SNMPStatusMapping.h"
#include "backends/snmp/SNMPTableWalk.h"

namespace TkPPDUpdating {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint16_t kUsualPort = 161;

/// A lost packet is sent again, and a printer that knows version 1 only is silent to 2c: with two
/// tries of a sixth of the time in either, there is still a third left for its tables.
constexpr int kFirstTries = 2;
constexpr int kLaterTries = 3;
constexpr int kTriesInTime = 6;

std::optional<NetworkPlace> printerWithURI(const std::string& deviceURI) {
    auto place = NetworkPlace::placeOfURI(deviceURI);
    const bool isPrinter = place && !place->hasUserInfo && !place->hasQuery &&
                           (place->path.empty() || place->path == "/");
    return isPrinter ? place : std::nullopt;
}

enum class Outcome { done, silent, failed };

/// What is to be known of a printer, and what it told.
struct Told {
    std::span<const OrbCSObjectQuestion> questions;
    SNMPRows rows = {};
    SNMPOptionAnswers options = {};
};

/// The tables of the printer behind one address, in one version of SNMP.
class Conversation {
  public:
    Conversation(const SNMPDeviceStatusLimits& limits, std::chrono::milliseconds time,
                 Clock::time_point deadline, std::size_t addresses) {
        limits_.deadline = deadline;
        limits_.oneTry = time / kTriesInTime / std::max<int>(1, static_cast<int>(addresses));
        limits_.cells = limits.cells;
        limits_.isCancelled = limits.isCancelled;
    }

    Outcome read(const NetworkAddress& address, SNMPVersion version, const std::string& community,
                 Told& told, OrbCSError& error) const {
        const auto session = SNMPSession::opened(address, version, community, error);
        if (!session) {
            return Outcome::silent;
        }
        SNMPTableWalk walk(*session);
        auto limits = limits_;
        limits.tries = kFirstTries;
        for (const auto& columns : SNMPStatusMapping::tables()) {
            if (!walk.read(columns, limits, told.rows)) {
                error = errorOf(walk);
                const bool mayAnswerOtherwise =
                    !walk.hasAnswered() && walk.end() != SNMPSession::End::cancelled;
                return mayAnswerOtherwise ? Outcome::silent : Outcome::failed;
            }
            limits.tries = kLaterTries;
        }
        readIdentity(*session, told.rows);
        for (const OrbCSObjectQuestion& question : told.questions) {
            readOption(*session, question, told.options);
        }
        return Outcome::done;
    }

  private:
    /// Who it is matters only where a queue does not name it, so that nothing fails for it.
    void readIdentity(SNMPSession& session, SNMPRows& rows) const {
        constexpr std::size_t kMostCells = 500;  // A host has a few devices.
        auto limits = limits_;
        limits.tries = kFirstTries;
        limits.cells = std::min(limits.cells, kMostCells);
        (void)SNMPTableWalk(session).read(SNMPStatusMapping::identityColumns(), limits, rows);
    }

    /// One that the printer does not answer leaves the others.
    void readOption(SNMPSession& session, const OrbCSObjectQuestion& question,
                    SNMPOptionAnswers& options) const {
        const auto name = SNMPNameOfIdentifier(question.identifier);
        std::string reason = "its question names no object";
        if (name) {
            session.begin({.names = {*name}, .isExact = true});
            SNMPAnswer answer;
            auto end = SNMPSession::End::timeOver;
            for (int tries = 0; tries < kFirstTries && end == SNMPSession::End::timeOver; ++tries) {
                const auto until = std::min(limits_.deadline, Clock::now() + limits_.oneTry);
                end = session.ask(until, limits_.isCancelled, answer);
            }
            reason = "the printer did not answer in time";
            const auto choice = end == SNMPSession::End::answered
                                    ? choiceOfAnswer(question, *name, answer, reason)
                                    : std::nullopt;
            if (choice) {
                options.installed.insert_or_assign(question.option, *choice);
                return;
            }
        }
        options.reasons.push_back(question.option + ": " + reason);
    }

    OrbCSError errorOf(const SNMPTableWalk& walk) const {
        using Cause = OrbCSError::Cause;
        if (walk.hasTooMany()) {
            return {Cause::brokenAnswer,
                    "its tables have more than " + std::to_string(limits_.cells) + " cells"};
        }
        switch (walk.end()) {
            case SNMPSession::End::cancelled:
                return {Cause::cancelled, "interrupted"};
            case SNMPSession::End::refused:
                return {Cause::noConnection, "nothing answers SNMP there"};
            default:
                return {Cause::timeout, walk.hasAnswered() ? "there was no whole answer over SNMP"
                                                           : "there was no answer over SNMP"};
        }
    }

    SNMPTableWalk::Limits limits_;
};

}  // namespace

std::shared_ptr<const ReportedDeviceStatus> statusOfSNMPPrinter(
    const std::string& deviceURI, const SNMPDeviceStatusLimits& limits,
    std::chrono::milliseconds time, std::span<const OrbCSObjectQuestion> questions,
    OrbCSError& error) {
    const auto printer = printerWithURI(deviceURI);
    if (!printer) {
        error = {OrbCSError::Cause::malformedURI,
                 "the URI names no SNMP printer (snmp://HOST or snmp://HOST:PORT does)"};
        return nullptr;
    }
    const auto deadline = Clock::now() + time;
    std::string warning;
    const std::string community = SNMPCommunity::configured(warning);
    const auto addresses = addressesOfHost(printer->host, printer->port.value_or(kUsualPort),
                                           deadline, limits.isCancelled, error);
    const Conversation conversation(limits, time, deadline, addresses.size());
    for (const NetworkAddress& address : addresses) {
        for (const SNMPVersion version : {SNMPVersion::two, SNMPVersion::one}) {
            Told told{questions};
            const Outcome outcome = conversation.read(address, version, community, told, error);
            if (outcome == Outcome::done) {
                return SNMPStatusMapping::statusForRows(told.rows, error, std::move(told.options));
            }
            if (outcome == Outcome::failed) {
                return nullptr;
            }
        }
    }
    if (!warning.empty()) {
        error.reason += " (" + warning + ")";
    }
    return nullptr;
}

}  // namespace TkPPDUpdating
