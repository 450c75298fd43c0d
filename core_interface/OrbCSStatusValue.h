#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "core_interface/OrbCSNumberOrString.h"
#include "core_interface/OrbCustomMediaType.h"

/// The kinds of value that a device status holds under its keys. Plain records: a member that the
/// printer did not report is nothing. Texts are UTF-8.
namespace TkPPDUpdating {

/// An accessory of the printer, under `kTkCSDeviceAccessoriesKey`.
struct OrbCSDeviceAccessory {
    std::optional<std::string> name;  ///< What the printer's language calls it: "Duplexer".
    bool isInstalled = false;         ///< False also when that was not reported.

    friend bool operator==(const OrbCSDeviceAccessory&, const OrbCSDeviceAccessory&) = default;
};

/// The pens (print cartridges) that are in, under `kTkCSInstalledPensConfigurationKey`.
struct OrbCSPensConfiguration {
    /// The choice keyword that names the configuration in the PPD.
    std::optional<std::string> codeName;
    /// Pen attribute keyword (`kTkCSPPDPen...Key`) to its PPD value.
    std::map<std::string, std::string, std::less<>> PPDAttributeValues;

    friend bool operator==(const OrbCSPensConfiguration&, const OrbCSPensConfiguration&) = default;
};

/// The linearization table, under `kTkCSLinTableKey`.
struct OrbCSLinTable {
    /// When the printer was calibrated; a whole number 0 means never.
    std::optional<OrbCSNumberOrString> timestamp;

    friend bool operator==(const OrbCSLinTable&, const OrbCSLinTable&) = default;
};

/// How many pages of one page type can still be printed, in the list under
/// `kTkCSRemainingPagesEstimationsKey`.
struct OrbCSRemainingPagesEstimation {
    std::optional<std::string> pageTypeName;          ///< Of the list in the PPD.
    std::optional<OrbCSNumberOrString> minPageCount;  ///< At least so many pages.
    std::optional<OrbCSNumberOrString> maxPageCount;  ///< At most so many.
    std::optional<OrbCSNumberOrString> state;         ///< The printer's number for it.

    friend bool operator==(const OrbCSRemainingPagesEstimation&,
                           const OrbCSRemainingPagesEstimation&) = default;
};

using OrbCSDeviceAccessories = std::vector<OrbCSDeviceAccessory>;                    ///< A list.
using OrbCSRemainingPagesEstimations = std::vector<OrbCSRemainingPagesEstimation>;   ///< A list.
using OrbCustomMediaTypes = std::vector<std::shared_ptr<const OrbCustomMediaType>>;  ///< None null.

/// What is installed, in the words of a PPD: keywords of its installable options (no asterisk) to
/// those of their choices, under `kTkCSInstalledOptionsKey`. Of an option that is not in it nothing
/// is known. Whoever reads it compares both with the PPD: they are of the one that the printer was
/// asked with.
using OrbCSInstalledOptions = std::map<std::string, std::string, std::less<>>;

/// What stands under one status key.
using OrbCSStatusValue =
    std::variant<OrbCSDeviceAccessories, OrbCSPensConfiguration, OrbCSLinTable, OrbCSNumberOrString,
                 OrbCSRemainingPagesEstimations, OrbCustomMediaTypes, OrbCSInstalledOptions>;

}  // namespace TkPPDUpdating
