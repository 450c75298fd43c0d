#pragma once

#include <string>
#include <vector>

#include "manager/ITkPPDStatusReading.h"
#include "updaters/attributes/OrbPPDAttributesUpdater.h"

namespace TkPPDUpdating {

/// Tells the print system whether the printer's colour calibration is due: "BPECalibrationDue" is
/// "True" when the printer was never calibrated, "False" otherwise.
class OrbPPDLinTablesUpdater : public OrbPPDAttributesUpdater, public ITkPPDStatusReading {
  public:
    static constexpr std::string_view kClassName = "OrbPPDLinTablesUpdater";

    std::span<const std::string_view> attributeNames() const override;

    /// Nothing without a device status. A status without linearization table, a table without
    /// timestamp and a timestamp that is no number count as never calibrated: a calibration too
    /// many does no harm.
    std::optional<OrbPPDUpdatingValues> attributesFromDeviceWithURI_context(
        std::optional<std::string_view> deviceURI, OrbDictionary* context) override;

    std::vector<std::string> statusEntriesRead() const override;
};

}  // namespace TkPPDUpdating
