#include "backends/cups/IPPAccessories.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <variant>

#include "backends/cups/KeywordText.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

void addAccessory(std::string_view name, bool isInstalled, IPPDeviceStatus::Values& values) {
    auto& value =
        values.try_emplace(std::string(kTkCSDeviceAccessoriesKey), OrbCSDeviceAccessories())
            .first->second;
    std::get<OrbCSDeviceAccessories>(value).push_back({std::string(name), isInstalled});
}

void tellAccessory(std::string_view name, OrbCSToldEntries& told) {
    told.insert(OrbCSPartialStatus::entryForPart(kTkCSDeviceAccessoriesKey, name));
}

bool isTray(std::string_view source) {
    const std::string name = comparableKeyword(source);
    const auto has = [&name](std::string_view part) {
        return name.find(part) != std::string::npos;
    };
    return !has("auto") && !has("manual") && !has("bypass") && !has("envelope");
}

/// Whether the text is a description of a tray or another input at all (PWG 5100.13).
bool isInputDescription(std::string_view description) {
    return !fieldOfList(description, "type").empty() || !fieldOfList(description, "name").empty();
}

bool isTrayDescription(std::string_view description) {
    // RFC 3805, prtInputType: a manual feed is no tray, whatever its name.
    return comparableKeyword(fieldOfList(description, "type")) != "sheetfeedmanual" &&
           isTray(fieldOfList(description, "name"));
}

}  // namespace

void readDuplexer(IPPAnswer& answer, IPPDeviceStatus::Values& values, OrbCSToldEntries& told) {
    const auto sides = answer.keywordsOrNames("sides-supported");
    if (!sides) {
        return;
    }
    bool isOneSided = false;
    bool isTwoSided = false;
    for (const IPPAnswer::Text& side : *sides) {
        if (side.text == "one-sided") {
            isOneSided = true;
        } else if (side.text == "two-sided-long-edge" || side.text == "two-sided-short-edge") {
            isTwoSided = true;
        } else {
            answer.dropped().add("sides-supported", side.valueFromOne, "is no keyword of RFC 8011");
        }
    }
    if (isOneSided || isTwoSided) {
        addAccessory(kTkCSDeviceAccessoryDuplexer, isTwoSided, values);
    }
    if (isTwoSided || (isOneSided && !answer.dropped().areFrom({"sides-supported"}))) {
        tellAccessory(kTkCSDeviceAccessoryDuplexer, told);
    }
}

void readLowerTray(IPPAnswer& answer, IPPDeviceStatus::Values& values, OrbCSToldEntries& told) {
    bool isReported = false;
    std::set<std::string> sources;
    if (const auto keywords = answer.keywordsOrNames("media-source-supported")) {
        for (const IPPAnswer::Text& source : *keywords) {
            isReported = true;
            if (isTray(source.text)) {
                sources.insert(source.text);
            }
        }
    }
    constexpr std::size_t kLongestDescription = 1023;
    const auto descriptions = answer.texts("printer-input-tray", kLongestDescription);
    std::size_t described = 0;
    for (std::size_t index = 0; index < descriptions.size(); ++index) {
        const auto& description = descriptions[index];
        if (description && !isInputDescription(*description)) {
            answer.dropped().add("printer-input-tray", index + 1, "describes no tray");
        } else if (description) {
            isReported = true;
            described += isTrayDescription(*description) ? 1 : 0;
        }
    }
    if (isReported) {
        const bool isInstalled = std::max(sources.size(), described) >= 2;
        addAccessory(kTkCSDeviceAccessoryTray2, isInstalled, values);
        if (isInstalled ||
            !answer.dropped().areFrom({"media-source-supported", "printer-input-tray"})) {
            tellAccessory(kTkCSDeviceAccessoryTray2, told);
        }
    }
}

}  // namespace TkPPDUpdating
