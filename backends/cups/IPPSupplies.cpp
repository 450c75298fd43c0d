#include "backends/cups/IPPSupplies.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/cups/KeywordText.h"
#include "backends/schemes/InkColours.h"
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

/// The dyes of one supply: one as a rule, several in a cartridge of joined colours.
using Dyes = std::vector<std::string>;

/// One ink or toner supply, as one of the two families tells it.
struct Ink {
    /// Where it stands in the answer.
    std::string place;
    /// The dyes that its colour stands for; empty when it has none that could be used.
    Dyes ofColour;
    /// Its own name, not looked at yet, and where that stands.
    std::string name;
    std::string placeOfName;
    /// Whether it is not empty; nothing when that is not known.
    std::optional<bool> isSufficient;
};

std::string placeOf(std::string_view attribute, std::size_t index) {
    return std::string(attribute) + ", value " + std::to_string(index + 1);
}

bool isInkOrToner(std::string_view type) {
    constexpr std::array<std::string_view, 4> kInks = {"ink", "inkcartridge", "toner",
                                                       "tonercartridge"};
    return std::find(kInks.begin(), kInks.end(), comparableKeyword(type)) != kInks.end();
}

/// RFC 3805, prtMarkerSuppliesLevel: -1 no restriction, -2 unknown, -3 some is left.
std::optional<bool> isSufficient(std::optional<int> level) {
    const bool isKnown = level && *level >= -3 && *level != -2;
    return isKnown ? std::optional(*level != 0) : std::nullopt;
}

std::optional<int> wholeNumber(std::string_view text) {
    int number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = read.ec == std::errc() && read.ptr == text.data() + text.size();
    return isNumber ? std::optional(number) : std::nullopt;
}

/// The value at the place, or an empty one.
std::string valueAt(const std::vector<std::optional<std::string>>& values, std::size_t index) {
    return index < values.size() ? values[index].value_or("") : std::string();
}

/// A dye must not be taken for two, and a colour's number is no word.
bool canBeDye(std::string_view text) {
    return !text.empty() && !text.starts_with('#') && text.find(',') == std::string_view::npos;
}

/// The dyes that the text stands for, when all of them can stand in the list.
Dyes usableDyes(IPPAnswer& answer, std::string_view text, const std::string& place) {
    if (text.empty() || !answer.usable(text, PrinterText::unquotedValue, place)) {
        return {};
    }
    Dyes dyes = dyesOfInkColour(text);
    return std::all_of(dyes.begin(), dyes.end(), canBeDye) ? dyes : Dyes();
}

/// The printer's inks and toners by its supplies; nothing when one of the supplies, which may be an
/// ink, could not be read.
std::optional<std::vector<Ink>> inksOfSupplies(IPPAnswer& answer) {
    const auto supplies = answer.uncheckedTexts(kSupplies);
    const auto descriptions = answer.uncheckedTexts(kDescriptions);
    std::vector<Ink> inks;
    for (std::size_t index = 0; index < supplies.size(); ++index) {
        if (!supplies[index]) {
            return std::nullopt;
        }
        const std::string_view supply = withoutOwnName(*supplies[index], kSupplies);
        if (!isInkOrToner(fieldOfList(supply, "type")) ||
            comparableKeyword(fieldOfList(supply, "class")) == "receptaclethatisfilled") {
            continue;
        }
        const std::string place = placeOf(kSupplies, index);
        inks.push_back(
            {place,
             usableDyes(answer, fieldOfList(supply, "colorantname"), place + ", colorantname"),
             valueAt(descriptions, index), placeOf(kDescriptions, index),
             isSufficient(wholeNumber(fieldOfList(supply, "level")))});
    }
    return inks;
}

/// The same by its markers.
std::optional<std::vector<Ink>> inksOfMarkers(IPPAnswer& answer) {
    const auto types = answer.uncheckedTexts(kTypes);
    const auto names = answer.uncheckedTexts(kNames);
    const auto colours = answer.uncheckedTexts(kColours);
    const auto levels = answer.integers(kLevels);
    std::vector<Ink> inks;
    for (std::size_t index = 0; index < types.size(); ++index) {
        if (!types[index]) {
            return std::nullopt;
        }
        if (isInkOrToner(*types[index])) {
            const auto level = index < levels.size() ? std::optional(levels[index]) : std::nullopt;
            inks.push_back({placeOf(kTypes, index),
                            usableDyes(answer, valueAt(colours, index), placeOf(kColours, index)),
                            valueAt(names, index), placeOf(kNames, index), isSufficient(level)});
        }
    }
    return inks;
}

/// The families that count, the better one first.
std::vector<std::vector<Ink>> familiesThatCount(IPPAnswer& answer) {
    auto supplies = inksOfSupplies(answer);
    auto markers = inksOfMarkers(answer);
    const bool hasMarkers = markers && !markers->empty();
    const bool hasSupplies =
        supplies && !supplies->empty() && (!hasMarkers || supplies->size() == markers->size());
    std::vector<std::vector<Ink>> families;
    if (hasSupplies) {
        families.push_back(std::move(*supplies));
    }
    if (hasMarkers) {
        families.push_back(std::move(*markers));
    }
    return families;
}

/// The names of the inks that have that dye; nothing when they do not tell them apart.
std::optional<std::map<std::size_t, Dyes>> namesOfInksWithDye(IPPAnswer& answer,
                                                              const std::vector<Ink>& inks,
                                                              const std::vector<Dyes>& dyes,
                                                              const std::string& dye) {
    std::map<std::size_t, Dyes> names;
    std::set<Dyes> seen;
    for (std::size_t index = 0; index < inks.size(); ++index) {
        if (dyes[index] == Dyes{dye}) {
            Dyes name = usableDyes(answer, inks[index].name, inks[index].placeOfName);
            if (name.empty() || !seen.insert(name).second) {
                return std::nullopt;
            }
            names.emplace(index, std::move(name));
        }
    }
    return names;
}

/// Gives supplies of one dye their own names.
void tellSharedDyesApart(IPPAnswer& answer, const std::vector<Ink>& inks, std::vector<Dyes>& dyes) {
    std::map<std::string, std::size_t> counts;
    for (const Dyes& each : dyes) {
        for (const std::string& dye : each) {
            ++counts[dye];
        }
    }
    const std::vector<Dyes> before = dyes;
    for (const auto& [dye, count] : counts) {
        const auto names = count > 1 ? namesOfInksWithDye(answer, inks, before, dye) : std::nullopt;
        for (const auto& [index, name] : names.value_or(std::map<std::size_t, Dyes>())) {
            dyes[index] = name;
        }
    }
}

/// The dyes of each supply; nothing, and that supply in `nameless`, when one of them has no name.
std::optional<std::vector<Dyes>> dyesOf(IPPAnswer& answer, const std::vector<Ink>& inks,
                                        std::string& nameless) {
    std::vector<Dyes> dyes;
    for (const Ink& ink : inks) {
        dyes.push_back(ink.ofColour.empty() ? usableDyes(answer, ink.name, ink.placeOfName)
                                            : ink.ofColour);
        if (dyes.back().empty()) {
            nameless = ink.place;
            return std::nullopt;
        }
    }
    tellSharedDyesApart(answer, inks, dyes);
    return dyes;
}

void addToList(std::string& list, std::string_view value) {
    list += list.empty() ? "" : ",";
    list += value;
}

/// Whether each dye is sufficient; nothing when that is not known of all. A supply whose dyes are
/// not known counts once.
std::optional<std::string> sufficiencyOf(const std::vector<Ink>& inks,
                                         const std::optional<std::vector<Dyes>>& dyes) {
    std::string list;
    for (std::size_t index = 0; index < inks.size(); ++index) {
        if (!inks[index].isSufficient) {
            return std::nullopt;
        }
        const std::size_t count =
            dyes ? (*dyes)[index].size() : std::max<std::size_t>(1, inks[index].ofColour.size());
        for (std::size_t dye = 0; dye < count; ++dye) {
            addToList(list, *inks[index].isSufficient ? "1" : "0");
        }
    }
    return list;
}

/// What is known of the pens, with what it tells.
class PensReport {
  public:
    PensReport(IPPAnswer& answer, OrbCSToldEntries& told) : answer_(answer), told_(told) {}

    void setList(std::string_view keyword, std::string list) {
        if (std::string_view("*: ").size() + keyword.size() + list.size() > kLongestLine) {
            answer_.dropped().add(keyword, "would make a line of more than 255 bytes");
            return;
        }
        configuration_.PPDAttributeValues.emplace(keyword, std::move(list));
        told_.insert(OrbCSPartialStatus::entryForPart(kTkCSInstalledPensConfigurationKey, keyword));
    }

    void addTo(IPPDeviceStatus::Values& values) {
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

std::string joined(const std::vector<Dyes>& dyes) {
    std::string list;
    for (const Dyes& each : dyes) {
        for (const std::string& dye : each) {
            addToList(list, dye);
        }
    }
    return list;
}

}  // namespace

void readPens(IPPAnswer& answer, IPPDeviceStatus::Values& values, OrbCSToldEntries& told) {
    const auto families = familiesThatCount(answer);
    std::optional<std::vector<Dyes>> dyes;
    std::string nameless;
    for (auto inks = families.begin(); inks != families.end() && !dyes; ++inks) {
        dyes = dyesOf(answer, *inks, nameless);
    }
    std::optional<std::string> sufficiency;
    for (auto inks = families.begin(); inks != families.end() && !sufficiency; ++inks) {
        sufficiency = sufficiencyOf(*inks, dyes);
    }
    PensReport report(answer, told);
    if (dyes) {
        report.setList(kTkCSPPDPenDyesKey, joined(*dyes));
    } else if (!families.empty()) {
        answer.dropped().add(nameless,
                             "has no usable name, the names of the inks are not reported");
    }
    if (sufficiency) {
        report.setList(kTkCSPPDPenInkSufficientKey, std::move(*sufficiency));
    }
    report.addTo(values);
}

}  // namespace TkPPDUpdating
