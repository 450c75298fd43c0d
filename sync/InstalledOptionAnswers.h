#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbCSStatusValue.h"
#include "sync/InstallableOptions.h"

namespace TkPPDUpdating {

/// What came of asking about one installable option.
struct InstalledOptionAnswer {
    /// Its keyword.
    std::string option;
    /// "PostScript" or "SNMP" when it was asked by its own question, "duplexer" when it follows the
    /// duplexer that the printer told of.
    std::string_view way;
    /// The keyword of its choice so far; empty when it had none.
    std::string before;
    /// The keyword of the choice that is installed; empty when that was not answered.
    std::string after;
    /// Why it was not: one phrase, which holds none of the printer's text.
    std::string reason;
    /// All of it in one line for people, in the PPD's texts.
    std::string words;
};

/// The answer about an option.
InstalledOptionAnswer answeredOption(const InstallableOption& option, std::string_view way,
                                     const std::string& choice);

/// The same when there is none.
InstalledOptionAnswer unansweredOption(const InstallableOption& option, std::string_view way,
                                       const std::string& reason);

/// What came of asking about these options. `status` is null when the printer gave none, and
/// `reasonOfSilence` then says why. Why single options were not answered stands in the dropped
/// values of the status, "OPTION: reason".
std::vector<InstalledOptionAnswer> answersOfStatus(std::span<const InstallableOption> options,
                                                   std::span<const std::string> asked,
                                                   std::string_view way,
                                                   const OrbCSDeviceStatus* status,
                                                   const std::string& reasonOfSilence);

/// The installed options that a status told; null when it told none.
const OrbCSInstalledOptions* installedOptionsOf(const OrbCSDeviceStatus& status);

/// A status that says what `others` does, which is null when it says nothing, and these installed
/// options besides, which come before those that it has itself. Null when both say nothing.
std::shared_ptr<const OrbCSDeviceStatus> statusWithInstalledOptions(
    std::shared_ptr<const OrbCSDeviceStatus> others, OrbCSInstalledOptions installed);

}  // namespace TkPPDUpdating
