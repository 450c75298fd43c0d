#pragma once

#include <optional>
#include <string_view>

#include "core_interface/OrbPPDChoice.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// One option (UI keyword) of a parsed PPD. Owned by the model; valid as long as the `OrbPPDFile`
/// that it came from.
class TKPPDUPDATING_PUBLIC OrbPPDOption {
  public:
    virtual ~OrbPPDOption() = default;

    /// The choice keyword that the option's "Default" line names; nothing when there is no such
    /// line or it has no value.
    virtual std::optional<std::string_view> defaultChoiceName() const = 0;

    /// The choice with that keyword (compared exactly), or null. Not owned by the caller.
    virtual const OrbPPDChoice* choiceForName(std::string_view choiceName) const = 0;
};

}  // namespace TkPPDUpdating
