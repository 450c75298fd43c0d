#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbCSIdentifiedStatus.h"
#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/OrbCSStatusSources.h"
#include "core_interface/OrbCSStatusValue.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// A device status that was read as a whole: what the printer reported, by status key
/// (`core_interface/TkCSKeys.h`), what its answer told at all, and why other values of it are not
/// in it. What backends hand over.
class TKPPDUPDATING_PUBLIC ReportedDeviceStatus : public OrbCSDeviceStatus,
                                                  public OrbCSPartialStatus,
                                                  public OrbCSStatusSources,
                                                  public OrbCSIdentifiedStatus {
  public:
    using Values = std::map<std::string, OrbCSStatusValue, std::less<>>;  ///< By status key.

    /// `droppedValues` are one phrase each, which begins with the value's place in the answer and
    /// holds none of the printer's own text. `told` are the entries that the answer told, those
    /// without a value included (then the printer has none); nothing when it told everything.
    /// `sources` are what the values were read from, and `identity` is what the printer calls
    /// itself, as far as a backend keeps that.
    explicit ReportedDeviceStatus(Values values, std::vector<std::string> droppedValues = {},
                                  std::optional<OrbCSToldEntries> told = std::nullopt,
                                  std::vector<OrbCSStatusSource> sources = {},
                                  OrbCSPrinterIdentity identity = {})
        : values_(std::move(values)),
          droppedValues_(std::move(droppedValues)),
          told_(std::move(told)),
          sources_(std::move(sources)),
          identity_(std::move(identity)) {}

    const OrbCSStatusValue* statusValueForKey_error(std::string_view key,
                                                    std::string* error) const override;

    const std::optional<OrbCSToldEntries>& toldEntries() const override { return told_; }

    const std::vector<OrbCSStatusSource>& sources() const override { return sources_; }

    const OrbCSPrinterIdentity& identity() const override { return identity_; }

    /// Why values of the answer were dropped.
    const std::vector<std::string>& droppedValues() const { return droppedValues_; }

    /// The same for a status of any class; empty when it does not tell.
    static std::vector<std::string> droppedValuesOf(const OrbCSDeviceStatus& status);

  private:
    Values values_;
    std::vector<std::string> droppedValues_;
    std::optional<OrbCSToldEntries> told_;
    std::vector<OrbCSStatusSource> sources_;
    OrbCSPrinterIdentity identity_;
};

}  // namespace TkPPDUpdating
