#pragma once

#include <string>
#include <vector>

#include "manager/ITkPPDStatusReading.h"
#include "updaters/attributes/OrbPPDAttributesUpdater.h"

namespace TkPPDUpdating {

/// Records the highest resolution that the device reports in "ZrMaxSupportedResolution", for
/// example "1200".
class OrbPPDMaxResolutionUpdater : public OrbPPDAttributesUpdater, public ITkPPDStatusReading {
  public:
    static constexpr std::string_view kClassName = "OrbPPDMaxResolutionUpdater";

    std::span<const std::string_view> attributeNames() const override;

    /// Nothing without a device status, and when the device does not report a resolution.
    std::optional<OrbPPDUpdatingValues> attributesFromDeviceWithURI_context(
        std::optional<std::string_view> deviceURI, OrbDictionary* context) override;

    std::vector<std::string> statusEntriesRead() const override;
};

}  // namespace TkPPDUpdating
