#include "backends/snmp/SNMPSupplies.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "backends/schemes/InkColours.h"
#include "backends/schemes/InkSupplies.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

using namespace PrinterMIB;

/// RFC 3805, PrtMarkerSuppliesTypeTC.
enum SuppliesType { unknownType = 2, toner = 3, ink = 5, inkCartridge = 6, tonerCartridge = 21 };

/// RFC 3805, PrtMarkerSuppliesClassTC.
enum SuppliesClass { otherClass = 1, supplyThatIsConsumed = 3, receptacleThatIsFilled = 4 };

/// A supply of ink or toner, its row, and whether its colorant could be read, if it has one.
struct Pen {
    SNMPRows::Row row;
    bool isColorantKnown = false;
    InkSupply supply;
};

bool isInkOrToner(std::int64_t type) {
    return type == toner || type == ink || type == inkCartridge || type == tonerCartridge;
}

/// Sets what the row's colorant stands for. False when it names one that cannot be read.
bool readColorant(const SNMPRows& rows, SNMPStatusValues& values, const SNMPRows::Row& row,
                  InkDyes& dyes) {
    const auto number = rows.number(prtMarkerSuppliesColorantIndex, row);
    if (!number || *number < 0 || *number > UINT32_MAX) {
        return false;
    }
    if (*number == 0) {
        return true;
    }
    const SNMPRows::Row colorant = {row.front(), static_cast<std::uint32_t>(*number)};
    const auto text = values.text(rows, prtMarkerColorantValue, colorant);
    dyes = text ? dyesOfInkColour(*text) : InkDyes();
    return text.has_value();
}

Pen penOfRow(const SNMPRows& rows, SNMPStatusValues& values, const SNMPRows::Row& row) {
    Pen pen{row, false, {}};
    pen.isColorantKnown = readColorant(rows, values, row, pen.supply.ofColour);
    pen.supply.ofName = [&rows, &values, row] {
        const auto name = values.text(rows, prtMarkerSuppliesDescription, row);
        return name ? dyesOfInkColour(*name) : InkDyes();
    };
    pen.supply.isSufficient = isInkSufficient(rows.number(prtMarkerSuppliesLevel, row));
    return pen;
}

/// The printer's pens in its order; nothing when it leaves open what is one.
std::optional<std::vector<Pen>> pensOf(const SNMPRows& rows, SNMPStatusValues& values) {
    std::vector<Pen> pens;
    for (const SNMPRows::Row& row :
         rows.rowsOf({prtMarkerSuppliesType, prtMarkerSuppliesClass, prtMarkerSuppliesDescription,
                      prtMarkerSuppliesColorantIndex, prtMarkerSuppliesLevel})) {
        const auto type = rows.number(prtMarkerSuppliesType, row);
        const auto supplyClass = rows.number(prtMarkerSuppliesClass, row);
        if (!type || *type == unknownType || !supplyClass) {
            values.drop(prtMarkerSuppliesType, row, "leaves open whether it is a pen");
            return std::nullopt;
        }
        if (isInkOrToner(*type) &&
            (*supplyClass == supplyThatIsConsumed || *supplyClass == otherClass)) {
            pens.push_back(penOfRow(rows, values, row));
        }
    }
    return pens;
}

/// The dyes of each pen; nothing, with the reason kept, when one has none that could be told.
std::optional<std::vector<InkDyes>> dyesOfPens(const std::vector<Pen>& pens,
                                               const std::vector<InkSupply>& supplies,
                                               SNMPStatusValues& values) {
    const auto unknown = std::ranges::find(pens, false, &Pen::isColorantKnown);
    std::size_t nameless = static_cast<std::size_t>(unknown - pens.begin());
    auto dyes = unknown == pens.end() ? dyesOfInkSupplies(supplies, nameless) : std::nullopt;
    if (!dyes) {
        values.drop(prtMarkerSuppliesColorantIndex, pens[nameless].row,
                    "has no name that tells it from others, so the inks are not told");
    }
    return dyes;
}

void readLevels(const std::vector<Pen>& pens, const std::vector<InkSupply>& supplies,
                const std::vector<InkDyes>& dyes, SNMPStatusValues& values) {
    if (auto list = listOfInkSufficiency(supplies, dyes)) {
        values.setPensValue(kTkCSPPDPenInkSufficientKey, *std::move(list));
        return;
    }
    const auto unknown =
        std::ranges::find_if(pens, [](const Pen& pen) { return !pen.supply.isSufficient; });
    values.drop(prtMarkerSuppliesLevel, unknown->row,
                "is not known, so whether there is enough ink is not told");
}

}  // namespace

void readPens(const SNMPRows& rows, SNMPStatusValues& values) {
    if (!values.areWhole(
            rows, {prtMarkerSuppliesType, prtMarkerSuppliesClass, prtMarkerSuppliesColorantIndex,
                   prtMarkerSuppliesDescription, prtMarkerSuppliesLevel, prtMarkerColorantValue})) {
        return;
    }
    const auto pens = pensOf(rows, values);
    if (!pens || pens->empty()) {
        return;
    }
    std::vector<InkSupply> supplies;
    for (const Pen& pen : *pens) {
        supplies.push_back(pen.supply);
    }
    const auto dyes = dyesOfPens(*pens, supplies, values);
    // Levels mean nothing without the dyes that they are of.
    if (dyes && values.setPensValue(kTkCSPPDPenDyesKey, listOfInkDyes(*dyes))) {
        readLevels(*pens, supplies, *dyes, values);
    }
}

}  // namespace TkPPDUpdating
