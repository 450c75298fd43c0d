#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "core_interface/OrbCSDeviceStatus.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"

namespace TkPPDUpdating::Benchmarks {

/// What the printer of a run reports.
struct Printer {
    bool hasDuplexer = true;
    std::size_t mediaTypes = 10;
    std::size_t estimationRecords = 4;
};

/// A status in memory that tells everything, so that obtaining it costs nothing.
std::shared_ptr<const OrbCSDeviceStatus> statusOf(const Printer& printer);

/// One printer and one manager, set up outside of what is measured: the parsed-PPD model of this
/// project as the core library, and the printer's status behind every URI.
class UpdateRun {
  public:
    enum class Updaters {
        /// Those of a plain office printer: duplexer, device capabilities and page size.
        kTypical,
        kAllFourteen
    };

    UpdateRun(Updaters updaters, const Printer& printer);

    /// Updates the PPD at `path` and gives the size of the new text. Raises `std::runtime_error`
    /// when the run gives none.
    std::size_t update(const std::string& path);

    /// The values for a parsed PPD; gives how many there are.
    std::size_t values(const OrbPPDFile& PPDFile);

  private:
    std::shared_ptr<const OrbCSDeviceStatus> status_;
    OrbPPDConcreteUpdatingManager manager_;
};

}  // namespace TkPPDUpdating::Benchmarks
