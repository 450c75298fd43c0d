#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbCSStatusValue.h"

namespace TkPPDUpdating {

/// A device status that was read as a whole: what the printer reported, by status key
/// (`core_interface/TkCSKeys.h`), and why other values of its answer are not in it. What backends
/// hand over.
class ReportedDeviceStatus : public OrbCSDeviceStatus {
  public:
    using Values = std::map<std::string, OrbCSStatusValue, std::less<>>;

    /// `droppedValues` are one phrase each, which begins with the value's place in the answer and
    /// holds none of the printer's own text.
    explicit ReportedDeviceStatus(Values values, std::vector<std::string> droppedValues = {})
        : values_(std::move(values)), droppedValues_(std::move(droppedValues)) {}

    const OrbCSStatusValue* statusValueForKey_error(std::string_view key,
                                                    std::string* error) const override;

    /// Why values of the answer were dropped.
    const std::vector<std::string>& droppedValues() const { return droppedValues_; }

    /// The same for a status of any class; empty when it does not tell.
    static std::vector<std::string> droppedValuesOf(const OrbCSDeviceStatus& status);

  private:
    Values values_;
    std::vector<std::string> droppedValues_;
};

}  // namespace TkPPDUpdating
