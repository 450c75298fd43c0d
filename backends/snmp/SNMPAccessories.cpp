#include "backends/snmp/SNMPAccessories.h"

#include <algorithm>
#include <set>
#include <string>

#include "backends/schemes/TrayNames.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

using namespace PrinterMIB;

/// RFC 3805, PrtMediaPathTypeTC.
enum MediaPathType { longEdgeBindingDuplex = 3, shortEdgeBindingDuplex = 4, simplex = 5 };

/// RFC 3805, PrtInputTypeTC.
enum InputType {
    otherInput = 1,
    sheetFeedAutoRemovableTray = 3,
    sheetFeedAutoNonRemovableTray = 4,
    sheetFeedManual = 5,
    continuousRoll = 6,
    continuousFanFold = 7
};

/// RFC 3805, PrtSubUnitStatusTC: a sum of which the lowest three bits tell the availability, and
/// the others (up to 64) alerts and whether it is off-line or changes.
enum SubUnitAvailability { unavailableBecauseBroken = 3, unknownAvailability = 5 };
constexpr std::int64_t kAvailabilityBits = 7;
constexpr std::int64_t kGreatestStatus = 126;

enum class Tray { yes, no, unknown };

bool isKnownToBeThere(std::optional<std::int64_t> status) {
    if (!status || *status < 0 || *status > kGreatestStatus) {
        return false;
    }
    const std::int64_t availability = *status & kAvailabilityBits;
    // 7 is none of the standard's.
    return availability < unknownAvailability ? availability != unavailableBecauseBroken
                                              : availability == unknownAvailability + 1;
}

Tray trayOfRow(std::optional<std::int64_t> type, const std::optional<std::string>& name,
               std::optional<std::int64_t> status) {
    if (type == otherInput || (type >= sheetFeedManual && type <= continuousFanFold) ||
        (name && isNameOfNoTray(*name))) {
        return Tray::no;
    }
    const bool isTray = type == sheetFeedAutoRemovableTray || type == sheetFeedAutoNonRemovableTray;
    return isTray && name && isKnownToBeThere(status) ? Tray::yes : Tray::unknown;
}

}  // namespace

void readDuplexer(const SNMPRows& rows, SNMPStatusValues& values) {
    if (!values.areWhole(rows, {prtMediaPathType})) {
        return;
    }
    const auto paths = rows.rowsOf({prtMediaPathType});
    bool isDuplex = false;
    bool areAllKnown = !paths.empty();
    for (const SNMPRows::Row& path : paths) {
        const auto type = rows.number(prtMediaPathType, path);
        isDuplex = isDuplex || type == longEdgeBindingDuplex || type == shortEdgeBindingDuplex;
        areAllKnown = areAllKnown && type == simplex;
    }
    if (isDuplex || areAllKnown) {
        values.addAccessory(kTkCSDeviceAccessoryDuplexer, isDuplex);
    } else if (!paths.empty()) {
        values.dropped().add(prtMediaPathType.name, "tells of none whether it is a duplex path");
    }
}

void readLowerTray(const SNMPRows& rows, SNMPStatusValues& values) {
    if (!values.areWhole(rows, {prtInputType, prtInputStatus, prtInputName})) {
        return;
    }
    std::size_t certain = 0;
    std::size_t possible = 0;
    std::set<std::string> names;
    const auto inputs = rows.rowsOf({prtInputType, prtInputStatus, prtInputName});
    for (const SNMPRows::Row& input : inputs) {
        const auto name = values.text(rows, prtInputName, input);
        const Tray tray =
            trayOfRow(rows.number(prtInputType, input), name, rows.number(prtInputStatus, input));
        possible += tray == Tray::no ? 0 : 1;
        certain += tray == Tray::yes && names.insert(*name).second ? 1 : 0;
    }
    constexpr std::size_t kWithLowerTray = 2;
    const bool isDecided = certain >= kWithLowerTray || possible < kWithLowerTray;
    if (!inputs.empty() && isDecided) {
        values.addAccessory(kTkCSDeviceAccessoryTray2, certain >= kWithLowerTray);
    } else if (!inputs.empty()) {
        values.dropped().add(prtInputType.name, "leaves open which of the inputs are trays");
    }
}

}  // namespace TkPPDUpdating
