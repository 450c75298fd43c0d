#pragma once

#include "updaters/attributes/OrbPPDPensConfigUpdater.h"

namespace TkPPDUpdating {

/// Writes the dyes of the installed pens, their drop volumes and their everyday status.
class OrbPPDPensConfigCSLInfoUpdater : public OrbPPDPensConfigUpdater {
  public:
    static constexpr std::string_view kClassName = "OrbPPDPensConfigCSLInfoUpdater";

    std::span<const std::string_view> attributeNames() const override;
};

}  // namespace TkPPDUpdating
