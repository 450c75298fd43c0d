#pragma once

#include "updaters/attributes/OrbPPDPensConfigUpdater.h"

namespace TkPPDUpdating {

/// Writes the name of the installed pens configuration.
class OrbPPDPensConfigNameUpdater : public OrbPPDPensConfigUpdater {
  public:
    static constexpr std::string_view kClassName = "OrbPPDPensConfigNameUpdater";

    std::span<const std::string_view> attributeNames() const override;
};

}  // namespace TkPPDUpdating
