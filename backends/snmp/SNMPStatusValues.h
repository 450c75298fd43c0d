#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/schemes/DroppedValues.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "backends/snmp/SNMPOptionAnswers.h"
#include "backends/snmp/SNMPRows.h"

namespace TkPPDUpdating {

/// A status in the making, as the rows of a printer's tables are read: what they told, and why
/// others of their values are left out. What nobody adds was not told.
class SNMPStatusValues {
  public:
    /// Texts longer than this (bytes) are left out: no name that a PPD shows is nearly as long.
    static constexpr std::size_t kLongestText = 255;

    void addAccessory(std::string_view name, bool isInstalled);
    void setHighestResolution(std::int64_t dotsPerInch);
    /// A value of the pens; left out, and false, when it would be refused in a PPD or make its line
    /// too long.
    bool setPensValue(std::string_view keyword, std::string value);

    /// Adds the installable options of a PPD; when there are none, nothing of them was told.
    void addInstalledOptions(SNMPOptionAnswers answers);

    /// Keeps the column's cells as what the entry was read from, as many as people may read.
    void addSources(const std::string& entry, const SNMPRows& rows, const SNMPColumn& column);

    DroppedValues& dropped() { return dropped_; }
    /// Says that the cell is left out. `column` may be another text that names the place.
    void drop(const SNMPColumn& column, const SNMPRows::Row& row, std::string_view reason);

    /// Whether every one of the columns was read to its end; else the reason is kept.
    bool areWhole(const SNMPRows& rows, std::initializer_list<SNMPColumn> columns);

    /// The cell's text when it is there, not empty, and may stand in a PPD; a refused one is
    /// dropped.
    std::optional<std::string> text(const SNMPRows& rows, const SNMPColumn& column,
                                    const SNMPRows::Row& row);

    /// The status that was made, of that printer. To be called once.
    std::shared_ptr<const ReportedDeviceStatus> takeStatus(OrbCSPrinterIdentity identity = {});

  private:
    ReportedDeviceStatus::Values values_;
    OrbCSToldEntries told_;
    DroppedValues dropped_;
    std::vector<OrbCSStatusSource> sources_;
    std::vector<std::string> reasonsOfOptions_;
};

}  // namespace TkPPDUpdating
