#include "backends/recorded/RecordingReader.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

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

const json* RecordingReader::member(const json& object, std::string_view key) {
    const auto found = object.find(key);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

OrbCSNumberOrString RecordingReader::number(const json& value) {
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

bool RecordingReader::isObject(const json& value, const Place& place) {
    if (!value.is_object()) {
        wrongType(value, place, "an object");
    }
    return value.is_object();
}

bool RecordingReader::isArray(const json& value, const Place& place) {
    if (!value.is_array()) {
        wrongType(value, place, "an array");
    }
    return value.is_array();
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

void RecordingReader::noteOtherMembers(const json& object, const Place& place,
                                       std::span<const std::string_view> members) {
    for (const auto& [name, unused] : object.items()) {
        const bool isKnown = std::ranges::find(members, name) != members.end();
        if (!isKnown && ignoredMembers_.size() < kMostReasons) {
            ignoredMembers_.push_back(
                {Place{&place, name, {}}.text(), name, {members.begin(), members.end()}});
        }
    }
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

}  // namespace TkPPDUpdating
