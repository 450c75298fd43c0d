#include "tools/SyncReport.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <vector>

#include "backends/recorded/RecordedDeviceStatus.h"
#include "sync/QueueSyncCauses.h"
#include "tools/ChangeReport.h"
#include "tools/Diagnostics.h"
#include "tools/ExplanationReport.h"
#include "tools/NextStep.h"
#include "tools/RunFacts.h"
#include "tools/StandardOutput.h"
#include "tools/SystemLog.h"
#include "tools/UnifiedDiff.h"

namespace TkPPDUpdating {

namespace {

struct ResultWords {
    QueueSyncResult result;
    /// In lines for people, and in JSON.
    std::string_view words;
    std::string_view name;
};

/// In the order of the summary.
constexpr auto kResults =
    std::to_array<ResultWords>({{QueueSyncResult::updated, "updated", "updated"},
                                {QueueSyncResult::wouldUpdate, "would be updated", "would-update"},
                                {QueueSyncResult::unchanged, "unchanged", "unchanged"},
                                {QueueSyncResult::skipped, "skipped", "skipped"},
                                {QueueSyncResult::busy, "busy", "busy"},
                                {QueueSyncResult::unreachable, "unreachable", "unreachable"},
                                {QueueSyncResult::unsupported, "unsupported", "unsupported"},
                                {QueueSyncResult::failed, "failed", "failed"},
                                {QueueSyncResult::abandoned, "abandoned", "abandoned"}});

const ResultWords& wordsOf(QueueSyncResult result) {
    std::size_t index = 0;
    while (index + 1 < kResults.size() && kResults[index].result != result) {
        ++index;
    }
    return kResults[index];
}

/// Whether the texts are those of a change that was or would be made.
bool isChange(const QueueSyncOutcome& outcome) {
    return (outcome.result == QueueSyncResult::updated ||
            outcome.result == QueueSyncResult::wouldUpdate) &&
           outcome.before && outcome.after;
}

/// Whether somebody who reads only what matters wants to know of it.
bool needsAttention(const QueueSyncOutcome& outcome) {
    return !outcome.notes.empty() || (outcome.result != QueueSyncResult::unchanged &&
                                      outcome.result != QueueSyncResult::skipped);
}

Journal::Priority priorityOf(QueueSyncResult result) {
    using enum QueueSyncResult;
    switch (result) {
        case failed:
        case abandoned:
            return Journal::Priority::error;
        case busy:
        case unreachable:
        case unsupported:
            return Journal::Priority::warning;
        case updated:
            return Journal::Priority::notice;
        default:
            return Journal::Priority::information;
    }
}

/// Where the status is from, when that is another place than the queue's; else empty. Why one is
/// not believed names its place itself.
std::string placeOfStatus(const QueueSyncOutcome& outcome) {
    const bool isTold =
        outcome.statusURI == outcome.deviceURI || outcome.result == QueueSyncResult::unsupported;
    return isTold ? std::string() : Diagnostics::withoutUserInfo(outcome.statusURI);
}

ChangeReport changesOf(const QueueSyncOutcome& outcome) {
    return isChange(outcome) ? ChangeReport(outcome.before, outcome.after)
                             : ChangeReport(nullptr, nullptr);
}

/// Null for a line that is not there.
nlohmann::ordered_json JSONForState(const std::optional<PPDChange::State>& state) {
    return state ? nlohmann::ordered_json(state->value) : nlohmann::ordered_json();
}

nlohmann::ordered_json JSONForText(const std::optional<PPDChange::State>& state) {
    return state && state->text ? nlohmann::ordered_json(*state->text) : nlohmann::ordered_json();
}

nlohmann::ordered_json JSONForChanges(const std::vector<PPDChange>& changes) {
    auto list = nlohmann::ordered_json::array();
    for (const PPDChange& change : changes) {
        nlohmann::ordered_json object = {{"keyword", change.keyword}};
        object["optionKeyword"] = change.optionKeyword.empty()
                                      ? nlohmann::ordered_json()
                                      : nlohmann::ordered_json(change.optionKeyword);
        object["before"] = JSONForState(change.before);
        object["after"] = JSONForState(change.after);
        if ((change.before && change.before->text) || (change.after && change.after->text)) {
            object["textBefore"] = JSONForText(change.before);
            object["textAfter"] = JSONForText(change.after);
        }
        list.push_back(std::move(object));
    }
    return list;
}

/// As `tkppdupdate status` writes it.
nlohmann::ordered_json JSONForStatus(const OrbCSDeviceStatus& status) {
    return nlohmann::ordered_json::parse(RecordedDeviceStatus::JSONForStatus(status));
}

std::string joined(const std::vector<std::string>& words) {
    std::string list;
    for (const std::string& word : words) {
        list += (list.empty() ? "" : ", ") + word;
    }
    return list;
}

std::string linesOf(const std::vector<InstalledOptionAnswer>& answers) {
    std::string lines;
    for (const InstalledOptionAnswer& answer : answers) {
        lines += "  " + Diagnostics::printable(answer.words) + "\n";
    }
    return lines;
}

nlohmann::ordered_json JSONOfAnswers(const std::vector<InstalledOptionAnswer>& answers) {
    auto array = nlohmann::ordered_json::array();
    for (const InstalledOptionAnswer& answer : answers) {
        nlohmann::ordered_json object = {
            {"option", answer.option}, {"from", answer.way}, {"before", answer.before}};
        if (answer.after.empty()) {
            object["reason"] = answer.reason;
        } else {
            object["answer"] = answer.after;
        }
        array.push_back(std::move(object));
    }
    return array;
}

}  // namespace

void SyncReport::add(const QueueSyncOutcome& outcome) const {
    if (options_.isQuiet && !needsAttention(outcome)) {
        return;
    }
    std::string text = options_.isJSON ? JSONForOutcome(outcome) : lineForOutcome(outcome);
    if (options_.isDiff && !options_.isJSON && isChange(outcome)) {
        text += unifiedDiff(outcome.queueName + ".ppd", *outcome.before, *outcome.after,
                            diffStyleForStandardOutput());
    }
    Diagnostics::clearProgress();
    const bool isInJournal =
        options_.journal &&
        options_.journal->add(priorityOf(outcome.result),
                              std::string_view(text).substr(0, text.find_last_not_of('\n') + 1),
                              journalFieldsForOutcome(outcome));
    if (!isInJournal) {
        StandardOutput::write(text);
    }
}

Journal::Fields SyncReport::journalFieldsForOutcome(const QueueSyncOutcome& outcome) {
    Journal::Fields fields = {{SystemLog::kJournalFieldOfQueue, outcome.queueName},
                              {"TKPPDUPDATE_RESULT", std::string(wordsOf(outcome.result).name)}};
    if (outcome.cause) {
        fields.emplace_back("TKPPDUPDATE_CAUSE", outcome.cause->name);
    }
    return fields;
}

void SyncReport::finish(const QueueSyncRun::Summary& summary) const {
    Diagnostics::clearProgress();
    if (!options_.isJSON && !options_.isQuiet) {
        StandardOutput::write(lineForSummary(summary));
    }
}

void SyncReport::showProgress(std::size_t doneCount, const std::string& lastQueueName) const {
    if (doneCount < queueCount_) {
        Diagnostics::showProgress(std::to_string(doneCount) + " of " + std::to_string(queueCount_) +
                                  " queues done" +
                                  (lastQueueName.empty() ? "" : ", the last one " + lastQueueName));
    }
}

std::optional<QueueSyncResult> SyncReport::resultNamed(std::string_view name) {
    const auto found = std::ranges::find(kResults, name, &ResultWords::name);
    return found == kResults.end() ? std::nullopt : std::optional(found->result);
}

std::string_view SyncReport::nameOfResult(QueueSyncResult result) {
    return wordsOf(result).name;
}

std::string_view SyncReport::wordsForResult(QueueSyncResult result) {
    return wordsOf(result).words;
}

std::string SyncReport::lineForOutcome(const QueueSyncOutcome& outcome) {
    std::string details = outcome.reason + nextStepAfter(outcome.cause);
    for (const std::string& note : outcome.notes) {
        details += (details.empty() ? "" : "; ") + note;
    }
    const std::string kept = PPDUpdate::wordsForKeptEntries(outcome.keptEntries);
    const std::string place = placeOfStatus(outcome);
    return Diagnostics::printable(Diagnostics::nameOfPlace(outcome.queueName) + ": " +
                                  std::string(wordsOf(outcome.result).words) +
                                  (details.empty() ? "" : ": " + details)) +
           "\n" + changesOf(outcome).lines("  ") +
           (place.empty() ? "" : "  status from " + Diagnostics::printable(place) + "\n") +
           linesOf(outcome.answers) + (kept.empty() ? "" : "  " + kept + "\n") +
           ExplanationReport::lines(outcome.steps, "  ");
}

std::string SyncReport::JSONForOutcome(const QueueSyncOutcome& outcome) const {
    const ChangeReport changes = changesOf(outcome);
    nlohmann::ordered_json object = {{"queue", outcome.queueName},
                                     {"result", wordsOf(outcome.result).name},
                                     {"changed", changes.keywords()},
                                     {"changes", JSONForChanges(changes.changes())}};
    if (!changes.descriptions().empty()) {
        object["changedInWords"] = changes.descriptions();
    }
    if (outcome.cause) {
        object["cause"] = outcome.cause->name;
    }
    if (!outcome.reason.empty()) {
        object["reason"] = outcome.reason;
    }
    if (!outcome.notes.empty()) {
        object["notes"] = outcome.notes;
    }
    if (!outcome.answers.empty()) {
        object["answers"] = JSONOfAnswers(outcome.answers);
    }
    if (!outcome.keptEntries.empty()) {
        object["kept"] = outcome.keptEntries;
    }
    if (outcome.status) {
        object["status"] = JSONForStatus(*outcome.status);
    }
    if (!outcome.steps.empty()) {
        object["explanation"] = ExplanationReport::JSON(outcome.steps);
    }
    if (options_.isDiff && isChange(outcome)) {
        object["diff"] = unifiedDiff(outcome.queueName + ".ppd", *outcome.before, *outcome.after,
                                     DiffStyle::forPrograms);
    }
    object["server"] = options_.server;
    if (!outcome.deviceURI.empty()) {
        object["deviceURI"] = Diagnostics::withoutUserInfo(outcome.deviceURI);
    }
    if (!outcome.statusURI.empty()) {
        object["statusURI"] = Diagnostics::withoutUserInfo(outcome.statusURI);
    }
    object["time"] = timestampNow();
    object["version"] = toolVersion();
    // Bytes that are not UTF-8 would make it no JSON: they become U+FFFD.
    return object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string SyncReport::lineForSummary(const QueueSyncRun::Summary& summary) {
    std::size_t total = 0;
    std::vector<std::string> parts;
    for (const ResultWords& words : kResults) {
        const auto count = summary.find(words.result);
        if (count != summary.end() && count->second > 0) {
            total += count->second;
            parts.push_back(std::to_string(count->second) + " " + std::string(words.words));
        }
    }
    return std::to_string(total) + (total == 1 ? " queue" : " queues") +
           (parts.empty() ? "" : ": " + joined(parts)) + "\n";
}

}  // namespace TkPPDUpdating
