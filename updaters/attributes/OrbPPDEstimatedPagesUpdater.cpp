#include "updaters/attributes/OrbPPDEstimatedPagesUpdater.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "core_interface/OrbCoreInterface.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbPPDUpdatingContext.h"

namespace TkPPDUpdating {

namespace {

using Estimation = OrbCSRemainingPagesEstimation;

constexpr std::string_view kInfoSupported = "ZrEPRInfoSupported";
constexpr std::string_view kPageTypes = "ZrEPRPageTypes";
constexpr std::string_view kMinPageCounts = "ZrEPRMinPageCounts";
constexpr std::string_view kMaxPageCounts = "ZrEPRMaxPageCounts";
constexpr std::string_view kStates = "ZrEPRStates";
constexpr std::string_view kLastUpdate = "ZrEPRLastUpdate";

constexpr std::array<std::string_view, 6> kAttributeNames = {
    kInfoSupported, kPageTypes, kMinPageCounts, kMaxPageCounts, kStates, kLastUpdate};

constexpr char kSeparator = ',';
constexpr const char* kUpdateTimeVariable = "ZrEPRLastUpdateTime";

std::string textOf(const std::optional<std::string>& text) {
    return text.value_or(std::string());
}

std::string textOf(const std::optional<OrbCSNumberOrString>& number) {
    return number ? number->stringValue() : std::string();
}

/// An attribute, the key path to its element in one record, and what stands there: the empty text
/// when the record lacks it.
struct List {
    std::string_view attributeName;
    std::string_view keyPath;
    std::string (*element)(const Estimation& estimation);
};

constexpr std::array<List, 4> kLists = {{
    {kPageTypes, "pageTypeName", [](const Estimation& e) { return textOf(e.pageTypeName); }},
    {kMinPageCounts, "minPageCount.stringValue",
     [](const Estimation& e) { return textOf(e.minPageCount); }},
    {kMaxPageCounts, "maxPageCount.stringValue",
     [](const Estimation& e) { return textOf(e.maxPageCount); }},
    {kStates, "state.stringValue", [](const Estimation& e) { return textOf(e.state); }},
}};

std::string joinedElements(const OrbCSRemainingPagesEstimations& estimations, const List& list) {
    std::string joined;
    bool isFirst = true;
    for (const Estimation& estimation : estimations) {
        if (!isFirst) {
            joined += kSeparator;
        }
        isFirst = false;
        joined += list.element(estimation);
    }
    return joined;
}

/// As `printf` writes "%.0f" in the C locale, whatever the locale is: the nearest whole number,
/// half to even, "-0" for what rounds to it from below, all digits of a huge one; "nan", "inf" and
/// "-inf".
std::string wholeNumberText(double number) {
    if (std::isnan(number)) {
        return "nan";  // without the sign, which differs from machine to machine
    }
    constexpr std::size_t kSignAndDigits = 1 + std::numeric_limits<double>::max_exponent10 + 1;
    std::array<char, kSignAndDigits> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                   std::chars_format::fixed, 0);
    return {buffer.data(), end.ptr};
}

std::string updateTime() {
    if (auto time = OrbCoreInterface::environment()->valueForVariable(kUpdateTimeVariable)) {
        return *std::move(time);
    }
    return wholeNumberText(OrbCoreInterface::clock()->secondsSinceReferenceDate());
}

}  // namespace

std::span<const std::string_view> OrbPPDEstimatedPagesUpdater::attributeNames() const {
    return kAttributeNames;
}

const OrbPPDEstimatedPagesUpdater::AttributeKeyPaths&
OrbPPDEstimatedPagesUpdater::attributeKeyPaths() const {
    static const AttributeKeyPaths keyPaths = [] {
        AttributeKeyPaths paths;
        for (const List& list : kLists) {
            paths.emplace(list.attributeName, list.keyPath);
        }
        return paths;
    }();
    return keyPaths;
}

std::shared_ptr<const OrbCSRemainingPagesEstimations>
OrbPPDEstimatedPagesUpdater::estimatedPagesFromURI_context(
    std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    const auto status = OrbPPDUpdatingContext::deviceStatusForURI_inContext(deviceURI, context);
    if (!status) {
        return nullptr;
    }
    // Without a context nobody else keeps the status that owns the estimations.
    return {status, status->statusValueForKey<OrbCSRemainingPagesEstimations>(
                        kTkCSRemainingPagesEstimationsKey)};
}

std::optional<OrbPPDUpdatingValues>
OrbPPDEstimatedPagesUpdater::attributesFromDeviceWithURI_context(
    std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    OrbPPDUpdatingValues values;
    const auto estimations = estimatedPagesFromURI_context(deviceURI, context);
    if (!estimations) {
        return values;
    }
    for (const List& list : kLists) {
        std::string joined = joinedElements(*estimations, list);
        if (!joined.empty()) {
            values.emplace(list.attributeName, std::move(joined));
        }
    }
    if (!values.empty()) {
        values.emplace(kLastUpdate, updateTime());
    }
    return values;
}

std::vector<std::string> OrbPPDEstimatedPagesUpdater::statusEntriesRead() const {
    return {std::string(kTkCSRemainingPagesEstimationsKey)};
}

}  // namespace TkPPDUpdating
