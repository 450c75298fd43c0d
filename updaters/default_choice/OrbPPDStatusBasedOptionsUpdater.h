#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "core_interface/OrbCSDeviceStatus.h"
#include "text/TkPPDUpdatingPublic.h"
#include "updaters/default_choice/OrbPPDDefaultChoiceUpdater.h"

namespace TkPPDUpdating {

/// Abstract base of the updaters whose default choices follow from the device's status. For each
/// option a subclass answers three questions: the status key or the accessory that the option is
/// read from, and the choice that a value means.
class TKPPDUPDATING_PUBLIC OrbPPDStatusBasedOptionsUpdater : public OrbPPDDefaultChoiceUpdater {
  public:
    static constexpr std::string_view kClassName = "OrbPPDStatusBasedOptionsUpdater";  ///< Its name

    /// What was read from the device for an option: whether the accessory is installed, or the
    /// value under the status key (never null, owned by the status).
    using StatusValue = std::variant<bool, const OrbCSStatusValue*>;

    /// The status key that the option is read from; nothing when it is read through an accessory.
    /// Raises `OrbInvalidOperationError` here: subclasses answer it.
    virtual std::optional<std::string_view> statusKeyForOptionWithName(std::string_view optionName);

    /// The name of the accessory that the option tells about, or nothing. Only asked when there is
    /// no status key. Raises `OrbInvalidOperationError` here: subclasses answer it.
    virtual std::optional<std::string_view> accessoryNameForOptionWithName(
        std::string_view optionName);

    /// The choice keyword that the value means, or nothing to leave the option out. Raises
    /// `OrbInvalidOperationError` here: subclasses answer it.
    virtual std::optional<std::string> PPDChoiceTextForStatusValue(const StatusValue& value);

    /// The choices of all options. Nothing when there is no status or one option cannot be read:
    /// all or nothing.
    std::optional<OrbPPDDefaultChoices> defaultChoicesFromDeviceWithURI_context(
        std::optional<std::string_view> deviceURI, OrbDictionary* context) override;

  protected:
    /// "True" when the value is an accessory that is installed, else "False".
    static std::string choiceTextForInstalledAccessory(const StatusValue& value);

  private:
    std::optional<StatusValue> statusValueForOptionWithName(std::string_view optionName,
                                                            const OrbCSDeviceStatus& deviceStatus);
};

}  // namespace TkPPDUpdating
