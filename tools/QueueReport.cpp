#include "tools/QueueReport.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>

#include "backends/recorded/BoundedJSON.h"
#include "backends/recorded/RecordedDeviceStatus.h"
#include "tools/Failure.h"
#include "tools/SyncReport.h"

namespace TkPPDUpdating {

namespace {

using nlohmann::json;

constexpr const char* kHint = "; \"tkppdupdate sync --json\" writes what is read here";

/// Reads the object on one line.
class ReportedLine {
  public:
    ReportedLine(const std::string& place, std::size_t number) : place_(place), number_(number) {}

    QueueReport reportWithText(std::string_view text) const {
        std::string error;
        const auto object = JSONWithText(text, error, number_);
        if (!object) {
            throw Failure(ExitStatus::noResult, place_, error + kHint);
        }
        if (!object->is_object()) {
            fail("is " + kindOf(*object) + ", not the object of a queue" + kHint);
        }
        return report(*object);
    }

  private:
    [[noreturn]] void fail(const std::string& cause) const {
        throw Failure(ExitStatus::noResult, place_,
                      "line " + std::to_string(number_) + ": " + cause);
    }

    [[noreturn]] void failOfType(const char* key, const json& value, const char* expected) const {
        fail("\"" + std::string(key) + "\" is " + kindOf(value) + ", not " + expected);
    }

    static std::string kindOf(const json& value) {
        const std::string name = value.type_name();
        const bool isVowel = name.find_first_of("aeiou") == 0;
        return value.is_null() ? name : (isVowel ? "an " : "a ") + name;
    }

    /// The member, or null when it is missing or null.
    static const json* member(const json& object, const char* key) {
        const auto found = object.find(key);
        return found == object.end() || found->is_null() ? nullptr : &*found;
    }

    std::optional<std::string> textOrNothing(const json& object, const char* key) const {
        const json* const value = member(object, key);
        if (value && !value->is_string()) {
            failOfType(key, *value, "a string");
        }
        return value ? std::optional(value->get<std::string>()) : std::nullopt;
    }

    std::string text(const json& object, const char* key) const {
        return textOrNothing(object, key).value_or("");
    }

    std::string requiredText(const json& object, const char* key) const {
        const auto value = textOrNothing(object, key);
        if (!value) {
            fail("\"" + std::string(key) + "\" is missing" + kHint);
        }
        return *value;
    }

    /// The elements of the array under the key; none when it is missing.
    const json& elements(const json& object, const char* key) const {
        static const json kNone = json::array();
        const json* const value = member(object, key);
        if (value && !value->is_array()) {
            failOfType(key, *value, "an array");
        }
        return value ? *value : kNone;
    }

    std::vector<std::string> texts(const json& object, const char* key) const {
        std::vector<std::string> texts;
        for (const json& element : elements(object, key)) {
            if (!element.is_string()) {
                failOfType(key, element, "a string in each element");
            }
            texts.push_back(element.get<std::string>());
        }
        return texts;
    }

    std::vector<QueueReport::Change> changes(const json& object) const {
        std::vector<QueueReport::Change> changes;
        for (const json& element : elements(object, "changes")) {
            if (!element.is_object()) {
                failOfType("changes", element, "an object in each element");
            }
            changes.push_back({requiredText(element, "keyword"), text(element, "optionKeyword"),
                               textOrNothing(element, "before"), textOrNothing(element, "after")});
        }
        return changes;
    }

    std::vector<std::string> answers(const json& object) const {
        std::vector<std::string> answers;
        for (const json& element : elements(object, "answers")) {
            if (!element.is_object()) {
                failOfType("answers", element, "an object in each element");
            }
            const auto answer = textOrNothing(element, "answer");
            answers.push_back(requiredText(element, "option") + ": " +
                              (answer ? *answer : "not answered, " + text(element, "reason")));
        }
        return answers;
    }

    QueueSyncResult result(const json& object) const {
        const std::string name = requiredText(object, "result");
        const auto result = SyncReport::resultNamed(name);
        if (!result) {
            fail("\"result\" is none of the results of a queue" + std::string(kHint));
        }
        return *result;
    }

    std::shared_ptr<const OrbCSDeviceStatus> status(const json& object) const {
        const json* const recording = member(object, "status");
        if (!recording) {
            return nullptr;
        }
        std::string error;
        auto status = RecordedDeviceStatus::statusWithJSON(recording->dump(), error);
        if (!status) {
            fail("\"status\": " + error);
        }
        return status;
    }

    QueueReport report(const json& object) const {
        QueueReport report;
        report.queue = requiredText(object, "queue");
        report.result = result(object);
        report.cause = text(object, "cause");
        report.reason = text(object, "reason");
        report.notes = texts(object, "notes");
        report.kept = texts(object, "kept");
        report.answers = answers(object);
        report.changes = changes(object);
        report.changedInWords = texts(object, "changedInWords");
        report.server = text(object, "server");
        report.deviceURI = text(object, "deviceURI");
        report.statusURI = text(object, "statusURI");
        report.time = text(object, "time");
        report.status = status(object);
        return report;
    }

    const std::string& place_;
    std::size_t number_;
};

}  // namespace

std::vector<QueueReport> queueReportsWithText(const std::string& place, std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    std::vector<QueueReport> reports;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.find_first_not_of(kBlanks) != std::string_view::npos) {
            reports.push_back(ReportedLine(place, number).reportWithText(line));
        }
    }
    return reports;
}

}  // namespace TkPPDUpdating
