#include "backends/cups/IPPSupplies.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/cups/KeywordText.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDTextSafety.h"

namespace TkPPDUpdating {

namespace {

/// PPD specification 4.3, section 3.6.
constexpr std::size_t kLongestLine = 255;

struct Pen {
    std::string dye;
    /// Nothing when the printer does not know the level.
    std::optional<bool> isSufficient;
};

bool isInkOrToner(std::string_view type) {
    const std::string name = comparableKeyword(type);
    return name == "ink" || name == "inkcartridge" || name == "toner" || name == "tonercartridge";
}

/// RFC 3805, prtMarkerSuppliesLevel: -1 no restriction, -2 unknown, -3 some is left.
std::optional<bool> isSufficient(std::optional<int> level, int lowLevel) {
    if (!level || *level < -3 || *level == -2) {
        return std::nullopt;
    }
    return *level < 0 || *level > lowLevel;
}

/// A dye must not be taken for two, nor for none.
bool canBeDye(std::string_view text) {
    return !text.empty() && text.find(',') == std::string_view::npos;
}

/// The first of the texts that can stand in the list of dyes; empty when none can.
std::string_view firstDye(std::initializer_list<std::string_view> candidates) {
    for (const std::string_view candidate : candidates) {
        if (canBeDye(candidate)) {
            return candidate;
        }
    }
    return {};
}

std::optional<int> wholeNumber(std::string_view text) {
    int number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = read.ec == std::errc() && read.ptr == text.data() + text.size();
    return isNumber ? std::optional(number) : std::nullopt;
}

template <typename Value>
std::optional<Value> elementAt(const std::vector<std::optional<Value>>& list, std::size_t index) {
    return index < list.size() ? list[index] : std::nullopt;
}

std::string_view viewOf(const std::optional<std::string>& text) {
    return text ? std::string_view(*text) : std::string_view();
}

void addPen(std::vector<Pen>& pens, IPPAnswer& answer, const char* attribute, std::size_t index,
            std::string_view dye, std::optional<bool> sufficient) {
    if (dye.empty()) {
        answer.dropped().add(attribute, index + 1, "has no usable name");
    } else {
        pens.push_back({std::string(dye), sufficient});
    }
}

/// The letter by which PPDs call a primary printing colour, whose name or sRGB number it is;
/// another colour stays as it is, and "none" and "unknown" are none.
std::string_view dyeOfColour(std::string_view colour) {
    struct Primary {
        std::string_view name;
        std::string_view number;
        std::string_view dye;
    };
    constexpr std::array<Primary, 4> kPrimaries = {{{"cyan", "#00ffff", "C"},
                                                    {"magenta", "#ff00ff", "M"},
                                                    {"yellow", "#ffff00", "Y"},
                                                    {"black", "#000000", "K"}}};
    const std::string comparable = comparableKeyword(colour);
    for (const Primary& primary : kPrimaries) {
        if (comparable == primary.name || comparable == primary.number) {
            return primary.dye;
        }
    }
    return comparable == "none" || comparable == "unknown" ? std::string_view() : colour;
}

/// PWG 5100.13, "printer-supply": one list of fields for each supply.
std::vector<Pen> pensFromSupplies(IPPAnswer& answer) {
    constexpr std::size_t kLongestDescription = 1023;
    const auto supplies = answer.texts("printer-supply", kLongestDescription);
    const auto descriptions = answer.texts("printer-supply-description");
    std::vector<Pen> pens;
    for (std::size_t index = 0; index < supplies.size(); ++index) {
        const std::string_view supply = viewOf(supplies[index]);
        if (!isInkOrToner(fieldOfList(supply, "type")) ||
            comparableKeyword(fieldOfList(supply, "class")) == "receptaclethatisfilled") {
            continue;
        }
        const auto description = elementAt(descriptions, index);
        const std::string_view colorant = dyeOfColour(fieldOfList(supply, "colorantname"));
        addPen(pens, answer, "printer-supply", index, firstDye({colorant, viewOf(description)}),
               isSufficient(wholeNumber(fieldOfList(supply, "level")), 0));
    }
    return pens;
}

/// CUPS extensions: parallel lists, one element for each supply.
std::vector<Pen> pensFromMarkers(IPPAnswer& answer) {
    const auto types = answer.texts("marker-types");
    const auto names = answer.texts("marker-names");
    const auto colours = answer.texts("marker-colors");
    const auto levels = answer.integers("marker-levels");
    const auto lowLevels = answer.integers("marker-low-levels");
    std::vector<Pen> pens;
    for (std::size_t index = 0; index < types.size(); ++index) {
        if (!isInkOrToner(viewOf(types[index]))) {
            continue;
        }
        const auto name = elementAt(names, index);
        const auto colour = elementAt(colours, index);
        const auto level = index < levels.size() ? std::optional(levels[index]) : std::nullopt;
        const int lowLevel = index < lowLevels.size() ? lowLevels[index] : 0;
        addPen(pens, answer, "marker-types", index,
               firstDye({dyeOfColour(viewOf(colour)), viewOf(name)}),
               isSufficient(level, std::max(lowLevel, 0)));
    }
    return pens;
}

std::string joined(const std::vector<Pen>& pens, std::string (*textOf)(const Pen&)) {
    std::string list;
    for (const Pen& pen : pens) {
        list += (list.empty() ? "" : ",") + textOf(pen);
    }
    return list;
}

/// Whether it was set.
bool setList(std::string_view key, std::string list, OrbCSPensConfiguration& configuration,
             IPPAnswer& answer) {
    if (std::string_view("*: ").size() + key.size() + list.size() > kLongestLine) {
        answer.dropped().add(key, "would make a line of more than 255 bytes");
    } else if (const auto reason = reasonPrinterTextIsRefused(PrinterText::unquotedValue, list)) {
        answer.dropped().add(key, *reason);
    } else {
        configuration.PPDAttributeValues.emplace(key, std::move(list));
        return true;
    }
    return false;
}

void tellPenValue(std::string_view keyword, OrbCSToldEntries& told) {
    told.insert(OrbCSPartialStatus::entryForPart(kTkCSInstalledPensConfigurationKey, keyword));
}

}  // namespace

void readPens(IPPAnswer& answer, IPPDeviceStatus::Values& values, OrbCSToldEntries& told) {
    std::vector<Pen> pens = pensFromSupplies(answer);
    // A description that was dropped is missed only by a supply whose dye it would have named.
    bool areAllNamed = !answer.dropped().areFrom({"printer-supply"});
    bool areLevelsWhole = true;
    if (pens.empty()) {
        pens = pensFromMarkers(answer);
        areAllNamed = !answer.dropped().areFrom({"marker-types", "marker-names", "marker-colors"});
        areLevelsWhole = !answer.dropped().areFrom({"marker-levels", "marker-low-levels"});
    }
    if (pens.empty()) {
        return;
    }
    OrbCSPensConfiguration configuration;
    if (setList(kTkCSPPDPenDyesKey, joined(pens, [](const Pen& pen) { return pen.dye; }),
                configuration, answer) &&
        areAllNamed) {
        tellPenValue(kTkCSPPDPenDyesKey, told);
    }
    const bool areLevelsKnown = std::all_of(
        pens.begin(), pens.end(), [](const Pen& pen) { return pen.isSufficient.has_value(); });
    const auto digit = [](const Pen& pen) { return std::string(*pen.isSufficient ? "1" : "0"); };
    if (areLevelsKnown &&
        setList(kTkCSPPDPenInkSufficientKey, joined(pens, digit), configuration, answer) &&
        areAllNamed && areLevelsWhole) {
        tellPenValue(kTkCSPPDPenInkSufficientKey, told);
    }
    values.insert_or_assign(std::string(kTkCSInstalledPensConfigurationKey),
                            std::move(configuration));
}

}  // namespace TkPPDUpdating
