#pragma once

#include <cstddef>
#include <string_view>

/// The objects of a printer that are asked for over SNMP, and what their numbers mean.
namespace TkPPDUpdating {

/// A column of a table (RFC 2578, section 7.1.12).
struct SNMPColumn {
    enum class Syntax { number, text };

    std::string_view name;
    std::string_view standard;
    /// The column's object identifier in dotted numbers; a row's own numbers follow it.
    std::string_view identifier;
    Syntax syntax;
    /// How many numbers a row has.
    std::size_t rowNumbers = 2;
};

/// The columns by the names that their standards give them. The rows of the Printer MIB (RFC 3805)
/// have two numbers: hrDeviceIndex, which tells printers behind one address apart, and that of the
/// tray, supply, ... itself; those of a device or of a whole printer one.
namespace PrinterMIB {

using enum SNMPColumn::Syntax;

inline constexpr SNMPColumn hrDeviceDescr = {"hrDeviceDescr", "RFC 2790", "1.3.6.1.2.1.25.3.2.1.3",
                                             text, 1};
inline constexpr SNMPColumn prtGeneralPrinterName = {"prtGeneralPrinterName", "RFC 3805",
                                                     "1.3.6.1.2.1.43.5.1.1.16", text, 1};
inline constexpr SNMPColumn ppmPrinterIEEE1284DeviceId = {
    "ppmPrinterIEEE1284DeviceId", "PWG 5107.1", "1.3.6.1.4.1.2699.1.2.1.2.1.1.3", text, 1};

inline constexpr SNMPColumn prtInputType = {"prtInputType", "RFC 3805", "1.3.6.1.2.1.43.8.2.1.2",
                                            number};
inline constexpr SNMPColumn prtInputStatus = {"prtInputStatus", "RFC 3805",
                                              "1.3.6.1.2.1.43.8.2.1.11", number};
inline constexpr SNMPColumn prtInputName = {"prtInputName", "RFC 3805", "1.3.6.1.2.1.43.8.2.1.13",
                                            text};

inline constexpr SNMPColumn prtMarkerAddressabilityUnit = {
    "prtMarkerAddressabilityUnit", "RFC 3805", "1.3.6.1.2.1.43.10.2.1.8", number};
inline constexpr SNMPColumn prtMarkerAddressabilityFeedDir = {
    "prtMarkerAddressabilityFeedDir", "RFC 3805", "1.3.6.1.2.1.43.10.2.1.9", number};
inline constexpr SNMPColumn prtMarkerAddressabilityXFeedDir = {
    "prtMarkerAddressabilityXFeedDir", "RFC 3805", "1.3.6.1.2.1.43.10.2.1.10", number};

inline constexpr SNMPColumn prtMarkerSuppliesColorantIndex = {
    "prtMarkerSuppliesColorantIndex", "RFC 3805", "1.3.6.1.2.1.43.11.1.1.3", number};
inline constexpr SNMPColumn prtMarkerSuppliesClass = {"prtMarkerSuppliesClass", "RFC 3805",
                                                      "1.3.6.1.2.1.43.11.1.1.4", number};
inline constexpr SNMPColumn prtMarkerSuppliesType = {"prtMarkerSuppliesType", "RFC 3805",
                                                     "1.3.6.1.2.1.43.11.1.1.5", number};
inline constexpr SNMPColumn prtMarkerSuppliesDescription = {
    "prtMarkerSuppliesDescription", "RFC 3805", "1.3.6.1.2.1.43.11.1.1.6", text};
inline constexpr SNMPColumn prtMarkerSuppliesLevel = {"prtMarkerSuppliesLevel", "RFC 3805",
                                                      "1.3.6.1.2.1.43.11.1.1.9", number};

inline constexpr SNMPColumn prtMarkerColorantValue = {"prtMarkerColorantValue", "RFC 3805",
                                                      "1.3.6.1.2.1.43.12.1.1.4", text};

inline constexpr SNMPColumn prtMediaPathType = {"prtMediaPathType", "RFC 3805",
                                                "1.3.6.1.2.1.43.13.4.1.9", number};

}  // namespace PrinterMIB

}  // namespace TkPPDUpdating
