#include "backends/recorded/RecordingFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "backends/schemes/PlainCustomMediaType.h"
#include "backends/schemes/PlainICCProfile.h"
#include "core_interface/TkCSKeys.h"
#include "text/CLocaleScope.h"

namespace TkPPDUpdating {

namespace {

using Place = RecordingReader::Place;
using OptionalValue = std::optional<OrbCSStatusValue>;
using nlohmann::json;
/// Keeps its members in the order in which they are added.
using Written = nlohmann::ordered_json;

// What values are made of.

Written written(std::uint64_t value) {
    return value;
}

Written written(std::string_view text) {
    return text;
}

/// Null for a number that is not finite.
Written written(const OrbCSNumberOrString& value) {
    if (value.isString()) {
        return value.stringValue();
    }
    const CLocaleScope locale;
    const Written number = Written::parse(value.stringValue(), nullptr, false);
    return number.is_discarded() ? Written() : number;
}

template <typename Value>
void add(Written& object, std::string_view key, const std::optional<Value>& value) {
    Written member = value ? written(*value) : Written();
    if (!member.is_null()) {
        object[std::string(key)] = std::move(member);
    }
}

template <typename Element>
std::vector<Element> elementsOf(RecordingReader& reader, const json& value, const Place& place,
                                Element (*read)(RecordingReader&, const json&, const Place&)) {
    std::vector<Element> elements;
    if (!reader.isArray(value, place)) {
        return elements;
    }
    elements.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        const Place elementPlace{&place, {}, i};
        if (reader.isObject(value[i], elementPlace)) {
            elements.push_back(read(reader, value[i], elementPlace));
        }
    }
    return elements;
}

/// The names of members, of which the others of an object are kept.
template <std::size_t count>
using Members = std::array<std::string_view, count>;

// Accessories.

OrbCSDeviceAccessory accessory(RecordingReader& reader, const json& value, const Place& place) {
    reader.noteOtherMembers(value, place, Members<2>{"name", "isInstalled"});
    return {reader.textMember(value, "name", place, PrinterText::plain),
            reader.booleanMember(value, "isInstalled", place)};
}

OptionalValue accessories(RecordingReader& reader, const json& value, const Place& place) {
    return elementsOf(reader, value, place, accessory);
}

Written written(const OrbCSDeviceAccessory& accessory) {
    Written object = Written::object();
    add(object, "name", accessory.name);
    object["isInstalled"] = accessory.isInstalled;
    return object;
}

// Pens.

OptionalValue pensConfiguration(RecordingReader& reader, const json& value, const Place& place) {
    OrbCSPensConfiguration configuration;
    if (!reader.isObject(value, place)) {
        return configuration;
    }
    reader.noteOtherMembers(value, place, Members<2>{"codeName", "PPDAttributeValues"});
    configuration.codeName = reader.textMember(value, "codeName", place, PrinterText::pensCodeName);
    const json* attributes = RecordingReader::member(value, "PPDAttributeValues");
    const Place attributesPlace{&place, "PPDAttributeValues", {}};
    if (!attributes || !reader.isObject(*attributes, attributesPlace)) {
        return configuration;
    }
    for (const auto& [keyword, unused] : attributes->items()) {
        auto text =
            reader.textMember(*attributes, keyword, attributesPlace, PrinterText::unquotedValue);
        if (text &&
            reader.isAccepted(PrinterText::plain, keyword, Place{&attributesPlace, keyword, {}})) {
            configuration.PPDAttributeValues.emplace(keyword, std::move(*text));
        }
    }
    return configuration;
}

Written written(const OrbCSPensConfiguration& configuration) {
    Written object = Written::object();
    add(object, "codeName", configuration.codeName);
    // Adding by name would look through all members that are there already.
    Written::object_t values;
    for (const auto& [keyword, value] : configuration.PPDAttributeValues) {
        values.emplace_back(keyword, value);
    }
    if (!values.empty()) {
        object["PPDAttributeValues"] = std::move(values);
    }
    return object;
}

// The calibration.

OptionalValue linTable(RecordingReader& reader, const json& value, const Place& place) {
    OrbCSLinTable table;
    if (reader.isObject(value, place)) {
        reader.noteOtherMembers(value, place, Members<1>{"timestamp"});
        table.timestamp = reader.numberMember(value, "timestamp", place);
    }
    return table;
}

Written written(const OrbCSLinTable& table) {
    Written object = Written::object();
    add(object, "timestamp", table.timestamp);
    return object;
}

// The resolution.

OptionalValue resolution(RecordingReader& reader, const json& value, const Place& place) {
    if (value.is_number()) {
        return RecordingReader::number(value);
    }
    if (!value.is_string()) {
        reader.wrongType(value, place, "a number or a string");
        return std::nullopt;
    }
    const auto& text = value.get_ref<const std::string&>();
    return reader.isAccepted(PrinterText::unquotedValue, text, place)
               ? OptionalValue(OrbCSNumberOrString(text))
               : std::nullopt;
}

// Pages left.

OrbCSRemainingPagesEstimation estimation(RecordingReader& reader, const json& value,
                                         const Place& place) {
    reader.noteOtherMembers(value, place,
                            Members<4>{"pageTypeName", "minPageCount", "maxPageCount", "state"});
    return {reader.textMember(value, "pageTypeName", place, PrinterText::pageTypeName),
            reader.numberMember(value, "minPageCount", place),
            reader.numberMember(value, "maxPageCount", place),
            reader.numberMember(value, "state", place)};
}

OptionalValue estimations(RecordingReader& reader, const json& value, const Place& place) {
    const std::size_t droppedBefore = reader.countOfDroppedTexts();
    OptionalValue list = elementsOf(reader, value, place, estimation);
    return reader.countOfDroppedTexts() == droppedBefore ? std::move(list) : std::nullopt;
}

Written written(const OrbCSRemainingPagesEstimation& estimation) {
    Written object = Written::object();
    add(object, "pageTypeName", estimation.pageTypeName);
    add(object, "minPageCount", estimation.minPageCount);
    add(object, "maxPageCount", estimation.maxPageCount);
    add(object, "state", estimation.state);
    return object;
}

// Custom media types.

std::shared_ptr<const OrbICCProfile> profile(RecordingReader& reader, const json& object,
                                             const Place& parent) {
    const json* value = RecordingReader::member(object, "ICCProfile");
    const Place place{&parent, "ICCProfile", {}};
    if (!value || !reader.isObject(*value, place)) {
        return nullptr;
    }
    reader.noteOtherMembers(*value, place, Members<3>{"URL", "qualifierVer2", "profileID"});
    const std::size_t droppedBefore = reader.countOfDroppedTexts();
    auto URL = reader.URLMember(*value, "URL", place);
    auto qualifier =
        reader.textMember(*value, "qualifierVer2", place, PrinterText::profileQualifier);
    const auto ID = reader.profileIDMember(*value, "profileID", place);
    if (qualifier && qualifier->empty()) {
        qualifier.reset();
    }
    // Without a URL there is no file to name, and without a qualifier or an ID no name for it.
    if (reader.countOfDroppedTexts() != droppedBefore || !URL || (!qualifier && !ID)) {
        return nullptr;
    }
    return std::make_shared<const PlainICCProfile>(std::move(URL), std::move(qualifier), ID);
}

std::shared_ptr<const OrbCustomMediaType> mediaType(RecordingReader& reader, const json& value,
                                                    const Place& place) {
    reader.noteOtherMembers(value, place,
                            Members<4>{"name", "mediaID", "parentMediaID", "ICCProfile"});
    const std::size_t droppedBefore = reader.countOfDroppedTexts();
    auto name = reader.textMember(value, "name", place, PrinterText::mediaTypeName);
    auto mediaID = reader.textMember(value, "mediaID", place, PrinterText::mediaID);
    auto parentMediaID = reader.textMember(value, "parentMediaID", place, PrinterText::mediaID);
    const bool isRefused = reader.countOfDroppedTexts() != droppedBefore;
    auto itsProfile = profile(reader, value, place);
    return isRefused ? nullptr
                     : std::make_shared<const PlainCustomMediaType>(
                           std::move(name), std::move(mediaID), std::move(parentMediaID),
                           std::move(itsProfile));
}

OptionalValue mediaTypes(RecordingReader& reader, const json& value, const Place& place) {
    auto types = elementsOf(reader, value, place, mediaType);
    std::erase(types, nullptr);
    return types;
}

Written written(const OrbICCProfile& profile) {
    Written object = Written::object();
    add(object, "URL", profile.URL());
    add(object, "qualifierVer2", profile.qualifierVer2());
    add(object, "profileID", profile.profileID());
    return object;
}

Written written(const std::shared_ptr<const OrbCustomMediaType>& mediaType) {
    if (!mediaType) {
        return nullptr;
    }
    Written object = Written::object();
    add(object, "name", mediaType->name());
    add(object, "mediaID", mediaType->mediaID());
    add(object, "parentMediaID", mediaType->parentMediaID());
    if (const auto profile = mediaType->ICCProfile()) {
        object["ICCProfile"] = written(*profile);
    }
    return object;
}

// What is installed.

OptionalValue installedOptions(RecordingReader& reader, const json& value, const Place& place) {
    OrbCSInstalledOptions options;
    if (!reader.isObject(value, place)) {
        return options;
    }
    for (const auto& [option, unused] : value.items()) {
        auto choice = reader.textMember(value, option, place, PrinterText::pensCodeName);
        if (choice &&
            reader.isAccepted(PrinterText::pensCodeName, option, Place{&place, option, {}})) {
            options.emplace(option, *std::move(choice));
        }
    }
    return options;
}

Written written(const OrbCSInstalledOptions& options) {
    Written::object_t choices;
    for (const auto& [option, choice] : options) {
        choices.emplace_back(option, choice);
    }
    return choices;
}

// Rows of the table.

template <typename Element>
Written written(const std::vector<Element>& elements) {
    Written array = Written::array();
    for (const Element& element : elements) {
        Written value = written(element);
        if (!value.is_null()) {
            array.push_back(std::move(value));
        }
    }
    return array;
}

template <typename Value>
Written writtenValue(const OrbCSDeviceStatus& status, std::string_view key) {
    const auto* value = status.statusValueForKey<Value>(key);
    return value ? written(*value) : Written();
}

}  // namespace

std::span<const RecordedKey> recordedKeys() {
    static constexpr auto kKeys = std::to_array<RecordedKey>({
        {kTkCSDeviceAccessoriesKey, accessories, writtenValue<OrbCSDeviceAccessories>},
        {kTkCSInstalledPensConfigurationKey, pensConfiguration,
         writtenValue<OrbCSPensConfiguration>},
        {kTkCSLinTableKey, linTable, writtenValue<OrbCSLinTable>},
        {kTkCSMaxSupportedResolutionKey, resolution, writtenValue<OrbCSNumberOrString>},
        {kTkCSRemainingPagesEstimationsKey, estimations,
         writtenValue<OrbCSRemainingPagesEstimations>},
        {kTkCSCustomMediaTypesKey, mediaTypes, writtenValue<OrbCustomMediaTypes>},
        {kTkCSInstalledOptionsKey, installedOptions, writtenValue<OrbCSInstalledOptions>},
    });
    return kKeys;
}

}  // namespace TkPPDUpdating
