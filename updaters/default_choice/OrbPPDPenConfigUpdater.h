#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "manager/ITkPPDStatusReading.h"
#include "updaters/default_choice/OrbPPDStatusBasedOptionsUpdater.h"

namespace TkPPDUpdating {

/// Sets the defaults of "ZrPenConfig" and "ZrPenConfigOptions" to the code name of the pens
/// configuration that is installed.
class OrbPPDPenConfigUpdater : public OrbPPDStatusBasedOptionsUpdater, public ITkPPDStatusReading {
  public:
    static constexpr std::string_view kClassName = "OrbPPDPenConfigUpdater";

    std::vector<std::string> optionNames() override;
    std::optional<std::string_view> statusKeyForOptionWithName(
        std::string_view optionName) override;
    std::optional<std::string_view> accessoryNameForOptionWithName(
        std::string_view optionName) override;
    std::optional<std::string> PPDChoiceTextForStatusValue(const StatusValue& value) override;

    std::vector<std::string> statusEntriesRead() const override;
};

}  // namespace TkPPDUpdating
