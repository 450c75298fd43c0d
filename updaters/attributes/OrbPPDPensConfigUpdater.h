#pragma once

#include <string>
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

}  // namespace TkPPDUpdating
