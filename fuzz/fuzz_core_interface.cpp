// What stands behind the core interface, word by word: numbers and texts of a status, the process
// and its locale, names of queues, device URIs, and where values of a status come from. The input
// is a list of operations, one a line:
//
//   I number            a whole number
//   N number            one without a sign
//   D number            any number
//   T text              a text
//   E variable|value    the environment of the process, and its clock
//   L all|paper|language                   the locale of the user
//   Q name|answer       the PPD of a queue ("ppd", "none", or why nobody answers)
//   U URI               a device URI
//   S entry|entry asked for|name|value     where a value comes from
#include <algorithm>
#include <cctype>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/ppdmodel/PPDModelFile.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "backends/schemes/QueueName.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCoreInterface.h"
#include "fuzz/FuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/StatusNumbers.h"
#include "tests/support/TestDoubles.h"
#include "updaters/default_choice/UserLocale.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

/// Not more than the expressions that judge it can take.
std::string textIn(Operation::Argument argument) {
    constexpr std::size_t kLongest = 1000;
    return std::string(argument.value_or("").substr(0, kLongest));
}

// The process.

void requireOwnVariable(const std::string& name, const std::string& value) {
    const bool isSettable = !name.empty() && name.find('=') == std::string::npos &&
                            name.find('\0') == std::string::npos &&
                            value.find('\0') == std::string::npos;
    // What the run itself depends on stays.
    if (!isSettable || ::getenv(name.c_str())) {
        return;
    }
    OrbCoreInterface::setEnvironment(nullptr);
    const auto environment = OrbCoreInterface::environment();
    require(environment == OrbEnvironment::processEnvironment(), "null is the process's own");
    require(!environment->valueForVariable(name), "a variable that is not set has no value");
    require(::setenv(name.c_str(), value.c_str(), 1) == 0, "a variable can be set");
    require(environment->valueForVariable(name) == value, "it has the value that was set");
    require(::unsetenv(name.c_str()) == 0 && !environment->valueForVariable(name),
            "until it is taken away");
}

/// The clock tells the time of the system, as the C library has it. Somebody may set that
/// meanwhile.
void requireSystemTime() {
    using namespace std::chrono;
    constexpr double kReferenceDate = sys_days(year{2001} / January / 1).time_since_epoch() / 1s;
    OrbCoreInterface::setClock(nullptr);
    require(OrbCoreInterface::clock() == OrbClock::systemClock(), "null is the system's clock");
    constexpr double kHour = 3600;
    const double now = OrbCoreInterface::clock()->secondsSinceReferenceDate();
    const double expected = static_cast<double>(std::time(nullptr)) - kReferenceDate;
    require(std::fabs(now - expected) < kHour, "seconds since the reference date");
}

/// An argument that is missing is a variable that is not set.
void requireLocale(const Operation& operation) {
    std::map<std::string, std::string> variables;
    std::string expected;
    const char* const names[] = {"LC_ALL", "LC_PAPER", "LANG"};
    for (std::size_t index = 0; index < 3; ++index) {
        if (const auto& value = operation.arguments[index]) {
            variables.emplace(names[index], textIn(value));
            expected = expected.empty() ? textIn(value) : expected;
        }
    }
    static const std::regex kBehind("[.@][^]*");
    expected = std::regex_replace(expected, kBehind, "");
    if (expected.empty() || expected == "C" || expected == "POSIX") {
        expected = "en_US_POSIX";
    }
    require(userLocaleIdentifier(Testing::FakeEnvironment(variables)) == expected,
            "the first locale that is named, without its codeset");
}

// Queues.

/// Whether the bytes could be a name as far as ASCII goes; the rest is up to who knows Unicode.
bool hasForbiddenByte(const std::string& name) {
    return std::ranges::any_of(name, [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte <= ' ' || byte == 0x7F || byte == '/' || byte == '#';
    });
}

void requireQueue(const std::string& name, const std::string& answer) {
    static const PPDText kText = makePPDText("*PPD-Adobe: \"4.3\"\n");
    constexpr std::size_t kLongest = 127;
    const bool couldBe = couldBeQueueName(name);
    require(!couldBe || (!name.empty() && name.size() <= kLongest && name != "." && name != ".." &&
                         !hasForbiddenByte(name)),
            "no name leads out of a folder");
    OrbCoreInterface::setEnvironment(std::make_shared<const Testing::FakeEnvironment>(
        std::map<std::string, std::string>{{"CUPS_SERVERROOT", "/nowhere"}}));
    bool isAsked = false;
    const PPDModelCore core(
        [&](const std::string& asked, std::string& reason) -> std::optional<PPDText> {
            isAsked = asked == name;
            reason = answer;
            return answer == "ppd" || answer == "none"
                       ? std::optional(answer == "ppd" ? kText : nullptr)
                       : std::nullopt;
        });
    std::string reason = "of an earlier one";
    const auto file = core.queuePPDFile(name, reason);
    require(isAsked == couldBe, "only for what could be a queue is anybody asked");
    require((file != nullptr) == (couldBe && answer == "ppd"), "the PPD of the answer, or none");
    const std::string fallBack = "/nowhere/ppd/" + name + ".ppd: No such file or directory";
    const std::string expected = !couldBe           ? kNoQueueName
                                 : answer == "ppd"  ? ""
                                 : answer == "none" ? answer
                                 : answer.empty()   ? fallBack
                                                    : answer + "; " + fallBack;
    require(reason == expected, "the reason names what was asked, and the file");
}

// Device URIs.

void requireURI(const std::string& URI) {
    static const std::regex kScheme("([A-Za-z][A-Za-z0-9+.-]*):[^]*");
    std::smatch parts;
    std::optional<std::string> scheme;
    if (std::regex_match(URI, parts, kScheme)) {
        scheme = parts[1];
        std::ranges::transform(*scheme, scheme->begin(), [](unsigned char letter) {
            return static_cast<char>(std::tolower(letter));
        });
    }
    require(DeviceStatusSchemes::schemeOfURI(URI) == scheme, "the scheme that RFC 3986 gives");

    DeviceStatusSchemes schemes;
    const auto status = std::make_shared<const Testing::FakeDeviceStatus>();
    std::size_t asked = 0;
    const auto backend = [&](const std::string& deviceURI, const OrbDictionary*,
                             OrbCSError&) -> std::shared_ptr<const OrbCSDeviceStatus> {
        asked += deviceURI == URI ? 1 : 0;
        return status;
    };
    schemes.registerScheme("ZR", backend);
    schemes.registerScheme("gone", backend);
    schemes.registerScheme("GONE", nullptr);
    schemes.registerScheme("checked", backend, [](const std::string& deviceURI) {
        return deviceURI.ends_with("!")
                   ? std::optional(OrbCSError{OrbCSError::Cause::malformedURI, "ends with a call"})
                   : std::nullopt;
    });
    require(schemes.schemes() == std::vector<std::string>{"checked", "zr"}, "those that are there");
    const bool isKnown = scheme == "zr" || scheme == "checked";
    const bool isRefused = scheme == "checked" && URI.ends_with('!');
    const auto error = schemes.errorInURI(URI);
    require(!error == (isKnown && !isRefused), "an error where no backend is asked");
    require(!error || isRefused || (error->cause == OrbCSError::Cause::noBackend) == !!scheme,
            "which tells an unknown scheme from none");
    require(!error || error->reason.size() < 100, "in few words");
    OrbCSError cause;
    OrbCoreInterface::setCommunicationServices(std::make_shared<DeviceStatusSchemes>(schemes));
    const auto found =
        OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(URI, nullptr, &cause);
    require((found == status) == !error && asked == (error ? 0 : 1), "the backend is asked once");
    require(!error || (cause.cause == error->cause && cause.reason == error->reason),
            "or says why");
    require(!schemes.deviceStatusWithURI_parameters_error(std::nullopt, nullptr, nullptr),
            "without a URI there is no status");
    OrbCoreInterface::setCommunicationServices(nullptr);
    require(!OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(URI, nullptr, &cause) &&
                cause.cause == OrbCSError::Cause::noBackend,
            "nor without a library");
}

// Sources.

/// Whether one is the other, or a part of it.
bool belongTogether(const std::string& one, const std::string& other) {
    return (one + ".").starts_with(other + ".") || (other + ".").starts_with(one + ".");
}

void requireSources(const Operation& operation) {
    const auto& [entry, asked, name, value] = operation.arguments;
    const OrbCSStatusSource source{textIn(entry), textIn(name), textIn(value)};
    const OrbCSStatusSource always{textIn(asked), "always", ""};
    OrbCSPrinterIdentity identity;
    identity.models = {source.value};
    const auto status = std::make_shared<const ReportedDeviceStatus>(
        ReportedDeviceStatus::Values(), std::vector{source.name}, OrbCSToldEntries{source.entry},
        std::vector{source, always, source}, identity);
    std::vector expected{always};
    if (belongTogether(source.entry, always.entry)) {
        expected = {source, always, source};
    }
    require(OrbCSStatusSources::sourcesOf(*status, always.entry) == expected,
            "those of the entry, of its parts, and of what it is a part of");
    require(OrbCSIdentifiedStatus::identityOf(*status).models == identity.models, "its identity");
    require(ReportedDeviceStatus::droppedValuesOf(*status) == std::vector{source.name},
            "what was dropped");
    std::string reason;
    require(!status->statusValueForKey_error(source.entry, &reason) && !reason.empty(),
            "no value, and why");
    // Around it, somebody else's class may stand that knows nothing of this.
    const Testing::StatusWithoutKey other(status, source.entry);
    require(OrbCSStatusSources::sourcesOf(other, always.entry).empty() &&
                OrbCSIdentifiedStatus::identityOf(other).models.empty() &&
                ReportedDeviceStatus::droppedValuesOf(other).empty() &&
                !OrbCSPartialStatus::toldEntriesOf(other),
            "a status of another class does not know");
}

void run(const Operation& operation) {
    const auto& arguments = operation.arguments;
    const std::string first = textIn(arguments[0]);
    switch (operation.letter) {
        case 'I': {
            const auto number = std::int64_t{std::strtoll(first.c_str(), nullptr, 10)};
            return requireWholeNumber(OrbCSNumberOrString(number), std::to_string(number), number);
        }
        case 'N': {
            const std::uint64_t number = std::strtoull(first.c_str(), nullptr, 10);
            constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();
            return requireWholeNumber(OrbCSNumberOrString(number), std::to_string(number),
                                      static_cast<std::int64_t>(std::min(number, kLargest)));
        }
        case 'D':
            return requireNumber(std::strtod(first.c_str(), nullptr));
        case 'T':
            return requireText(first);
        case 'E':
            requireOwnVariable(first, textIn(arguments[1]));
            return requireSystemTime();
        case 'L':
            return requireLocale(operation);
        case 'Q':
            return requireQueue(first, textIn(arguments[1]));
        case 'U':
            return requireURI(first);
        case 'S':
            return requireSources(operation);
        default:
            return;
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kMostOperations = 30;
    forEachOperation(textOfInput(data, size), kMostOperations, run);
    return 0;
}
