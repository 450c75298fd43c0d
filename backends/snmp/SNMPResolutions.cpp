#include "backends/snmp/SNMPResolutions.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "backends/schemes/DotsPerInch.h"

namespace TkPPDUpdating {

namespace {

using namespace PrinterMIB;

/// RFC 3805, PrtMarkerAddressabilityUnitTC: the positions are counted along 10,000 of these.
enum AddressabilityUnit { tenThousandthsOfInches = 3, micrometers = 4 };

/// No printer is finer; a larger number is a mistake or worse.
constexpr std::int64_t kFinest = 100'000;

bool canBeResolution(std::optional<std::int64_t> positions) {
    return positions && *positions > 0 && *positions <= kFinest;
}

/// Nothing when the marker does not tell it.
std::optional<std::int64_t> dotsPerInch(const SNMPRows& rows, const SNMPRows::Row& marker) {
    const auto unit = rows.number(prtMarkerAddressabilityUnit, marker);
    const auto feed = rows.number(prtMarkerAddressabilityFeedDir, marker);
    const auto cross = rows.number(prtMarkerAddressabilityXFeedDir, marker);
    if (!canBeResolution(feed) || !canBeResolution(cross) ||
        (unit != tenThousandthsOfInches && unit != micrometers)) {
        return std::nullopt;
    }
    const std::int64_t finer = std::max(*feed, *cross);
    return unit == tenThousandthsOfInches ? finer : dotsPerInchFromCentimetre(finer);
}

}  // namespace

void readHighestResolution(const SNMPRows& rows, SNMPStatusValues& values) {
    if (!values.areWhole(rows, {prtMarkerAddressabilityUnit, prtMarkerAddressabilityFeedDir,
                                prtMarkerAddressabilityXFeedDir})) {
        return;
    }
    std::int64_t highest = 0;
    for (const SNMPRows::Row& marker :
         rows.rowsOf({prtMarkerAddressabilityUnit, prtMarkerAddressabilityFeedDir,
                      prtMarkerAddressabilityXFeedDir})) {
        const auto resolution = dotsPerInch(rows, marker);
        if (!resolution) {
            values.drop(prtMarkerAddressabilityFeedDir, marker,
                        "is not known as a resolution, so the highest one is not either");
            return;
        }
        highest = std::max(highest, *resolution);
    }
    if (highest > 0) {
        values.setHighestResolution(highest);
    }
}

}  // namespace TkPPDUpdating
