#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "sync/PPDUpdateStep.h"

namespace TkPPDUpdating {

/// How the tool shows why lines of a PPD change.
class ExplanationReport {
  public:
    ExplanationReport() = delete;

    /// For people, each line with `indentation` before it, harmless for a terminal:
    ///
    ///     OrbPPDDuplexerInstalledUpdater
    ///       DeviceAccessories.Duplexer: installed
    ///         sides-supported: one-sided,two-sided-long-edge
    ///       -*DefaultZrAutoDuplexerInstalled: False
    ///       +*DefaultZrAutoDuplexerInstalled: True
    static std::string lines(const std::vector<PPDUpdateStep>& steps,
                             const std::string& indentation);

    /// For programs: one object for each step; the manual page says what is in it.
    static nlohmann::ordered_json JSON(const std::vector<PPDUpdateStep>& steps);
};

}  // namespace TkPPDUpdating
