#pragma once

#include "updaters/attributes/OrbPPDPensConfigUpdater.h"

namespace TkPPDUpdating {

/// Writes the family identifiers of the installed pens.
class OrbPPDPensConfigFamilyIDUpdater : public OrbPPDPensConfigUpdater {
  public:
    static constexpr std::string_view kClassName = "OrbPPDPensConfigFamilyIDUpdater";

    std::span<const std::string_view> attributeNames() const override;
};

}  // namespace TkPPDUpdating
