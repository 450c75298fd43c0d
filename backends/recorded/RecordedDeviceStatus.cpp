#include "backends/recorded/RecordedDeviceStatus.h"

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "backends/recorded/BoundedJSON.h"
#include "backends/recorded/RecordingFormat.h"
#include "backends/recorded/RecordingReader.h"
#include "core_interface/OrbCSPartialStatus.h"
#include "ppd/PPDTextFile.h"
#include "text/FileURL.h"

namespace TkPPDUpdating {

namespace {

/// Far above any real printer, far below what would exhaust memory: the shortest objects take a
/// hundred times as much of it as of the recording.
constexpr std::size_t kLargestRecording = std::size_t{4} * 1024 * 1024;

std::shared_ptr<const OrbCSDeviceStatus> statusWithContentsOfFile(const std::string& path,
                                                                  OrbCSError& error) {
    std::string reason;
    const PPDText recording = PPDTextWithContentsOfFile(path, &reason, kLargestRecording);
    auto status = recording ? RecordedDeviceStatus::statusWithJSON(*recording, reason) : nullptr;
    if (!status) {
        const auto cause = reason == RecordedDeviceStatus::kSilence
                               ? OrbCSError::Cause::unknown
                               : OrbCSError::Cause::unreadableRecording;
        error = {cause, path + ": " + reason};
    }
    return status;
}

ReportedDeviceStatus::Values valuesOf(const nlohmann::json& recording, RecordingReader& reader) {
    ReportedDeviceStatus::Values values;
    const RecordingReader::Place root;
    if (!reader.isObject(recording, root)) {
        return values;
    }
    std::vector<std::string_view> members = {kRecordingToldMember};
    for (const RecordedKey& each : recordedKeys()) {
        members.push_back(each.key);
        const auto* value = RecordingReader::member(recording, each.key);
        auto statusValue = value ? each.read(reader, *value, {&root, each.key, {}}) : std::nullopt;
        if (statusValue) {
            values.emplace(each.key, std::move(*statusValue));
        }
    }
    reader.noteOtherMembers(recording, root, members);
    return values;
}

/// Nothing when the recording tells everything.
std::optional<OrbCSToldEntries> entriesTold(const nlohmann::json& recording,
                                            RecordingReader& reader) {
    const auto* list =
        recording.is_object() ? RecordingReader::member(recording, kRecordingToldMember) : nullptr;
    if (!list) {
        return std::nullopt;
    }
    const RecordingReader::Place root;
    const RecordingReader::Place place{&root, kRecordingToldMember, {}};
    OrbCSToldEntries entries;
    if (!reader.isArray(*list, place)) {
        return entries;
    }
    for (std::size_t i = 0; i < list->size(); ++i) {
        const nlohmann::json& entry = (*list)[i];
        if (entry.is_string()) {
            entries.insert(entry.get<std::string>());
        } else {
            reader.wrongType(entry, {&place, {}, i}, "a string");
        }
    }
    return entries;
}

}  // namespace

std::shared_ptr<const RecordedDeviceStatus> RecordedDeviceStatus::statusWithJSON(
    std::string_view JSON, std::string& error) {
    const auto recording = JSONWithText(JSON, error);
    if (!recording) {
        return nullptr;
    }
    if (recording->is_null()) {
        error = kSilence;
        return nullptr;
    }
    RecordingReader reader;
    Values values = valuesOf(*recording, reader);
    auto told = entriesTold(*recording, reader);
    if (!reader.error().empty()) {
        error = reader.error();
        return nullptr;
    }
    auto status = std::make_shared<RecordedDeviceStatus>(std::move(values), reader.droppedValues(),
                                                         std::move(told));
    status->ignoredMembers_ = reader.ignoredMembers();
    return status;
}

std::string RecordedDeviceStatus::JSONForStatus(const OrbCSDeviceStatus& status) {
    nlohmann::ordered_json recording = nlohmann::ordered_json::object();
    for (const RecordedKey& each : recordedKeys()) {
        auto value = each.written(status, each.key);
        if (!value.is_null()) {
            recording[std::string(each.key)] = std::move(value);
        }
    }
    if (const auto told = OrbCSPartialStatus::toldEntriesOf(status)) {
        recording[std::string(kRecordingToldMember)] = *told;
    }
    // A text that is not UTF-8 must not end in an exception.
    return recording.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

void registerRecordedDeviceStatus(DeviceStatusSchemes& schemes) {
    schemes.registerScheme("file",
                           [](const std::string& deviceURI, const OrbDictionary* /*parameters*/,
                              OrbCSError& error) -> std::shared_ptr<const OrbCSDeviceStatus> {
                               if (const auto path = pathFromFileURL(deviceURI)) {
                                   return statusWithContentsOfFile(*path, error);
                               }
                               error = {OrbCSError::Cause::malformedURI,
                                        "the device URI names no file of this machine"};
                               return nullptr;
                           });
}

}  // namespace TkPPDUpdating
