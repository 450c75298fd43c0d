#pragma once

#include "updaters/attributes/OrbPPDPensConfigUpdater.h"

namespace TkPPDUpdating {

/// Writes the actual, nominal and brisk drop volumes of the installed pens, whether their ink
/// suffices, and whether a printhead is defective.
class OrbPPDPensConfigAdditionalInfoUpdater : public OrbPPDPensConfigUpdater {
  public:
    static constexpr std::string_view kClassName = "OrbPPDPensConfigAdditionalInfoUpdater";

    std::span<const std::string_view> attributeNames() const override;
};

}  // namespace TkPPDUpdating
