#include "backends/recorded/RecordingWriter.h"

#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/recorded/RecordingFormat.h"
#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

/// Keeps its members in the order in which they are added.
using json = nlohmann::ordered_json;

json written(bool value) {
    return value;
}

json written(std::uint64_t value) {
    return value;
}

json written(std::string_view text) {
    return text;
}

/// Null for a number that is not finite.
json written(const OrbCSNumberOrString& value) {
    if (value.isString()) {
        return value.stringValue();
    }
    const json number = json::parse(value.stringValue(), nullptr, false);
    return number.is_discarded() ? json() : number;
}

void add(json& object, std::string_view key, json value) {
    if (!value.is_null()) {
        object[std::string(key)] = std::move(value);
    }
}

template <typename Value>
void add(json& object, std::string_view key, const std::optional<Value>& value) {
    if (value) {
        add(object, key, written(*value));
    }
}

json written(const OrbCSDeviceAccessory& accessory) {
    json object = json::object();
    add(object, "name", accessory.name);
    add(object, "isInstalled", written(accessory.isInstalled));
    return object;
}

json written(const OrbCSPensConfiguration& configuration) {
    json object = json::object();
    add(object, "codeName", configuration.codeName);
    // Adding by name would look through all members that are there already.
    json::object_t values;
    for (const auto& [keyword, value] : configuration.PPDAttributeValues) {
        values.emplace_back(keyword, value);
    }
    if (!values.empty()) {
        object["PPDAttributeValues"] = std::move(values);
    }
    return object;
}

json written(const OrbCSLinTable& table) {
    json object = json::object();
    add(object, "timestamp", table.timestamp);
    return object;
}

json written(const OrbCSRemainingPagesEstimation& estimation) {
    json object = json::object();
    add(object, "pageTypeName", estimation.pageTypeName);
    add(object, "minPageCount", estimation.minPageCount);
    add(object, "maxPageCount", estimation.maxPageCount);
    add(object, "state", estimation.state);
    return object;
}

json written(const OrbICCProfile& profile) {
    json object = json::object();
    add(object, "URL", profile.URL());
    add(object, "qualifierVer2", profile.qualifierVer2());
    add(object, "profileID", profile.profileID());
    return object;
}

json written(const std::shared_ptr<const OrbCustomMediaType>& mediaType) {
    if (!mediaType) {
        return nullptr;
    }
    json object = json::object();
    add(object, "name", mediaType->name());
    add(object, "mediaID", mediaType->mediaID());
    add(object, "parentMediaID", mediaType->parentMediaID());
    if (const auto profile = mediaType->ICCProfile()) {
        add(object, "ICCProfile", written(*profile));
    }
    return object;
}

template <typename Element>
json written(const std::vector<Element>& elements) {
    json array = json::array();
    for (const Element& element : elements) {
        json value = written(element);
        if (!value.is_null()) {
            array.push_back(std::move(value));
        }
    }
    return array;
}

template <typename Value>
void addValue(json& object, const OrbCSDeviceStatus& status, std::string_view key) {
    if (const auto* value = status.statusValueForKey<Value>(key)) {
        add(object, key, written(*value));
    }
}

}  // namespace

std::string recordingOfStatus(const OrbCSDeviceStatus& status) {
    json recording = json::object();
    addValue<OrbCSDeviceAccessories>(recording, status, kTkCSDeviceAccessoriesKey);
    addValue<OrbCSPensConfiguration>(recording, status, kTkCSInstalledPensConfigurationKey);
    addValue<OrbCSLinTable>(recording, status, kTkCSLinTableKey);
    addValue<OrbCSNumberOrString>(recording, status, kTkCSMaxSupportedResolutionKey);
    addValue<OrbCSRemainingPagesEstimations>(recording, status, kTkCSRemainingPagesEstimationsKey);
    addValue<OrbCustomMediaTypes>(recording, status, kTkCSCustomMediaTypesKey);
    if (const auto told = OrbCSPartialStatus::toldEntriesOf(status)) {
        recording[std::string(kRecordingToldMember)] = *told;
    }
    // A text that is not UTF-8 must not end in an exception.
    return recording.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

}  // namespace TkPPDUpdating
