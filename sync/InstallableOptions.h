#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/PPDStatements.h"

namespace TkPPDUpdating {

/// An option of a PPD's group InstallableOptions (PPD specification 4.3, section 5.4).
struct InstallableOption {
    struct Choice {
        std::string keyword;
        /// For people; the keyword where the PPD has no text.
        std::string text;
    };

    std::string keyword;
    /// For people; the keyword where the PPD has no text.
    std::string text;
    std::vector<Choice> choices;
    /// The keyword of its default choice; empty when it has none.
    std::string defaultChoice;

    /// Null when it has none of that keyword.
    const Choice* choice(std::string_view choiceKeyword) const;

    /// The text of a choice; `choiceKeyword` itself when it has none of that keyword.
    std::string textOfChoice(std::string_view choiceKeyword) const;
};

/// The options of the group whose defaults `OrbPPDInstallableOptionsUpdater` sets, in their order,
/// as libcups reads them.
std::vector<InstallableOption> installableOptionsOf(std::span<const PPDStatement> statements);

}  // namespace TkPPDUpdating
