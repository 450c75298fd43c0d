#pragma once

#include <string_view>

#include "core_interface/OrbPPDOption.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// An optional second interface of an `OrbPPDOption`, for a model that knows in which group an
/// option stands (PPD specification 4.3, OpenGroup).
class TKPPDUPDATING_PUBLIC OrbPPDGroupedOption {
  public:
    OrbPPDGroupedOption() = default;
    OrbPPDGroupedOption(const OrbPPDGroupedOption&) = delete;
    OrbPPDGroupedOption& operator=(const OrbPPDGroupedOption&) = delete;
    virtual ~OrbPPDGroupedOption() = default;

    /// The keyword of the group; empty outside of all. Valid as long as the option.
    virtual std::string_view groupName() const = 0;

    /// The same for an option of any class; empty when it is null or does not know.
    static std::string_view groupNameOf(const OrbPPDOption* option) {
        const auto* const grouped = dynamic_cast<const OrbPPDGroupedOption*>(option);
        return grouped ? grouped->groupName() : std::string_view();
    }
};

}  // namespace TkPPDUpdating
