#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "manager/ITkPPDStatusReading.h"
#include "text/TkPPDUpdatingPublic.h"
#include "updaters/default_choice/OrbPPDStatusBasedOptionsUpdater.h"

namespace TkPPDUpdating {

/// Base of an updater that sets the default of one option to what one value of the printer's status
/// says. A subclass names the two when it is made, and itself (`kClassName`):
///
///     class StaplerUpdater : public OrbPPDOneOptionUpdater {
///       public:
///         static constexpr std::string_view kClassName = "StaplerUpdater";
///         StaplerUpdater()
///             : OrbPPDOneOptionUpdater("ZrStaplerInstalled", "DeviceAccessories.Stapler") {}
///     };
///
/// Which choice a value means it may say by `PPDChoiceTextForStatusValue`. The choice must be one
/// of the option's in the PPD, or nothing changes.
class TKPPDUPDATING_PUBLIC OrbPPDOneOptionUpdater : public OrbPPDStatusBasedOptionsUpdater,
                                                    public ITkPPDStatusReading {
  public:
    std::vector<std::string> optionNames() override;
    std::optional<std::string_view> statusKeyForOptionWithName(
        std::string_view optionName) override;
    std::optional<std::string_view> accessoryNameForOptionWithName(
        std::string_view optionName) override;

    /// "True" or "False" for an accessory; the text of a number or text, for example "1200";
    /// nothing for a value of another kind, whose meaning a subclass says.
    std::optional<std::string> PPDChoiceTextForStatusValue(const StatusValue& value) override;

    /// The one entry.
    std::vector<std::string> statusEntriesRead() const override;

  protected:
    /// `optionName` has no asterisk. `statusEntry` is a status key (`core_interface/TkCSKeys.h`) or
    /// a part of what stands under one (`core_interface/OrbCSPartialStatus.h`):
    /// "DeviceAccessories.NAME" stands for the accessory of that name, be it one that this library
    /// does not know; of another part, the value under the key is read.
    OrbPPDOneOptionUpdater(std::string_view optionName, std::string_view statusEntry);

  private:
    std::string optionName_;
    std::string statusEntry_;
};

}  // namespace TkPPDUpdating
