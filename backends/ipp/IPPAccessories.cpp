#include "backends/ipp/IPPAccessories.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "backends/ipp/KeywordText.h"
#include "backends/schemes/TrayNames.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

constexpr const char* kSides = "sides-supported";
constexpr const char* kSources = "media-source-supported";
constexpr const char* kDescriptions = "printer-input-tray";

void addAccessory(std::string_view name, bool isInstalled, ReportedDeviceStatus::Values& values,
                  OrbCSToldEntries& told) {
    auto& value =
        values.try_emplace(std::string(kTkCSDeviceAccessoriesKey), OrbCSDeviceAccessories())
            .first->second;
    std::get<OrbCSDeviceAccessories>(value).push_back({std::string(name), isInstalled});
    told.insert(OrbCSPartialStatus::entryForPart(kTkCSDeviceAccessoriesKey, name));
}

/// What is used of a description.
struct Description {
    std::string type;
    std::string name;
};

/// One input of the printer, as far as it is known.
struct Input {
    std::optional<std::string> source;
    std::optional<Description> description;
    /// Whether it has no source, or no usable description, where the other inputs have theirs.
    bool isPartial = false;
};

/// RFC 3805, prtInputType, "unknown".
bool isOfUnknownType(const Description& description) {
    return comparableKeyword(description.type) == "unknown";
}

/// RFC 3805, prtInputType; some printers leave the last word off.
bool isFedAutomatically(const Description& description) {
    constexpr std::array<std::string_view, 4> kTypes = {
        "sheetfeedautoremovabletray", "sheetfeedautoremovable", "sheetfeedautononremovabletray",
        "sheetfeedautononremovable"};
    return std::find(kTypes.begin(), kTypes.end(), comparableKeyword(description.type)) !=
           kTypes.end();
}

/// PWG 5101.1, media source names.
bool isSourceOfNoTray(std::string_view source) {
    constexpr std::array<std::string_view, 7> kNoTrays = {
        "hagaki", "disc", "cd", "virtual", "roll", "mainroll", "alternateroll"};
    std::string word = comparableKeyword(source);
    word.erase(word.find_last_not_of("0123456789") + 1);  // "roll-1" and so on.
    return isNameOfNoTray(source) ||
           std::find(kNoTrays.begin(), kNoTrays.end(), word) != kNoTrays.end();
}

enum class Judgement { tray, noTray, unknown };

Judgement judgementOf(const Input& input) {
    const auto& [source, description, isPartial] = input;
    const bool isTypeKnown = description && !isOfUnknownType(*description);
    if ((source && isSourceOfNoTray(*source)) ||
        (isTypeKnown && !isFedAutomatically(*description))) {
        return Judgement::noTray;
    }
    if (isPartial || (source && description && !isTypeKnown)) {
        return Judgement::unknown;
    }
    if (source) {
        const bool mayBeAnything = !description && comparableKeyword(*source) == "alternate";
        return mayBeAnything ? Judgement::noTray : Judgement::tray;
    }
    if (!description || description->name.empty()) {
        return Judgement::unknown;
    }
    return isNameOfNoTray(description->name) ? Judgement::noTray
           : isTypeKnown                     ? Judgement::tray
                                             : Judgement::unknown;
}

std::vector<std::optional<std::string>> readSources(IPPAnswer& answer) {
    std::vector<std::optional<std::string>> sources;
    if (auto values = answer.keywordsOrNames(kSources)) {
        for (auto& value : *values) {
            sources.push_back(value ? std::optional(std::move(value->text)) : std::nullopt);
        }
    }
    return sources;
}

std::vector<std::optional<Description>> readDescriptions(IPPAnswer& answer) {
    std::vector<std::optional<Description>> descriptions;
    for (const auto& text : answer.uncheckedTexts(kDescriptions)) {
        const std::string_view list =
            text ? withoutOwnName(*text, kDescriptions) : std::string_view();
        Description description{std::string(fieldOfList(list, "type")),
                                std::string(fieldOfList(list, "name"))};
        const bool isUsable = !description.type.empty();
        descriptions.push_back(isUsable ? std::optional(std::move(description)) : std::nullopt);
        if (!isUsable) {
            answer.dropped().addUnlessTold(kDescriptions, descriptions.size(), "has no type");
        }
    }
    return descriptions;
}

std::vector<Input> readInputs(IPPAnswer& answer) {
    auto sources = readSources(answer);
    auto descriptions = readDescriptions(answer);
    if (!sources.empty() && !descriptions.empty() && sources.size() != descriptions.size()) {
        answer.dropped().add(kDescriptions, "has not as many values as " + std::string(kSources) +
                                                ", the tray descriptions are left out");
        descriptions.clear();
    }
    std::vector<Input> inputs(std::max(sources.size(), descriptions.size()));
    for (std::size_t index = 0; index < inputs.size(); ++index) {
        Input& input = inputs[index];
        input.source = sources.empty() ? std::nullopt : std::move(sources[index]);
        input.description = descriptions.empty() ? std::nullopt : std::move(descriptions[index]);
        input.isPartial =
            (!sources.empty() && !input.source) || (!descriptions.empty() && !input.description);
    }
    return inputs;
}

}  // namespace

void readDuplexer(IPPAnswer& answer, ReportedDeviceStatus::Values& values, OrbCSToldEntries& told) {
    const auto sides = answer.keywordsOrNames(kSides);
    if (!sides) {
        return;
    }
    bool isTwoSided = false;
    bool isKnown = true;
    for (std::size_t index = 0; index < sides->size(); ++index) {
        const auto& side = (*sides)[index];
        if (side && (side->text == "two-sided-long-edge" || side->text == "two-sided-short-edge")) {
            isTwoSided = true;
        } else if (!side || side->text != "one-sided") {
            isKnown = false;
            answer.dropped().addUnlessTold(kSides, index + 1, "is no keyword of RFC 8011");
        }
    }
    // It may be given twice, of which one counts.
    isKnown = isKnown && !answer.dropped().areFrom({kSides});
    if (isTwoSided || isKnown) {
        addAccessory(kTkCSDeviceAccessoryDuplexer, isTwoSided, values, told);
    }
}

void readLowerTray(IPPAnswer& answer, ReportedDeviceStatus::Values& values,
                   OrbCSToldEntries& told) {
    const std::vector<Input> inputs = readInputs(answer);
    std::set<std::pair<bool, std::string>> trays;
    bool isKnown = !inputs.empty();
    for (const Input& input : inputs) {
        const Judgement judgement = judgementOf(input);
        isKnown = isKnown && judgement != Judgement::unknown;
        if (judgement == Judgement::tray) {
            trays.emplace(input.source.has_value(), input.source ? comparableKeyword(*input.source)
                                                                 : input.description->name);
        }
    }
    constexpr std::size_t kWithLowerTray = 2;
    if (trays.size() >= kWithLowerTray || isKnown) {
        addAccessory(kTkCSDeviceAccessoryTray2, trays.size() >= kWithLowerTray, values, told);
    }
}

}  // namespace TkPPDUpdating
