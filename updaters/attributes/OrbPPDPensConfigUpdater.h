#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "manager/ITkPPDStatusReading.h"
#include "updaters/attributes/OrbPPDAttributesUpdater.h"

namespace TkPPDUpdating {

/// Fetches what the device reports of its installed pens. Each subclass names the pen attributes of
/// one group, so that a group is written only into a PPD that carries it.
class OrbPPDPensConfigUpdater : public OrbPPDAttributesUpdater, public ITkPPDStatusReading {
  public:
    /// One entry for each attribute of the updater; empty where the device reports none, so that
    /// the line is blanked rather than left stale. Nothing without a device status.
    std::optional<OrbPPDUpdatingValues> attributesFromDeviceWithURI_context(
        std::optional<std::string_view> deviceURI, OrbDictionary* context) override;

    std::vector<std::string> statusEntriesRead() const override;
};

/// Writes the name of the installed pens configuration.
class OrbPPDPensConfigNameUpdater : public OrbPPDPensConfigUpdater {
  public:
    static constexpr std::string_view kClassName = "OrbPPDPensConfigNameUpdater";

    std::span<const std::string_view> attributeNames() const override;
};

/// Writes the family identifiers of the installed pens.
class OrbPPDPensConfigFamilyIDUpdater : public OrbPPDPensConfigUpdater {
  public:
    static constexpr std::string_view kClassName = "OrbPPDPensConfigFamilyIDUpdater";

    std::span<const std::string_view> attributeNames() const override;
};

/// Writes the dyes of the installed pens, their drop volumes and their everyday status.
class OrbPPDPensConfigCSLInfoUpdater : public OrbPPDPensConfigUpdater {
  public:
    static constexpr std::string_view kClassName = "OrbPPDPensConfigCSLInfoUpdater";

    std::span<const std::string_view> attributeNames() const override;
};

/// Writes the actual, nominal and brisk drop volumes of the installed pens, whether their ink
/// suffices, and whether a printhead is defective.
class OrbPPDPensConfigAdditionalInfoUpdater : public OrbPPDPensConfigUpdater {
  public:
    static constexpr std::string_view kClassName = "OrbPPDPensConfigAdditionalInfoUpdater";

    std::span<const std::string_view> attributeNames() const override;
};

}  // namespace TkPPDUpdating
