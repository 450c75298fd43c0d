#include "tools/StatusURIOptions.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "backends/schemes/DeviceStatusSchemes.h"
#include "backends/schemes/QueueName.h"
#include "ppd/PPDTextFile.h"
#include "tools/DeviceURIMistake.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"

namespace TkPPDUpdating {

namespace {

/// Room for a long line for each queue of a large server.
constexpr std::size_t kLargestFile = std::size_t{4} * 1024 * 1024;
constexpr std::string_view kBlanks = " \t\r";

std::string_view withoutBlanksAround(std::string_view text) {
    const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

/// A line without its comment: "#" at the begin, or behind a blank, as no URI has one.
std::string_view withoutComment(std::string_view line) {
    for (std::size_t mark = line.find('#'); mark != std::string_view::npos;
         mark = line.find('#', mark + 1)) {
        if (mark == 0 || kBlanks.find(line[mark - 1]) != std::string_view::npos) {
            return line.substr(0, mark);
        }
    }
    return line;
}

std::string complaintAboutArgument(const std::string& argument) {
    std::string reason;
    return StatusURIOptions::pairIn(argument, reason) ? "" : reason;
}

/// What is wrong with the line, for a `Failure` about its file.
Failure failureInLine(const std::string& file, std::size_t line, const std::string& reason) {
    return {ExitStatus::noResult, file, "line " + std::to_string(line) + ": " + reason};
}

}  // namespace

void StatusURIOptions::addTo(CLI::App& subcommand) {
    subcommand
        .add_option("--status-uri", arguments_,
                    "Ask the printer of this queue there, and believe it (may be repeated)")
        ->type_name("QUEUE=URI")
        ->allow_extra_args(false)
        ->check(CLI::Validator(complaintAboutArgument, ""));
    subcommand.add_option("--status-uris", file_, "The same from a file with one QUEUE=URI a line")
        ->type_name("FILE");
}

std::optional<StatusURIOptions::Pair> StatusURIOptions::pairIn(std::string_view text,
                                                               std::string& reason) {
    const std::string shown = "\"" + Diagnostics::printable(text) + "\"";
    std::size_t mark = text.find('=');
    if (mark == std::string_view::npos) {
        reason = shown + " is no QUEUE=URI";
        return std::nullopt;
    }
    for (std::size_t next = mark; next != std::string_view::npos; next = text.find('=', next + 1)) {
        if (DeviceStatusSchemes::schemeOfURI(withoutBlanksAround(text.substr(next + 1)))) {
            mark = next;
            break;
        }
    }
    Pair pair{std::string(withoutBlanksAround(text.substr(0, mark))),
              std::string(withoutBlanksAround(text.substr(mark + 1)))};
    if (!couldBeQueueName(pair.queueName)) {
        reason = "\"" + Diagnostics::printable(pair.queueName) + "\" " + kNoQueueName;
        return std::nullopt;
    }
    if (pair.URI.empty()) {
        reason = shown + " names no URI";
        return std::nullopt;
    }
    return pair;
}

void StatusURIOptions::addPairsOfFile(const Complaint& complaintAbout,
                                      std::map<std::string, std::string>& URIs) const {
    std::string reason;
    const PPDText text = PPDTextWithContentsOfFile(*file_, &reason, kLargestFile);
    if (!text) {
        throw Failure(ExitStatus::noResult, *file_, reason);
    }
    std::map<std::string, std::size_t> lines;
    std::string_view rest = *text;
    for (std::size_t number = 1; !rest.empty(); ++number) {
        const std::string_view whole = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(rest.size(), whole.size() + 1));
        const std::string_view line = withoutBlanksAround(withoutComment(whole));
        if (line.empty()) {
            continue;
        }
        auto pair = pairIn(line, reason);
        if (!pair) {
            throw failureInLine(*file_, number, reason);
        }
        if (const auto mistake = complaintAbout(pair->URI)) {
            throw failureInLine(*file_, number,
                                Diagnostics::nameOfDevice(pair->URI) + ": " + *mistake);
        }
        const auto [earlier, isFirst] = lines.emplace(pair->queueName, number);
        if (!isFirst) {
            throw failureInLine(*file_, number,
                                "\"" + pair->queueName + "\" has a URI in line " +
                                    std::to_string(earlier->second) + " already");
        }
        URIs.emplace(std::move(pair->queueName), std::move(pair->URI));
    }
}

std::map<std::string, std::string> StatusURIOptions::URIs(const Backends& backends,
                                                          bool asksPostScript) const {
    const auto complaintAbout = [&](const std::string& URI) {
        return asksPostScript && DeviceStatusSchemes::schemeOfURI(URI) == "socket"
                   ? phraseForMistakenSocketURI(URI)
                   : phraseForMistakenDeviceURI(backends, URI);
    };
    std::map<std::string, std::string> URIs;
    std::string reason;
    for (const std::string& argument : arguments_) {
        auto pair = pairIn(argument, reason);  // It was checked when it was parsed.
        if (const auto complaint = complaintAbout(pair->URI)) {
            throw Failure(ExitStatus::noResult, Diagnostics::nameOfDevice(pair->URI), *complaint);
        }
        if (!URIs.emplace(pair->queueName, std::move(pair->URI)).second) {
            throw Failure(ExitStatus::usage, std::nullopt,
                          "--status-uri names the queue \"" + pair->queueName + "\" twice");
        }
    }
    if (file_) {
        addPairsOfFile(complaintAbout, URIs);
    }
    return URIs;
}

void StatusURIOptions::warnOfOtherQueues(const std::vector<std::string>& queueNames) const {
    std::string reason;
    for (const std::string& argument : arguments_) {
        const auto pair = pairIn(argument, reason);
        if (std::ranges::find(queueNames, pair->queueName) == queueNames.end()) {
            Diagnostics::warning(
                "", "--status-uri: \"" + pair->queueName + "\" is no queue of this run");
        }
    }
}

}  // namespace TkPPDUpdating
