#include "backends/recorded/RecordingReader.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

#include "backends/recorded/RecordingFormat.h"
#include "backends/schemes/PlainCustomMediaType.h"
#include "backends/schemes/PlainICCProfile.h"
#include "core_interface/TkCSKeys.h"
#include "text/FileURL.h"

namespace TkPPDUpdating {

namespace {

using nlohmann::json;

constexpr std::size_t kMostReasons = 100;
constexpr std::size_t kLongestShownKey = 40;

std::string_view typeName(const json& value) {
    switch (value.type()) {
        case json::value_t::null:
            return "null";
        case json::value_t::boolean:
            return "a boolean";
        case json::value_t::string:
            return "a string";
        case json::value_t::array:
            return "an array";
        case json::value_t::object:
            return "an object";
        default:
            return "a number";
    }
}

/// The member, or null when it is missing or null.
const json* member(const json& object, std::string_view key) {
    const auto found = object.find(key);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

/// A name of the recording in a reason: only what needs no quoting is shown.
std::string shownKey(std::string_view key) {
    const std::string_view shown = key.substr(0, kLongestShownKey);
    for (const char character : shown) {
        if (character <= ' ' || character > '~' || character == '"') {
            return "(an unprintable name)";
        }
    }
    return std::string(shown) + (shown.size() < key.size() ? "..." : "");
}

/// A number in the one form that it has however it was written: 1200, 1200.0 and 1.2e3 are equal.
OrbCSNumberOrString number(const json& value) {
    constexpr double kBeyondSigned = 9223372036854775808.0;     // 2^63
    constexpr double kBeyondUnsigned = 18446744073709551616.0;  // 2^64
    if (value.is_number_float()) {
        const double real = value.get<double>();
        if (std::trunc(real) != real || real < -kBeyondSigned || real >= kBeyondUnsigned) {
            return OrbCSNumberOrString(real);
        }
        return real < kBeyondSigned ? OrbCSNumberOrString(static_cast<std::int64_t>(real))
                                    : OrbCSNumberOrString(static_cast<std::uint64_t>(real));
    }
    constexpr auto kLargestSigned =
        static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (value.is_number_unsigned() && value.get<std::uint64_t>() > kLargestSigned) {
        return OrbCSNumberOrString(value.get<std::uint64_t>());
    }
    return OrbCSNumberOrString(value.get<std::int64_t>());
}

/// A number without a sign and a fraction, however it was written.
std::optional<std::uint64_t> nonNegativeWholeNumber(const json& value) {
    if (value.is_number_unsigned()) {
        return value.get<std::uint64_t>();
    }
    constexpr double kBeyondUnsigned = 18446744073709551616.0;  // 2^64
    const double real = value.is_number() ? value.get<double>() : -1;
    return real >= 0 && real < kBeyondUnsigned && std::trunc(real) == real
               ? std::optional(static_cast<std::uint64_t>(real))
               : std::nullopt;
}

}  // namespace

std::string RecordingReader::Place::text() const {
    if (!parent) {
        return "the recording";
    }
    const std::string outer = parent->parent ? parent->text() : "";
    if (index) {
        return outer + "[" + std::to_string(*index) + "]";
    }
    return outer.empty() ? shownKey(key) : outer + "." + shownKey(key);
}

void RecordingReader::wrongType(const json& value, const Place& place, std::string_view expected) {
    if (error_.empty()) {
        error_ = place.text() + ": expected " + std::string(expected) + ", found ";
        error_ +=
            value.is_number() && expected.ends_with("number") ? "another number" : typeName(value);
    }
}

bool RecordingReader::isObject(const json& value, const Place& place) {
    if (!value.is_object()) {
        wrongType(value, place, "an object");
    }
    return value.is_object();
}

void RecordingReader::drop(const Place& place, const std::string& reason) {
    if (++countOfDroppedTexts_ <= kMostReasons) {
        droppedValues_.push_back(place.text() + ": " + reason);
    }
}

std::vector<std::string> RecordingReader::droppedValues() const {
    std::vector<std::string> reasons = droppedValues_;
    if (countOfDroppedTexts_ > kMostReasons) {
        reasons.push_back("and " + std::to_string(countOfDroppedTexts_ - kMostReasons) +
                          " more texts");
    }
    return reasons;
}

bool RecordingReader::isAccepted(PrinterText kind, std::string_view text, const Place& place) {
    const auto reason = reasonPrinterTextIsRefused(kind, text);
    if (reason) {
        drop(place, *reason);
    }
    return !reason;
}

std::optional<std::string> RecordingReader::textMember(const json& object, std::string_view key,
                                                       const Place& parent, PrinterText kind) {
    const json* value = member(object, key);
    if (!value) {
        return std::nullopt;
    }
    const Place place{&parent, key, {}};
    if (!value->is_string()) {
        wrongType(*value, place, "a string");
        return std::nullopt;
    }
    const auto& text = value->get_ref<const std::string&>();
    return isAccepted(kind, text, place) ? std::optional(text) : std::nullopt;
}

std::optional<std::string> RecordingReader::URLMember(const json& object, std::string_view key,
                                                      const Place& parent) {
    auto URL = textMember(object, key, parent, PrinterText::plain);
    // The path is what is written into the PPD; its escapes can stand for any byte.
    const auto path = URL ? absolutePathFromFileURL(*URL) : std::nullopt;
    const auto reason =
        path ? reasonPrinterTextIsRefused(PrinterText::profilePath, *path) : std::nullopt;
    if (reason) {
        drop(Place{&parent, key, {}}, "its path " + *reason);
        return std::nullopt;
    }
    return URL;
}

std::optional<OrbCSNumberOrString> RecordingReader::numberMember(const json& object,
                                                                 std::string_view key,
                                                                 const Place& parent) {
    const json* value = member(object, key);
    if (!value) {
        return std::nullopt;
    }
    if (!value->is_number()) {
        wrongType(*value, Place{&parent, key, {}}, "a number");
        return std::nullopt;
    }
    return number(*value);
}

std::optional<std::uint64_t> RecordingReader::profileIDMember(const json& object,
                                                              std::string_view key,
                                                              const Place& parent) {
    const json* value = member(object, key);
    const auto ID = value ? nonNegativeWholeNumber(*value) : std::nullopt;
    if (value && !ID) {
        const Place place{&parent, key, {}};
        wrongType(*value, place, "a non-negative whole number");
    }
    return ID;
}

bool RecordingReader::booleanMember(const json& object, std::string_view key, const Place& parent) {
    const json* value = member(object, key);
    if (value && !value->is_boolean()) {
        wrongType(*value, Place{&parent, key, {}}, "a boolean");
    }
    return value && value->is_boolean() && value->get<bool>();
}

template <typename Element>
std::vector<Element> RecordingReader::elements(const json& value, const Place& place,
                                               Element (RecordingReader::*read)(const json&,
                                                                                const Place&)) {
    std::vector<Element> elements;
    if (!value.is_array()) {
        wrongType(value, place, "an array");
        return elements;
    }
    elements.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        const Place elementPlace{&place, {}, i};
        if (isObject(value[i], elementPlace)) {
            elements.push_back((this->*read)(value[i], elementPlace));
        }
    }
    return elements;
}

OrbCSDeviceAccessory RecordingReader::accessory(const json& value, const Place& place) {
    return {textMember(value, "name", place, PrinterText::plain),
            booleanMember(value, "isInstalled", place)};
}

RecordingReader::OptionalValue RecordingReader::accessories(const json& value, const Place& place) {
    return elements(value, place, &RecordingReader::accessory);
}

RecordingReader::OptionalValue RecordingReader::pensConfiguration(const json& value,
                                                                  const Place& place) {
    OrbCSPensConfiguration configuration;
    if (!isObject(value, place)) {
        return configuration;
    }
    configuration.codeName = textMember(value, "codeName", place, PrinterText::pensCodeName);
    const json* attributes = member(value, "PPDAttributeValues");
    const Place attributesPlace{&place, "PPDAttributeValues", {}};
    if (!attributes || !isObject(*attributes, attributesPlace)) {
        return configuration;
    }
    for (const auto& [keyword, unused] : attributes->items()) {
        auto text = textMember(*attributes, keyword, attributesPlace, PrinterText::unquotedValue);
        if (text && isAccepted(PrinterText::plain, keyword, Place{&attributesPlace, keyword, {}})) {
            configuration.PPDAttributeValues.emplace(keyword, std::move(*text));
        }
    }
    return configuration;
}

RecordingReader::OptionalValue RecordingReader::linTable(const json& value, const Place& place) {
    OrbCSLinTable table;
    if (isObject(value, place)) {
        table.timestamp = numberMember(value, "timestamp", place);
    }
    return table;
}

RecordingReader::OptionalValue RecordingReader::resolution(const json& value, const Place& place) {
    if (value.is_number()) {
        return number(value);
    }
    if (!value.is_string()) {
        wrongType(value, place, "a number or a string");
        return std::nullopt;
    }
    const auto& text = value.get_ref<const std::string&>();
    return isAccepted(PrinterText::unquotedValue, text, place)
               ? OptionalValue(OrbCSNumberOrString(text))
               : std::nullopt;
}

OrbCSRemainingPagesEstimation RecordingReader::estimation(const json& value, const Place& place) {
    return {textMember(value, "pageTypeName", place, PrinterText::pageTypeName),
            numberMember(value, "minPageCount", place), numberMember(value, "maxPageCount", place),
            numberMember(value, "state", place)};
}

RecordingReader::OptionalValue RecordingReader::estimations(const json& value, const Place& place) {
    const std::size_t droppedBefore = countOfDroppedTexts_;
    OptionalValue list = elements(value, place, &RecordingReader::estimation);
    return countOfDroppedTexts_ == droppedBefore ? std::move(list) : std::nullopt;
}

std::shared_ptr<const OrbICCProfile> RecordingReader::profile(const json& object,
                                                              const Place& parent) {
    const json* value = member(object, "ICCProfile");
    const Place place{&parent, "ICCProfile", {}};
    if (!value || !isObject(*value, place)) {
        return nullptr;
    }
    const std::size_t droppedBefore = countOfDroppedTexts_;
    auto URL = URLMember(*value, "URL", place);
    auto qualifier = textMember(*value, "qualifierVer2", place, PrinterText::profileQualifier);
    const auto ID = profileIDMember(*value, "profileID", place);
    if (qualifier && qualifier->empty()) {
        qualifier.reset();
    }
    // Without a URL there is no file to name, and without a qualifier or an ID no name for it.
    if (countOfDroppedTexts_ != droppedBefore || !URL || (!qualifier && !ID)) {
        return nullptr;
    }
    return std::make_shared<const PlainICCProfile>(std::move(URL), std::move(qualifier), ID);
}

std::shared_ptr<const OrbCustomMediaType> RecordingReader::mediaType(const json& value,
                                                                     const Place& place) {
    const std::size_t droppedBefore = countOfDroppedTexts_;
    auto name = textMember(value, "name", place, PrinterText::mediaTypeName);
    auto mediaID = textMember(value, "mediaID", place, PrinterText::mediaID);
    auto parentMediaID = textMember(value, "parentMediaID", place, PrinterText::mediaID);
    const bool isRefused = countOfDroppedTexts_ != droppedBefore;
    auto itsProfile = profile(value, place);
    return isRefused ? nullptr
                     : std::make_shared<const PlainCustomMediaType>(
                           std::move(name), std::move(mediaID), std::move(parentMediaID),
                           std::move(itsProfile));
}

RecordingReader::OptionalValue RecordingReader::mediaTypes(const json& value, const Place& place) {
    auto types = elements(value, place, &RecordingReader::mediaType);
    std::erase(types, nullptr);
    return types;
}

ReportedDeviceStatus::Values RecordingReader::values(const json& recording) {
    using Read = OptionalValue (RecordingReader::*)(const json&, const Place&);
    static constexpr std::array<std::pair<std::string_view, Read>, 6> kReaders{{
        {kTkCSDeviceAccessoriesKey, &RecordingReader::accessories},
        {kTkCSInstalledPensConfigurationKey, &RecordingReader::pensConfiguration},
        {kTkCSLinTableKey, &RecordingReader::linTable},
        {kTkCSMaxSupportedResolutionKey, &RecordingReader::resolution},
        {kTkCSRemainingPagesEstimationsKey, &RecordingReader::estimations},
        {kTkCSCustomMediaTypesKey, &RecordingReader::mediaTypes},
    }};
    ReportedDeviceStatus::Values values;
    const Place root;
    if (!isObject(recording, root)) {
        return values;
    }
    for (const auto& [key, read] : kReaders) {
        const json* value = member(recording, key);
        auto statusValue = value ? (this->*read)(*value, Place{&root, key, {}}) : std::nullopt;
        if (statusValue) {
            values.emplace(key, std::move(*statusValue));
        }
    }
    return values;
}

std::optional<OrbCSToldEntries> RecordingReader::told(const json& recording) {
    const json* list = recording.is_object() ? member(recording, kRecordingToldMember) : nullptr;
    if (!list) {
        return std::nullopt;
    }
    const Place root;
    const Place place{&root, kRecordingToldMember, {}};
    OrbCSToldEntries entries;
    if (!list->is_array()) {
        wrongType(*list, place, "an array");
        return entries;
    }
    for (std::size_t i = 0; i < list->size(); ++i) {
        const json& entry = (*list)[i];
        if (entry.is_string()) {
            entries.insert(entry.get<std::string>());
        } else {
            wrongType(entry, Place{&place, {}, i}, "a string");
        }
    }
    return entries;
}

}  // namespace TkPPDUpdating
