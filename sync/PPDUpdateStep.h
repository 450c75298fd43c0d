#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCSStatusSources.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"

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

    /// The name of the updater's class.
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

/// Runs the applicable updaters of a manager over the PPD, in their order, one at a time, and gives
/// a step for each that changed a line. A line that only moved did not change. It repeats the work
/// of the update: for explanations. Raises `std::out_of_range` as the manager does.
std::vector<PPDUpdateStep> stepsOfPPDUpdate(const OrbPPDConcreteUpdatingManager& manager,
                                            const PPDModelFile& PPD,
                                            std::optional<std::string_view> deviceURI,
                                            const PPDUpdateAnswer& answer);

}  // namespace TkPPDUpdating
