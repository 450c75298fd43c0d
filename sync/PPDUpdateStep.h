#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCSStatusSources.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "ppd/PPDText.h"

namespace TkPPDUpdating {

/// What one updater did to a PPD, and from what it knew to.
struct PPDUpdateStep {
    /// An entry of the printer's status that the updater reads
    /// (`core_interface/OrbCSPartialStatus.h`).
    struct Reading {
        std::string entry;
        /// What the status says under it, for people.
        std::string value;
        /// The attributes of the printer's answer that it comes from, where they are known.
        std::vector<OrbCSStatusSource> sources;
    };

    /// The name of the updater's class, or of what else edited the text.
    std::string updater;
    /// Empty for an updater that reads no status or does not say what it reads.
    std::vector<Reading> readings;
    /// The lines that went and those that came, in their order, without line feeds.
    std::vector<std::string> removedLines;
    std::vector<std::string> addedLines;
};

/// What the printer said, and what the updaters are given.
struct PPDUpdateAnswer {
    /// As the backend handed it over; null when the printer was not asked.
    std::shared_ptr<const OrbCSDeviceStatus> status;
    /// The same, completed from the PPD (`manager/OrbPPDToldRule.h`); null as above.
    std::shared_ptr<const OrbCSDeviceStatus> completed;
};

/// An update, and what was done in it: a step for each updater that changed a line. A line that
/// only moved did not change.
struct ExplainedPPDUpdate {
    PPDText text;
    std::vector<PPDUpdateStep> steps;
};

/// The same text as that of the manager's operation: runs the applicable updaters over the PPD, in
/// their order, and compares the text after each. Raises `std::out_of_range` as the manager does.
ExplainedPPDUpdate explainedPPDUpdate(const OrbPPDConcreteUpdatingManager& manager,
                                      const PPDModelFile& PPD,
                                      std::optional<std::string_view> deviceURI,
                                      const PPDUpdateAnswer& answer);

/// A step that made `after` of `before`, with the lines that differ and nothing read.
PPDUpdateStep stepBetween(std::string updater, std::string_view before, std::string_view after);

}  // namespace TkPPDUpdating
