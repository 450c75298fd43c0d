// The tables of an SNMP printer, a cell a line ("prtInputName.1.2 = Tray 2"; with "!" before it,
// the column was cut short), and what it says of installable options ("option.ZrFinisher =
// Stapler"): the status is one that may be handed over, and does not depend on the order in which
// the cells came.
#include <algorithm>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "backends/snmp/SNMPStatusMapping.h"
#include "core_interface/TkCSKeys.h"
#include "fuzz/FuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/NetworkStatus.h"
#include "ppd/PPDTextSafety.h"
#include "tests/backends/snmp/SNMPTestRows.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

struct Cell {
    const SNMPColumn* column = nullptr;
    SNMPRows::Row row;
    SNMPRows::Cell value;
    bool isCutShort = false;
};

/// As many numbers as the line has between full stops; what is none is 0.
SNMPRows::Row rowOf(std::string_view numbers) {
    constexpr std::size_t kMostNumbers = 6;
    SNMPRows::Row row;
    while (!numbers.empty() && row.size() < kMostNumbers) {
        const std::string number(takenUpTo(numbers, "."));
        row.push_back(static_cast<std::uint32_t>(std::strtoul(number.c_str(), nullptr, 10)));
    }
    return row;
}

/// A cell of a column that is not asked for has none. A number has the syntax of its column unless
/// the value stands between quotes, and a text unless it stands behind "#".
Cell cellOf(std::string_view line) {
    Cell cell;
    cell.isCutShort = line.starts_with('!');
    line.remove_prefix(cell.isCutShort ? 1 : 0);
    std::string_view place = takenUpTo(line, " = ");
    const std::string_view name = takenUpTo(place, ".");
    const auto* const column =
        std::ranges::find(Testing::kColumnsAskedFor, name, &SNMPColumn::name);
    if (column == Testing::kColumnsAskedFor.end()) {
        return cell;
    }
    cell.column = column;
    cell.row = rowOf(place);
    const bool isNumber = line.starts_with('#') ||
                          (column->syntax == SNMPColumn::Syntax::number && !line.starts_with('"'));
    if (isNumber) {
        const std::string number(line.substr(line.starts_with('#') ? 1 : 0));
        cell.value = std::int64_t{std::strtoll(number.c_str(), nullptr, 10)};
    } else {
        cell.value = std::string(line);
    }
    return cell;
}

/// The choice of an option that a line names, where both can stand in a PPD: only those become
/// answers.
void addOptionOf(std::string_view line, SNMPOptionAnswers& options) {
    constexpr std::string_view kBeginning = "option.";
    if (!line.starts_with(kBeginning)) {
        return;
    }
    line.remove_prefix(kBeginning.size());
    const std::string option(takenUpTo(line, " = "));
    if (reasonPrinterTextIsRefused(PrinterText::pensCodeName, option) ||
        reasonPrinterTextIsRefused(PrinterText::pensCodeName, line)) {
        options.reasons.emplace_back("an option cannot stand in a PPD");
    } else {
        options.installed.emplace(option, line);
    }
}

/// Whether every source is a cell of a column that the table reads the entry from.
void requireSourcesOfTable(const ReportedDeviceStatus& status) {
    for (const OrbCSStatusSource& source : status.sources()) {
        const std::string column = source.name.substr(0, source.name.find('.'));
        const bool isOfTable = std::ranges::any_of(
            SNMPStatusMapping::rows(), [&](const SNMPStatusMapping::MappingRow& row) {
                return source.entry.starts_with(row.statusKey) &&
                       source.entry.ends_with(row.accessory) &&
                       std::ranges::find(row.columns, column, &SNMPColumn::name) !=
                           row.columns.end();
            });
        require(isOfTable, "a source is of a column of the table");
        require(source.value.size() <= 80, "it is shown in short");
    }
}

/// Whether what is installed is told, and nothing else is said of it.
void requireOptions(const ReportedDeviceStatus& status, const SNMPOptionAnswers& options) {
    const auto* const installed =
        status.statusValueForKey<OrbCSInstalledOptions>(kTkCSInstalledOptionsKey);
    require(options.installed.empty() ? !installed : installed && *installed == options.installed,
            "the options that are installed");
    require(OrbCSPartialStatus::isTold(status.toldEntries(), kTkCSInstalledOptionsKey) ==
                !options.installed.empty(),
            "are told");
    const auto& dropped = status.droppedValues();
    require(dropped.size() >= options.reasons.size() &&
                std::equal(options.reasons.rbegin(), options.reasons.rend(), dropped.rbegin()),
            "and why others are not");
}

/// The recording of the status that the cells mean, or why there is none.
std::string recordingOf(const std::vector<Cell>& cells, const SNMPOptionAnswers& options,
                        bool isLookedAt) {
    SNMPRows rows;
    for (const Cell& cell : cells) {
        rows.set(*cell.column, cell.row, cell.value);
        if (cell.isCutShort) {
            rows.setCutShort(*cell.column);
        }
    }
    require(rows.size() <= cells.size(), "no more cells than were set");
    OrbCSError error;
    const auto status = SNMPStatusMapping::statusForRows(rows, error, options);
    if (!status) {
        require(!error.reason.empty(), "no status has a reason");
        return "none: " + error.reason;
    }
    if (isLookedAt) {
        requireSoundNetworkStatus(*status);
        requireSourcesOfTable(*status);
        requireOptions(*status, options);
    }
    return RecordedDeviceStatus::JSONForStatus(*status);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kMostLines = 2000;
    std::string_view lines = textOfInput(data, size);
    std::vector<Cell> cells;
    SNMPOptionAnswers options;
    std::set<std::pair<std::string_view, SNMPRows::Row>> places;
    for (std::size_t count = 0; count < kMostLines && !lines.empty(); ++count) {
        const std::string_view line = takenLine(lines);
        addOptionOf(line, options);
        Cell cell = cellOf(line);
        // Of two in one place the first counts, which is the one thing that the order decides.
        if (cell.column && places.emplace(cell.column->name, cell.row).second) {
            cells.push_back(std::move(cell));
        }
    }
    const std::string recording = recordingOf(cells, options, true);
    std::reverse(cells.begin(), cells.end());
    require(recordingOf(cells, options, false) == recording,
            "the order of the cells does not count");
    return 0;
}
