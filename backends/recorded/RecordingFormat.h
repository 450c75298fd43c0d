#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <span>
#include <string_view>

#include "backends/recorded/RecordingReader.h"
#include "core_interface/OrbCSDeviceStatus.h"

namespace TkPPDUpdating {

/// A status key in a recording, and how its value is read and written.
struct RecordedKey {
    std::string_view key;

    /// The value, or nothing when it is left out. What is wrong with it is told to the reader.
    std::optional<OrbCSStatusValue> (*read)(RecordingReader& reader, const nlohmann::json& value,
                                            const RecordingReader::Place& place);

    /// Null when the status has no value of that kind under the key.
    nlohmann::ordered_json (*written)(const OrbCSDeviceStatus& status, std::string_view key);
};

/// All that a recording can have, in the order in which it is written.
std::span<const RecordedKey> recordedKeys();

/// The member of a recording that lists the entries that it tells; without it a recording tells
/// everything.
inline constexpr std::string_view kRecordingToldMember = "Told";

}  // namespace TkPPDUpdating
