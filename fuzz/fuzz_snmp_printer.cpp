// A whole talk with an SNMP printer: the input is a URI and how to ask, what objects the printer
// has, and what it does to each answer before it sends it. The status that comes out may be handed
// over; for none there is a cause and a reason.
#include <algorithm>
#include <any>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/schemes/DeviceStatusSchemes.h"
#include "backends/schemes/NetworkPlace.h"
#include "backends/snmp/SNMPCommunity.h"
#include "backends/snmp/SNMPOptionAnswers.h"
#include "backends/snmp/SNMPSchemes.h"
#include "core_interface/OrbCoreInterface.h"
#include "fuzz/NetworkStatus.h"
#include "fuzz/SNMPResponder.h"
#include "fuzz/TalkInput.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TestDoubles.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;
using std::chrono::milliseconds;

namespace {

/// Where every answer can be read, nobody waits; else a try takes the sixth part of it.
constexpr auto kUsualTime = milliseconds(150);
constexpr auto kTimeWithLosses = milliseconds(18);

std::atomic<bool> isCancelled{false};

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

    bool hasUsualPatience() const {
        return !limits.isCancelled && parameters.find(kTkCSTimeLimitKey) == parameters.end();
    }

    /// The library sends nothing with a community that is too long.
    bool isNothingSent() const {
        constexpr std::size_t kLongestConfiguration = 200;
        return configuration.size() > kLongestConfiguration;
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
    if (!requireSoundOutcome(status.get(), error)) {
        return;
    }
    requireChoices(*status, *asking.questions);
    const auto& requests = SNMPResponder::ofProcess().requests();
    require(!requests.empty() && requests.back().community == asking.community(),
            "the printer was asked with the community of the scheduler");
}

Asking askingOf(std::string_view lines) {
    Asking asking;
    asking.questions = std::make_shared<OrbCSSNMPQuestions>();
    isCancelled = false;
    while (!lines.empty()) {
        asking.take(takenLine(lines));
    }
    if (!asking.questions->questions.empty()) {
        asking.setParameter(kTkCSSNMPQuestionsKey,
                            std::shared_ptr<const OrbCSSNMPQuestions>(asking.questions));
    }
    return asking;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    SNMPResponder& responder = SNMPResponder::ofProcess();
    std::string_view faults = textOfInput(data, size);
    std::string_view head = takenPart(faults);
    const std::string_view objects = takenPart(faults);
    const std::string_view URI = takenLine(head);
    const std::string place = placeOfText(URI, responder.port());
    requirePlaceReadsBack(place);
    if (!leadsToThisMachine(URI)) {
        return 0;
    }
    Asking asking = askingOf(head);
    SNMPPrinter printer = SNMPPrinter::printerOfInput(objects, faults);
    printer.knowsVersionTwo = asking.knowsVersionTwo;
    const bool isSlow = printer.isEverSilent() || asking.isNothingSent();
    asking.limits.time = isSlow ? kTimeWithLosses : kUsualTime;
    asking.limits.filterModeTime = asking.limits.time / 2;
    setServerRoot(asking);
    responder.begin(std::move(printer));
    ask(place, asking);
    const bool isSurelyAsked =
        URI == "snmp://127.0.0.1:PORT" && !isSlow && asking.hasUsualPatience();
    require(!isSurelyAsked || !responder.requests().empty(), "the printer was asked");
    return 0;
}
