#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/ppdmodel/PPDModelFile.h"
#include "backends/recorded/RecordedDeviceStatus.h"
#include "core_interface/OrbCoreInterface.h"
#include "fuzz/FuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Fuzzing {

using Status = std::shared_ptr<const OrbCSDeviceStatus>;
using ParsedPPD = std::shared_ptr<const PPDModelFile>;

/// Sets a core library, a user and a clock that are the same in every run.
inline void setTheSameWorld(std::shared_ptr<const TkCore> core) {
    static const auto kEnvironment =
        std::make_shared<const Testing::FakeEnvironment>(std::map<std::string, std::string>{
            {"ZrCurrentLocaleIdentifier", "en_US"}, {"ZrEPRLastUpdateTime", "252532800"}});
    OrbCoreInterface::setCore(std::move(core));
    OrbCoreInterface::setEnvironment(kEnvironment);
}

/// The status that a recording stands for, null for the recording of a silent printer; nothing when
/// it is no recording.
inline std::optional<Status> takenStatus(std::string_view& input) {
    std::string reason;
    const auto status = RecordedDeviceStatus::statusWithJSON(takenPart(input), reason);
    if (!status && reason != RecordedDeviceStatus::kSilence) {
        return std::nullopt;
    }
    return status;
}

/// The next PPD of the input; null when it is none.
inline ParsedPPD takenPPD(std::string_view& input) {
    return PPDModelFile::fileWithText(makePPDText(std::string(takenPart(input))));
}

/// Ends the process when there are findings, and tells them.
template <typename Findings>
void requireNone(const Findings& findings, const char* what) {
    for (const std::string& finding : findings) {
        (void)std::fprintf(stderr, "  %s\n", finding.c_str());
    }
    require(findings.empty(), what);
}

}  // namespace TkPPDUpdating::Fuzzing
