#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>

#include "backends/recorded/RecordedDeviceStatus.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/TkCSKeys.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/TalkInput.h"
#include "text/UTF8.h"

namespace TkPPDUpdating::Fuzzing {

/// What holds of every status that a network printer gave: a recording of it drops nothing (so all
/// of its texts can stand in a PPD) and reads back as the same, it names no file of this machine,
/// and reasons for what was dropped are lines that people can read.
inline void requireSoundNetworkStatus(const ReportedDeviceStatus& status) {
    const std::string recording = RecordedDeviceStatus::JSONForStatus(status);
    std::string reason;
    const auto recorded = RecordedDeviceStatus::statusWithJSON(recording, reason);
    require(recorded != nullptr, "a recording of the status can be read");
    require(recorded->droppedValues().empty(), "its texts can stand in a PPD");
    require(RecordedDeviceStatus::JSONForStatus(*recorded) == recording, "it reads back");
    require(status.toldEntries().has_value(), "it says what it told");
    const auto* const types =
        status.statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey);
    for (const auto& type : types ? *types : OrbCustomMediaTypes()) {
        require(type && type->name() && type->mediaID(), "a media type has a name and an ID");
        require(!type->ICCProfile(), "a network printer names no profile");
    }
    std::map<std::string, std::ptrdiff_t> sourcesByEntry;
    for (const OrbCSStatusSource& source : status.sources()) {
        ++sourcesByEntry[source.entry];
    }
    for (const auto& [entry, count] : sourcesByEntry) {
        const auto found = OrbCSStatusSources::sourcesOf(status, entry);
        require(std::ranges::count(found, entry, &OrbCSStatusSource::entry) == count,
                "its sources are found by their entries");
    }
    std::string missing;
    require(!status.statusValueForKey_error("", &missing) && !missing.empty(), "no key, no value");
    for (const std::string& dropped : ReportedDeviceStatus::droppedValuesOf(status)) {
        require(!firstInvalidUTF8Byte(dropped) && dropped.find('\n') == std::string::npos,
                "a reason is one line");
    }
}

/// What holds of what asking a network printer gave: a sound status, or a cause and a reason.
/// Whether there is a status.
inline bool requireSoundOutcome(const OrbCSDeviceStatus* status, const OrbCSError& error) {
    if (!status) {
        requireReason(error.reason);
        require(error.cause != OrbCSError::Cause::unknown, "no status has a cause");
        return false;
    }
    const auto* const reported = dynamic_cast<const ReportedDeviceStatus*>(status);
    require(reported != nullptr, "a printer reports its status");
    requireSoundNetworkStatus(*reported);
    return true;
}

}  // namespace TkPPDUpdating::Fuzzing
