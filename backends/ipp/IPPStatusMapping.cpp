#include "backends/ipp/IPPStatusMapping.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "backends/ipp/IPPAccessories.h"
#include "backends/ipp/IPPMediaTypes.h"
#include "backends/ipp/IPPResolutions.h"
#include "backends/ipp/IPPSupplies.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

using Attribute = IPPStatusMapping::Attribute;

constexpr std::string_view kName = "this name is left out";
constexpr std::string_view kSupply = "this supply is left out";
constexpr std::string_view kResolution = "this resolution is left out";
constexpr std::string_view kMediaType = "this media type is left out";

constexpr std::array kDuplexerAttributes = {
    Attribute{"sides-supported", "RFC 8011", "this value is left out"}};
constexpr std::array kLowerTrayAttributes = {
    Attribute{"media-source-supported", "PWG 5100.7", "this paper source is left out"},
    Attribute{"printer-input-tray", "PWG 5100.13", "this tray description is left out"}};
constexpr std::array kPensAttributes = {
    Attribute{"printer-supply", "PWG 5100.13", kSupply},
    Attribute{"printer-supply-description", "PWG 5100.13", kName},
    Attribute{"marker-types", "CUPS extension", kSupply},
    Attribute{"marker-names", "CUPS extension", kName},
    Attribute{"marker-colors", "CUPS extension", "this colour is left out"},
    Attribute{"marker-levels", "CUPS extension", "this level is not known"}};
constexpr std::array kResolutionAttributes = {
    Attribute{"printer-resolution-supported", "RFC 8011", kResolution},
    Attribute{"pwg-raster-document-resolution-supported", "PWG 5102.4", kResolution},
    Attribute{"urf-supported", "CUPS extension", kResolution}};
constexpr std::array kMediaTypeAttributes = {
    Attribute{"media-col-database", "PWG 5100.7", kMediaType},
    Attribute{"media-type-supported", "PWG 5100.7", kMediaType}};

constexpr std::array kRows = {
    IPPStatusMapping::Row{kTkCSDeviceAccessoriesKey, kTkCSDeviceAccessoryDuplexer,
                          kDuplexerAttributes, readDuplexer},
    IPPStatusMapping::Row{kTkCSDeviceAccessoriesKey, kTkCSDeviceAccessoryTray2,
                          kLowerTrayAttributes, readLowerTray},
    IPPStatusMapping::Row{kTkCSInstalledPensConfigurationKey, "", kPensAttributes, readPens},
    IPPStatusMapping::Row{kTkCSMaxSupportedResolutionKey, "", kResolutionAttributes,
                          readHighestResolution},
    IPPStatusMapping::Row{kTkCSCustomMediaTypesKey, "", kMediaTypeAttributes,
                          readCustomMediaTypes}};

constexpr const char* kMakeAndModel = "printer-make-and-model";
constexpr const char* kDeviceID = "printer-device-id";
constexpr std::array kIdentityAttributes = {kMakeAndModel, kDeviceID};

/// Both accessories that there are rows for are all of them.
void nameAccessoriesAsOne(OrbCSToldEntries& told) {
    OrbCSToldEntries parts;
    for (const std::string_view name : {kTkCSDeviceAccessoryDuplexer, kTkCSDeviceAccessoryTray2}) {
        parts.insert(OrbCSPartialStatus::entryForPart(kTkCSDeviceAccessoriesKey, name));
    }
    if (std::includes(told.begin(), told.end(), parts.begin(), parts.end())) {
        for (const std::string& part : parts) {
            told.erase(part);
        }
        told.emplace(kTkCSDeviceAccessoriesKey);
    }
}

std::string entryOf(const IPPStatusMapping::Row& row) {
    return row.part.empty() ? std::string(row.statusKey)
                            : OrbCSPartialStatus::entryForPart(row.statusKey, row.part);
}

std::vector<OrbCSStatusSource> sourcesIn(IPPAnswer& answer) {
    std::vector<OrbCSStatusSource> sources;
    for (const IPPStatusMapping::Row& row : kRows) {
        for (const Attribute& attribute : row.attributes) {
            auto value = answer.shownValue(attribute.name, IPPStatusMapping::kLongestSource);
            if (value) {
                sources.push_back({entryOf(row), attribute.name, *std::move(value)});
            }
        }
    }
    return sources;
}

OrbCSPrinterIdentity identityIn(IPPAnswer& answer) {
    OrbCSPrinterIdentity identity;
    const auto addFirst = [&answer](const char* name, std::vector<std::string>& texts) {
        const auto values = answer.uncheckedTexts(name);
        if (!values.empty() && values.front()) {
            texts.push_back(*values.front());
        }
    };
    addFirst(kMakeAndModel, identity.models);
    addFirst(kDeviceID, identity.deviceIDs);
    return identity;
}

}  // namespace

std::span<const IPPStatusMapping::Row> IPPStatusMapping::rows() {
    return kRows;
}

std::span<const char* const> IPPStatusMapping::identityAttributes() {
    return kIdentityAttributes;
}

std::vector<const char*> IPPStatusMapping::requestedAttributes() {
    std::vector<const char*> names;
    for (const Row& row : kRows) {
        for (const Attribute& attribute : row.attributes) {
            names.push_back(attribute.name);
        }
    }
    return names;
}

std::string_view IPPStatusMapping::meaningOfDrop(std::string_view attribute) {
    for (const Row& row : kRows) {
        for (const Attribute& each : row.attributes) {
            if (each.name == attribute) {
                return each.meaningOfDrop;
            }
        }
    }
    return {};
}

std::shared_ptr<const ReportedDeviceStatus> IPPStatusMapping::statusForAnswer(IPPAnswer answer) {
    ReportedDeviceStatus::Values values;
    OrbCSToldEntries told;
    for (const Row& row : kRows) {
        row.read(answer, values, told);
    }
    nameAccessoriesAsOne(told);
    auto identity = identityIn(answer);
    return std::make_shared<const ReportedDeviceStatus>(
        std::move(values), answer.dropped().takeReasons(), std::move(told), sourcesIn(answer),
        std::move(identity));
}

}  // namespace TkPPDUpdating
