#include "backends/recorded/RecordedDeviceStatus.h"

#include <utility>

#include "backends/recorded/BoundedJSON.h"
#include "backends/recorded/RecordingReader.h"
#include "backends/recorded/RecordingWriter.h"
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
    Values values = reader.values(*recording);
    auto told = reader.told(*recording);
    if (!reader.error().empty()) {
        error = reader.error();
        return nullptr;
    }
    return std::make_shared<const RecordedDeviceStatus>(std::move(values), reader.droppedValues(),
                                                        std::move(told));
}

std::string RecordedDeviceStatus::JSONForStatus(const OrbCSDeviceStatus& status) {
    return recordingOfStatus(status);
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
