#include "backends/ipp/IPPSupplies.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/ipp/KeywordText.h"
#include "backends/schemes/InkColours.h"
#include "backends/schemes/InkSupplies.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

constexpr const char* kSupplies = "printer-supply";
constexpr const char* kDescriptions = "printer-supply-description";
constexpr const char* kTypes = "marker-types";
constexpr const char* kNames = "marker-names";
constexpr const char* kColours = "marker-colors";
constexpr const char* kLevels = "marker-levels";

/// PPD specification 4.3, section 3.6.
constexpr std::size_t kLongestLine = 255;

/// One ink or toner supply, as one of the two families tells it, and where it stands in the answer.
struct Ink {
    std::string place;
    InkSupply supply;
};

std::string placeOf(std::string_view attribute, std::size_t index) {
    return std::string(attribute) + ", value " + std::to_string(index + 1);
}

bool isInkOrToner(std::string_view type) {
    constexpr std::array<std::string_view, 4> kInks = {"ink", "inkcartridge", "toner",
                                                       "tonercartridge"};
    return std::find(kInks.begin(), kInks.end(), comparableKeyword(type)) != kInks.end();
}

std::optional<std::int64_t> wholeNumber(std::string_view text) {
    std::int64_t number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = read.ec == std::errc() && read.ptr == text.data() + text.size();
    return isNumber ? std::optional(number) : std::nullopt;
}

/// The texts that belong to the values of the other attribute place by place; all empty when they
/// are not as many, since it is open then which belongs to which.
std::vector<std::string> textsBeside(IPPAnswer& answer, const char* name, std::size_t count) {
    const auto texts = answer.uncheckedTexts(name);
    std::vector<std::string> beside(count);
    if (!texts.empty() && texts.size() != count) {
        answer.dropped().add(name,
                             "has another number of values than there are supplies, so that "
                             "all are left out");
        return beside;
    }
    for (std::size_t index = 0; index < texts.size(); ++index) {
        beside[index] = texts[index].value_or("");
    }
    return beside;
}

/// The dyes that the text stands for, when all of them can stand in the list.
InkDyes usableDyes(IPPAnswer& answer, const std::string& text, const std::string& place) {
    const bool isUsable =
        !text.empty() && answer.usable(text, PrinterText::unquotedValue, place).has_value();
    return isUsable ? dyesOfInkColour(text) : InkDyes();
}

std::function<InkDyes()> dyesOfName(IPPAnswer& answer, std::string name, std::string place) {
    return [&answer, name = std::move(name), place = std::move(place)] {
        return usableDyes(answer, name, place);
    };
}

/// Whether nothing can be said of a supply of that type.
bool leavesTypeOpen(std::string_view type) {
    return type.empty() || comparableKeyword(type) == "unknown";
}

/// The printer's inks and toners by its supplies; nothing when one of the supplies, which may be an
/// ink, could not be read.
std::optional<std::vector<Ink>> inksOfSupplies(IPPAnswer& answer) {
    const auto supplies = answer.uncheckedTexts(kSupplies);
    const auto names = textsBeside(answer, kDescriptions, supplies.size());
    std::vector<Ink> inks;
    for (std::size_t index = 0; index < supplies.size(); ++index) {
        const std::string_view supply =
            supplies[index] ? withoutOwnName(*supplies[index], kSupplies) : std::string_view();
        const std::string_view type = fieldOfList(supply, "type");
        if (leavesTypeOpen(type)) {
            answer.dropped().addUnlessTold(kSupplies, index + 1, "has no type");
            return std::nullopt;
        }
        if (!isInkOrToner(type) ||
            comparableKeyword(fieldOfList(supply, "class")) == "receptaclethatisfilled") {
            continue;
        }
        const std::string colour(fieldOfList(supply, "colorantname"));
        Ink& ink = inks.emplace_back();
        ink.place = placeOf(kSupplies, index);
        ink.supply.ofColour = usableDyes(answer, colour, ink.place + ", colorantname");
        ink.supply.ofName = dyesOfName(answer, names[index], placeOf(kDescriptions, index));
        ink.supply.isSufficient = isInkSufficient(wholeNumber(fieldOfList(supply, "level")));
    }
    return inks;
}

/// The levels of the markers, place by place; none when there is another number of them.
std::vector<int> levelsOfMarkers(IPPAnswer& answer, std::size_t markers) {
    std::vector<int> levels = answer.integers(kLevels);
    if (!levels.empty() && levels.size() != markers) {
        answer.dropped().add(kLevels,
                             "has another number of values than there are supplies, so "
                             "that all are left out");
        levels.clear();
    }
    return levels;
}

/// The same by its markers.
std::optional<std::vector<Ink>> inksOfMarkers(IPPAnswer& answer) {
    const auto types = answer.uncheckedTexts(kTypes);
    const auto names = textsBeside(answer, kNames, types.size());
    const auto colours = textsBeside(answer, kColours, types.size());
    const auto levels = levelsOfMarkers(answer, types.size());
    std::vector<Ink> inks;
    for (std::size_t index = 0; index < types.size(); ++index) {
        if (leavesTypeOpen(types[index].value_or(""))) {
            return std::nullopt;
        }
        if (isInkOrToner(*types[index])) {
            const auto level =
                levels.empty() ? std::nullopt : std::optional<std::int64_t>(levels[index]);
            Ink& ink = inks.emplace_back();
            ink.place = placeOf(kTypes, index);
            ink.supply.ofColour = usableDyes(answer, colours[index], placeOf(kColours, index));
            ink.supply.ofName = dyesOfName(answer, names[index], placeOf(kNames, index));
            ink.supply.isSufficient = isInkSufficient(level);
        }
    }
    return inks;
}

using InkSupplies = std::vector<InkSupply>;

/// One family as it is judged: its supplies, and where each stands.
struct Family {
    InkSupplies supplies;
    std::vector<std::string> places;
};

Family familyOf(std::vector<Ink> inks) {
    Family family;
    for (Ink& ink : inks) {
        family.supplies.push_back(std::move(ink.supply));
        family.places.push_back(std::move(ink.place));
    }
    return family;
}

/// The families that count, the better one first.
std::vector<Family> familiesThatCount(IPPAnswer& answer) {
    auto supplies = inksOfSupplies(answer);
    auto markers = inksOfMarkers(answer);
    const bool hasMarkers = markers && !markers->empty();
    const bool hasSupplies =
        supplies && !supplies->empty() && (!hasMarkers || supplies->size() == markers->size());
    std::vector<Family> families;
    if (hasSupplies) {
        families.push_back(familyOf(std::move(*supplies)));
    }
    if (hasMarkers) {
        families.push_back(familyOf(std::move(*markers)));
    }
    return families;
}

/// Whether nothing speaks against the supplies of both standing in the same order.
bool mayBeInOneOrder(const InkSupplies& first, const InkSupplies& second) {
    return std::ranges::equal(first, second, [](const InkSupply& one, const InkSupply& other) {
        return one.ofColour.empty() || other.ofColour.empty() || one.ofColour == other.ofColour;
    });
}

/// Whether each of the dyes is sufficient, by the family that told them, else by the other one.
std::optional<std::string> sufficiencyOf(const std::vector<Family>& families, const Family& teller,
                                         const std::vector<InkDyes>& dyes) {
    auto list = listOfInkSufficiency(teller.supplies, dyes);
    for (auto other = families.begin(); other != families.end() && !list; ++other) {
        if (mayBeInOneOrder(teller.supplies, other->supplies)) {
            list = listOfInkSufficiency(other->supplies, dyes);
        }
    }
    return list;
}

/// What is known of the pens, with what it tells.
class PensReport {
  public:
    PensReport(IPPAnswer& answer, OrbCSToldEntries& told) : answer_(answer), told_(told) {}

    /// False when the list is too long.
    bool setList(std::string_view keyword, std::string list) {
        if (std::string_view("*: ").size() + keyword.size() + list.size() > kLongestLine) {
            answer_.dropped().add(keyword, "would make a line of more than 255 bytes");
            return false;
        }
        configuration_.PPDAttributeValues.emplace(keyword, std::move(list));
        told_.insert(OrbCSPartialStatus::entryForPart(kTkCSInstalledPensConfigurationKey, keyword));
        return true;
    }

    void addTo(ReportedDeviceStatus::Values& values) {
        if (!configuration_.PPDAttributeValues.empty()) {
            values.insert_or_assign(std::string(kTkCSInstalledPensConfigurationKey),
                                    std::move(configuration_));
        }
    }

  private:
    IPPAnswer& answer_;
    OrbCSToldEntries& told_;
    OrbCSPensConfiguration configuration_;
};

}  // namespace

void readPens(IPPAnswer& answer, ReportedDeviceStatus::Values& values, OrbCSToldEntries& told) {
    const auto families = familiesThatCount(answer);
    std::optional<std::vector<InkDyes>> dyes;
    auto teller = families.begin();
    std::string nameless;
    for (; teller != families.end(); ++teller) {
        std::size_t place = 0;
        dyes = dyesOfInkSupplies(teller->supplies, place);
        if (dyes) {
            break;
        }
        nameless = teller->places[place];
    }
    if (families.empty()) {
        return;
    }
    if (!dyes) {
        answer.dropped().add(nameless, "has no usable name, the inks are not reported");
        return;
    }
    PensReport report(answer, told);
    auto sufficiency = sufficiencyOf(families, *teller, *dyes);
    // Levels mean nothing without the dyes that they are of.
    if (report.setList(kTkCSPPDPenDyesKey, listOfInkDyes(*dyes)) && sufficiency) {
        report.setList(kTkCSPPDPenInkSufficientKey, *std::move(sufficiency));
    }
    report.addTo(values);
}

}  // namespace TkPPDUpdating
