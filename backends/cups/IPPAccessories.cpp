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

bool isTray(std::string_view source) {
    const std::string name = comparableKeyword(source);
    const auto has = [&name](std::string_view part) {
        return name.find(part) != std::string::npos;
    };
    return !has("auto") && !has("manual") && !has("bypass") && !has("envelope");
}

bool isTrayDescription(std::string_view description) {
    // RFC 3805, prtInputType: a manual feed is no tray, whatever its name.
    return comparableKeyword(fieldOfList(description, "type")) != "sheetfeedmanual" &&
           isTray(fieldOfList(description, "name"));
}

}  // namespace

void readDuplexer(IPPAnswer& answer, IPPDeviceStatus::Values& values) {
    const auto sides = answer.keywordsOrNames("sides-supported");
    if (!sides) {
        return;
    }
    bool isOneSided = false;
    bool isTwoSided = false;
    for (std::size_t index = 0; index < sides->size(); ++index) {
        const std::string& side = (*sides)[index].text;
        if (side == "one-sided") {
            isOneSided = true;
        } else if (side == "two-sided-long-edge" || side == "two-sided-short-edge") {
            isTwoSided = true;
        } else {
            answer.dropped().add("sides-supported", index + 1, "is no keyword of RFC 8011");
        }
    }
    if (isOneSided || isTwoSided) {
        addAccessory(kTkCSDeviceAccessoryDuplexer, isTwoSided, values);
    }
}

void readLowerTray(IPPAnswer& answer, IPPDeviceStatus::Values& values) {
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
    std::size_t described = 0;
    for (const auto& tray : answer.texts("printer-input-tray", kLongestDescription)) {
        if (tray) {
            isReported = true;
            described += isTrayDescription(*tray) ? 1 : 0;
        }
    }
    if (isReported) {
        addAccessory(kTkCSDeviceAccessoryTray2, std::max(sources.size(), described) >= 2, values);
    }
}

}  // namespace TkPPDUpdating
