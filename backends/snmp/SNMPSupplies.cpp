#include "backends/snmp/SNMPSupplies.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

using namespace PrinterMIB;

/// RFC 3805, PrtMarkerSuppliesTypeTC.
enum SuppliesType { unknownType = 2, toner = 3, ink = 5, inkCartridge = 6, tonerCartridge = 21 };

/// RFC 3805, PrtMarkerSuppliesClassTC.
enum SuppliesClass { otherClass = 1, supplyThatIsConsumed = 3, receptacleThatIsFilled = 4 };

/// RFC 3805, prtMarkerSuppliesLevel.
enum SuppliesLevel { someIsLeft = -3, unknownLevel = -2, empty = 0 };

struct Pen {
    SNMPRows::Row row;
    /// The letter or name of its colorant; empty when it has none, nothing when that is not known.
    std::optional<std::string> colorant;
    /// Its own name; empty when it has none that can stand in a list.
    std::string name;
};

bool isInkOrToner(std::int64_t type) {
    return type == toner || type == ink || type == inkCartridge || type == tonerCartridge;
}

/// A dye must not be taken for two, nor for none.
bool canBeDye(std::string_view text) {
    return !text.empty() && text.find(',') == std::string_view::npos;
}

std::string inLowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                    : character;
    });
    return lower;
}

/// The letter by which PPDs call a printing colour; another colorant's name stays as it is. Empty
/// for the words that stand for none (RFC 3805, prtMarkerColorantValue).
std::string dyeOfColorant(const std::string& colorant) {
    static const std::map<std::string, std::string, std::less<>> kDyes = {
        {"cyan", "C"}, {"magenta", "M"}, {"yellow", "Y"}, {"black", "K"},
        {"other", ""}, {"unknown", ""},  {"none", ""}};
    const auto dye = kDyes.find(inLowerCase(colorant));
    return dye == kDyes.end() ? colorant : dye->second;
}

std::string usableText(const SNMPRows& rows, SNMPStatusValues& values, const SNMPColumn& column,
                       const SNMPRows::Row& row) {
    const auto text = values.text(rows, column, row);
    return text && canBeDye(*text) ? *text : std::string();
}

std::optional<std::string> colorantOfRow(const SNMPRows& rows, SNMPStatusValues& values,
                                         const SNMPRows::Row& row) {
    const auto number = rows.number(prtMarkerSuppliesColorantIndex, row);
    if (!number || *number < 0 || *number > UINT32_MAX) {
        return std::nullopt;
    }
    if (*number == 0) {
        return std::string();
    }
    const SNMPRows::Row colorant = {row.front(), static_cast<std::uint32_t>(*number)};
    const std::string text = usableText(rows, values, prtMarkerColorantValue, colorant);
    return text.empty() ? std::nullopt : std::optional(dyeOfColorant(text));
}

Pen penOfRow(const SNMPRows& rows, SNMPStatusValues& values, const SNMPRows::Row& row) {
    return {row, colorantOfRow(rows, values, row),
            usableText(rows, values, prtMarkerSuppliesDescription, row)};
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

/// Whether all of the pens with that colorant have names that differ.
bool areToldApartByName(const std::vector<Pen>& pens, const std::string& colorant) {
    std::set<std::string_view> names;
    return std::all_of(pens.begin(), pens.end(), [&](const Pen& pen) {
        return pen.colorant != colorant || (!pen.name.empty() && names.insert(pen.name).second);
    });
}

/// Empty when it has none that could be told.
std::string dyeOfPen(const Pen& pen, const std::vector<Pen>& pens) {
    if (!pen.colorant || pen.colorant->empty()) {
        return pen.colorant ? pen.name : std::string();
    }
    const auto ofSameColorant = std::count_if(
        pens.begin(), pens.end(), [&](const Pen& each) { return each.colorant == pen.colorant; });
    if (ofSameColorant == 1) {
        return *pen.colorant;
    }
    return areToldApartByName(pens, *pen.colorant) ? pen.name : std::string();
}

void readDyes(const std::vector<Pen>& pens, SNMPStatusValues& values) {
    std::string dyes;
    for (const Pen& pen : pens) {
        const std::string dye = dyeOfPen(pen, pens);
        if (dye.empty()) {
            values.drop(prtMarkerSuppliesColorantIndex, pen.row,
                        "has no name that tells it from others, so the inks are not told");
            return;
        }
        dyes += (dyes.empty() ? "" : ",") + dye;
    }
    values.setPensValue(kTkCSPPDPenDyesKey, std::move(dyes));
}

void readLevels(const SNMPRows& rows, const std::vector<Pen>& pens, SNMPStatusValues& values) {
    std::string areSufficient;
    for (const Pen& pen : pens) {
        const auto level = rows.number(prtMarkerSuppliesLevel, pen.row);
        if (!level || *level < someIsLeft || *level == unknownLevel) {
            values.drop(prtMarkerSuppliesLevel, pen.row,
                        "is not known, so whether there is enough ink is not told");
            return;
        }
        areSufficient += areSufficient.empty() ? "" : ",";
        areSufficient += *level == empty ? "0" : "1";
    }
    values.setPensValue(kTkCSPPDPenInkSufficientKey, std::move(areSufficient));
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
    readDyes(*pens, values);
    readLevels(rows, *pens, values);
}

}  // namespace TkPPDUpdating
