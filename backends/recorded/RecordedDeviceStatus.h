#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "backends/recorded/RecordedIgnoredMember.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// A device status read from a recording: a JSON object whose keys are the status key texts (the
/// format is in docs/recorded-status.md).
class TKPPDUPDATING_PUBLIC RecordedDeviceStatus : public ReportedDeviceStatus {
  public:
    using ReportedDeviceStatus::ReportedDeviceStatus;

    /// The reason that is given for a recording that is just null, which stands for a printer that
    /// was asked and gave no status.
    static constexpr std::string_view kSilence = "the printer is recorded as silent";

    /// Reads a recording from JSON text (UTF-8). Null, and the reason with its place in `error`,
    /// when the text is not JSON or something in it has another type than the format says. A text
    /// that would do harm in a PPD (`ppd/PPDTextSafety.h`) is nothing, or is left out with what
    /// cannot do without it; the rest of the status stays, and the reason is in `droppedValues`.
    static std::shared_ptr<const RecordedDeviceStatus> statusWithJSON(std::string_view JSON,
                                                                      std::string& error);

    /// What was ignored of the recording, in its order: the first hundred. An ignored member is no
    /// error; a caller whose user wrote the recording may want to ask whether it is misspelt.
    const std::vector<RecordedIgnoredMember>& ignoredMembers() const { return ignoredMembers_; }

    /// The status as JSON in the recorded format: keys in the order of the format, two blanks of
    /// indentation, a line feed at the end; with the member "Told" when the status does not tell
    /// everything. What the printer did not report is left out, and so is a number that JSON cannot
    /// express (not finite). Reading it back gives an equal status.
    static std::string JSONForStatus(const OrbCSDeviceStatus& status);

  private:
    std::vector<RecordedIgnoredMember> ignoredMembers_;
};

/// Registers the backend for "file": the URI names a recording, `file:///path/printer.json` or,
/// relative to the working directory, `file:printer.json`.
TKPPDUPDATING_PUBLIC void registerRecordedDeviceStatus(DeviceStatusSchemes& schemes);

}  // namespace TkPPDUpdating
