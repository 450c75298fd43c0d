#include "backends/snmp/SNMPStatusMapping.h"

#include <array>
#include <set>
#include <string>
#include <utility>

#include "backends/snmp/SNMPAccessories.h"
#include "backends/snmp/SNMPResolutions.h"
#include "backends/snmp/SNMPSupplies.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

using namespace PrinterMIB;

constexpr std::array kMediaPathColumns = {prtMediaPathType};
constexpr std::array kInputColumns = {prtInputType, prtInputStatus, prtInputName};
// The two tables of the pens, one after the other.
constexpr std::array kPensColumns = {prtMarkerSuppliesColorantIndex, prtMarkerSuppliesClass,
                                     prtMarkerSuppliesType,          prtMarkerSuppliesDescription,
                                     prtMarkerSuppliesLevel,         prtMarkerColorantValue};
constexpr std::span kSuppliesColumns = std::span(kPensColumns).first<5>();
constexpr std::span kColorantColumns = std::span(kPensColumns).last<1>();
constexpr std::array kMarkerColumns = {prtMarkerAddressabilityUnit, prtMarkerAddressabilityFeedDir,
                                       prtMarkerAddressabilityXFeedDir};

constexpr std::array kRows = {
    SNMPStatusMapping::MappingRow{kTkCSDeviceAccessoriesKey, kTkCSDeviceAccessoryDuplexer,
                                  kMediaPathColumns, readDuplexer},
    SNMPStatusMapping::MappingRow{kTkCSDeviceAccessoriesKey, kTkCSDeviceAccessoryTray2,
                                  kInputColumns, readLowerTray},
    SNMPStatusMapping::MappingRow{kTkCSInstalledPensConfigurationKey, "", kPensColumns, readPens},
    SNMPStatusMapping::MappingRow{kTkCSMaxSupportedResolutionKey, "", kMarkerColumns,
                                  readHighestResolution}};

constexpr std::array<std::span<const SNMPColumn>, 5> kTables = {
    kInputColumns, kMediaPathColumns, kSuppliesColumns, kColorantColumns, kMarkerColumns};

constexpr std::array kIdentityColumns = {hrDeviceDescr, prtGeneralPrinterName,
                                         ppmPrinterIEEE1284DeviceId};

/// The first numbers (hrDeviceIndex) of all rows of the Printer MIB.
std::set<std::uint32_t> printersOf(const SNMPRows& rows) {
    std::set<std::uint32_t> printers;
    for (const auto& table : kTables) {
        for (const SNMPColumn& column : table) {
            for (const SNMPRows::Row& row : rows.rowsOf({column})) {
                printers.insert(row.front());
            }
        }
    }
    return printers;
}

/// What the device with that hrDeviceIndex calls itself.
OrbCSPrinterIdentity identityOfPrinter(const SNMPRows& rows, std::uint32_t printer) {
    OrbCSPrinterIdentity identity;
    const auto add = [&rows](const SNMPColumn& column, const SNMPRows::Row& row,
                             std::vector<std::string>& texts) {
        if (const auto text = rows.text(column, row); text && !text->empty()) {
            texts.emplace_back(*text);
        }
    };
    add(hrDeviceDescr, {printer}, identity.models);
    add(prtGeneralPrinterName, {printer}, identity.models);
    // Its rows have numbers of their own (PWG 5107.1): the only one is that of the only printer.
    const auto IDs = rows.rowsOf({ppmPrinterIEEE1284DeviceId});
    if (IDs.size() == 1) {
        add(ppmPrinterIEEE1284DeviceId, IDs.front(), identity.deviceIDs);
    }
    return identity;
}

}  // namespace

std::span<const SNMPStatusMapping::MappingRow> SNMPStatusMapping::rows() {
    return kRows;
}

std::span<const SNMPColumn> SNMPStatusMapping::identityColumns() {
    return kIdentityColumns;
}

std::span<const std::span<const SNMPColumn>> SNMPStatusMapping::tables() {
    return kTables;
}

std::shared_ptr<const ReportedDeviceStatus> SNMPStatusMapping::statusForRows(
    const SNMPRows& rows, OrbCSError& error, SNMPOptionAnswers options) {
    const auto printers = printersOf(rows);
    if (printers.size() != 1) {
        error = {OrbCSError::Cause::notAPrinter, printers.empty()
                                                     ? "it has none of a printer's tables"
                                                     : "several printers answer there"};
        return nullptr;
    }
    SNMPStatusValues values;
    for (const MappingRow& row : kRows) {
        row.read(rows, values);
        const std::string entry =
            row.accessory.empty() ? std::string(row.statusKey)
                                  : OrbCSPartialStatus::entryForPart(row.statusKey, row.accessory);
        for (const SNMPColumn& column : row.columns) {
            values.addSources(entry, rows, column);
        }
    }
    values.addInstalledOptions(std::move(options));
    return values.takeStatus(identityOfPrinter(rows, *printers.begin()));
}

}  // namespace TkPPDUpdating
