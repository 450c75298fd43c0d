#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "backends/snmp/PrinterMIB.h"
#include "backends/snmp/SNMPRows.h"

namespace TkPPDUpdating::Testing {

/// All columns that are asked for.
inline constexpr std::array kColumnsAskedFor = {PrinterMIB::hrDeviceDescr,
                                                PrinterMIB::prtGeneralPrinterName,
                                                PrinterMIB::ppmPrinterIEEE1284DeviceId,
                                                PrinterMIB::prtInputType,
                                                PrinterMIB::prtInputStatus,
                                                PrinterMIB::prtInputName,
                                                PrinterMIB::prtMarkerAddressabilityUnit,
                                                PrinterMIB::prtMarkerAddressabilityFeedDir,
                                                PrinterMIB::prtMarkerAddressabilityXFeedDir,
                                                PrinterMIB::prtMarkerSuppliesColorantIndex,
                                                PrinterMIB::prtMarkerSuppliesClass,
                                                PrinterMIB::prtMarkerSuppliesType,
                                                PrinterMIB::prtMarkerSuppliesDescription,
                                                PrinterMIB::prtMarkerSuppliesLevel,
                                                PrinterMIB::prtMarkerColorantValue,
                                                PrinterMIB::prtMediaPathType};

inline const SNMPColumn& columnWithName(std::string_view name) {
    const auto* const column = std::ranges::find(kColumnsAskedFor, name, &SNMPColumn::name);
    if (column == kColumnsAskedFor.end()) {
        throw std::invalid_argument("no column is named " + std::string(name));
    }
    return *column;
}

/// The rows of a printer as people write them, a cell a line: "prtInputName.1.2 = Tray 2". Blank
/// lines and those that begin with "#" are comments; without " = ", the text is empty.
inline SNMPRows rowsOfText(const std::string& text) {
    SNMPRows rows;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line.front() == '#') {
            continue;
        }
        const std::string place = line.substr(0, line.find(" = "));
        const std::string value = place.size() == line.size() ? "" : line.substr(place.size() + 3);
        std::istringstream numbers(place);
        std::string name;
        std::getline(numbers, name, '.');
        SNMPRows::Row row;
        for (std::string number; std::getline(numbers, number, '.');) {
            row.push_back(static_cast<std::uint32_t>(std::stoul(number)));
        }
        const SNMPColumn& column = columnWithName(name);
        if (column.syntax == SNMPColumn::Syntax::number) {
            rows.set(column, row, std::int64_t{std::stoll(value)});
        } else {
            rows.set(column, row, value);
        }
    }
    return rows;
}

/// Three printers, each with what its status has to be.
namespace SNMPTables {

/// A laser printer with a duplexer, two trays, a multi-purpose feeder that claims to be a tray, and
/// toner for four colours, one used up.
constexpr const char* kLaser =
    "hrDeviceDescr.1 = ZR Office 1\n"
    "prtGeneralPrinterName.1.1 = Second floor\n"
    "ppmPrinterIEEE1284DeviceId.1 = MFG:ZR;MDL:Office 1;CMD:PCL,PS;\n"
    "prtInputType.1.1 = 4\nprtInputType.1.2 = 3\nprtInputType.1.3 = 3\n"
    "prtInputStatus.1.1 = 0\nprtInputStatus.1.2 = 4\nprtInputStatus.1.3 = 16\n"
    "prtInputName.1.1 = MP Tray\nprtInputName.1.2 = Tray 1\nprtInputName.1.3 = Tray 2\n"
    "prtMarkerAddressabilityUnit.1.1 = 3\n"
    "prtMarkerAddressabilityFeedDir.1.1 = 600\nprtMarkerAddressabilityXFeedDir.1.1 = 1200\n"
    "prtMarkerSuppliesColorantIndex.1.1 = 1\nprtMarkerSuppliesColorantIndex.1.2 = 2\n"
    "prtMarkerSuppliesColorantIndex.1.3 = 3\nprtMarkerSuppliesColorantIndex.1.4 = 4\n"
    "prtMarkerSuppliesColorantIndex.1.5 = 0\nprtMarkerSuppliesColorantIndex.1.6 = 0\n"
    "prtMarkerSuppliesClass.1.1 = 3\nprtMarkerSuppliesClass.1.2 = 3\n"
    "prtMarkerSuppliesClass.1.3 = 3\nprtMarkerSuppliesClass.1.4 = 3\n"
    "prtMarkerSuppliesClass.1.5 = 4\nprtMarkerSuppliesClass.1.6 = 3\n"
    "prtMarkerSuppliesType.1.1 = 21\nprtMarkerSuppliesType.1.2 = 21\n"
    "prtMarkerSuppliesType.1.3 = 21\nprtMarkerSuppliesType.1.4 = 21\n"
    "prtMarkerSuppliesType.1.5 = 4\nprtMarkerSuppliesType.1.6 = 15\n"
    "prtMarkerSuppliesDescription.1.1 = Black Toner\n"
    "prtMarkerSuppliesDescription.1.2 = Cyan Toner\n"
    "prtMarkerSuppliesDescription.1.3 = Magenta Toner\n"
    "prtMarkerSuppliesDescription.1.4 = Yellow Toner\n"
    "prtMarkerSuppliesDescription.1.5 = Waste Toner Box\n"
    "prtMarkerSuppliesDescription.1.6 = Fuser\n"
    "prtMarkerSuppliesLevel.1.1 = 2400\nprtMarkerSuppliesLevel.1.2 = -3\n"
    "prtMarkerSuppliesLevel.1.3 = 0\nprtMarkerSuppliesLevel.1.4 = 1\n"
    "prtMarkerSuppliesLevel.1.5 = -2\nprtMarkerSuppliesLevel.1.6 = 99\n"
    "prtMarkerColorantValue.1.1 = black\nprtMarkerColorantValue.1.2 = cyan\n"
    "prtMarkerColorantValue.1.3 = magenta\nprtMarkerColorantValue.1.4 = yellow\n"
    "prtMediaPathType.1.1 = 5\nprtMediaPathType.1.2 = 3\n";

/// An ink-jet printer with six inks, two of them black, and one tray besides the rear feeder.
constexpr const char* kInkjet =
    "hrDeviceDescr.1 = ZR Inkjet 6\n"
    "prtInputType.1.1 = 3\nprtInputType.1.2 = 5\n"
    "prtInputStatus.1.1 = 0\nprtInputStatus.1.2 = 9\n"
    "prtInputName.1.1 = Cassette\nprtInputName.1.2 = Rear feeder\n"
    "prtMarkerAddressabilityUnit.1.1 = 4\n"
    "prtMarkerAddressabilityFeedDir.1.1 = 945\nprtMarkerAddressabilityXFeedDir.1.1 = 1890\n"
    "prtMarkerSuppliesColorantIndex.1.1 = 1\nprtMarkerSuppliesColorantIndex.1.2 = 2\n"
    "prtMarkerSuppliesColorantIndex.1.3 = 3\nprtMarkerSuppliesColorantIndex.1.4 = 4\n"
    "prtMarkerSuppliesColorantIndex.1.5 = 4\nprtMarkerSuppliesColorantIndex.1.6 = 5\n"
    "prtMarkerSuppliesClass.1.1 = 3\nprtMarkerSuppliesClass.1.2 = 3\n"
    "prtMarkerSuppliesClass.1.3 = 3\nprtMarkerSuppliesClass.1.4 = 3\n"
    "prtMarkerSuppliesClass.1.5 = 3\nprtMarkerSuppliesClass.1.6 = 3\n"
    "prtMarkerSuppliesType.1.1 = 6\nprtMarkerSuppliesType.1.2 = 6\n"
    "prtMarkerSuppliesType.1.3 = 6\nprtMarkerSuppliesType.1.4 = 6\n"
    "prtMarkerSuppliesType.1.5 = 6\nprtMarkerSuppliesType.1.6 = 5\n"
    "prtMarkerSuppliesDescription.1.1 = Cyan ink\n"
    "prtMarkerSuppliesDescription.1.2 = Magenta ink\n"
    "prtMarkerSuppliesDescription.1.3 = Yellow ink\n"
    "prtMarkerSuppliesDescription.1.4 = Photo black ink\n"
    "prtMarkerSuppliesDescription.1.5 = Matte black ink\n"
    "prtMarkerSuppliesDescription.1.6 = Orange ink\n"
    "prtMarkerSuppliesLevel.1.1 = 40\nprtMarkerSuppliesLevel.1.2 = 40\n"
    "prtMarkerSuppliesLevel.1.3 = 40\nprtMarkerSuppliesLevel.1.4 = 40\n"
    "prtMarkerSuppliesLevel.1.5 = 40\nprtMarkerSuppliesLevel.1.6 = 0\n"
    "prtMarkerColorantValue.1.1 = Cyan\nprtMarkerColorantValue.1.2 = Magenta\n"
    "prtMarkerColorantValue.1.3 = Yellow\nprtMarkerColorantValue.1.4 = Black\n"
    "prtMarkerColorantValue.1.5 = orange\n"
    "prtMediaPathType.1.1 = 5\n";

/// A label printer: a roll and a fanfold feeder, thermal transfer, levels that it does not know.
constexpr const char* kLabel =
    "hrDeviceDescr.1 = ZR Label\n"
    "prtInputType.1.1 = 6\nprtInputType.1.2 = 7\n"
    "prtInputStatus.1.1 = 0\nprtInputStatus.1.2 = 5\n"
    "prtInputName.1.1 = Roll\nprtInputName.1.2 = Fanfold\n"
    "prtMarkerAddressabilityUnit.1.1 = 3\n"
    "prtMarkerAddressabilityFeedDir.1.1 = 203\nprtMarkerAddressabilityXFeedDir.1.1 = 203\n"
    "prtMarkerSuppliesColorantIndex.1.1 = 1\n"
    "prtMarkerSuppliesClass.1.1 = 3\n"
    "prtMarkerSuppliesType.1.1 = 7\n"
    "prtMarkerSuppliesDescription.1.1 = Ribbon\n"
    "prtMarkerSuppliesLevel.1.1 = -2\n"
    "prtMarkerColorantValue.1.1 = black\n"
    "prtMediaPathType.1.1 = 2\n";

}  // namespace SNMPTables

}  // namespace TkPPDUpdating::Testing
