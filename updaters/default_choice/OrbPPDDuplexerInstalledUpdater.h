#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "manager/ITkPPDStatusReading.h"
#include "updaters/default_choice/OrbPPDStatusBasedOptionsUpdater.h"

namespace TkPPDUpdating {

/// Sets the default of the installable option "ZrAutoDuplexerInstalled" to whether the printer has
/// its automatic duplexer installed.
class OrbPPDDuplexerInstalledUpdater : public OrbPPDStatusBasedOptionsUpdater,
                                       public ITkPPDStatusReading {
  public:
    static constexpr std::string_view kClassName = "OrbPPDDuplexerInstalledUpdater";

    std::vector<std::string> optionNames() override;
    std::optional<std::string_view> statusKeyForOptionWithName(
        std::string_view optionName) override;
    std::optional<std::string_view> accessoryNameForOptionWithName(
        std::string_view optionName) override;
    std::optional<std::string> PPDChoiceTextForStatusValue(const StatusValue& value) override;

    std::vector<std::string> statusEntriesRead() const override;
};

}  // namespace TkPPDUpdating
