#include "backends/cups/IPPResolutions.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

/// No printer is finer; a larger number is a mistake or worse.
constexpr std::int64_t kFinest = 100'000;

/// Nothing when the number cannot be a resolution.
std::optional<std::int64_t> dotsPerInch(std::int64_t finer, ipp_res_t units) {
    if (finer < 1 || finer > kFinest || (units != IPP_RES_PER_INCH && units != IPP_RES_PER_CM)) {
        return std::nullopt;
    }
    // An inch is 2.54 cm; adding half makes it the nearest.
    return units == IPP_RES_PER_INCH ? finer : (finer * 254 + 50) / 100;
}

void keepHigher(std::optional<std::int64_t>& highest, std::optional<std::int64_t> other) {
    if (other && (!highest || *other > *highest)) {
        highest = other;
    }
}

void readResolutions(IPPAnswer& answer, const char* name, std::optional<std::int64_t>& highest) {
    ipp_attribute_t* attribute = answer.attribute(name, {IPP_TAG_RESOLUTION});
    for (int index = 0; attribute && index < ippGetCount(attribute); ++index) {
        int feed = 0;
        ipp_res_t units = IPP_RES_PER_INCH;
        const int cross = ippGetResolution(attribute, index, &feed, &units);
        const auto resolution =
            cross > 0 && feed > 0 ? dotsPerInch(std::max(cross, feed), units) : std::nullopt;
        if (!resolution) {
            answer.dropped().addUnlessTold(name, static_cast<std::size_t>(index) + 1,
                                           "is no resolution");
        }
        keepHigher(highest, resolution);
    }
}

/// "RS300-600": resolutions in dots per inch, joined with hyphens (CUPS extension).
void readURFResolutions(IPPAnswer& answer, std::optional<std::int64_t>& highest) {
    const auto capabilities = answer.keywordsOrNames("urf-supported");
    if (!capabilities) {
        return;
    }
    for (const IPPAnswer::Text& capability : *capabilities) {
        std::string_view list = capability.text;
        if (!list.starts_with("RS")) {
            continue;
        }
        list.remove_prefix(2);
        while (!list.empty()) {
            const std::string_view part = list.substr(0, list.find('-'));
            list.remove_prefix(std::min(list.size(), part.size() + 1));
            std::int64_t number = 0;
            const auto read = std::from_chars(part.data(), part.data() + part.size(), number);
            const bool isNumber = read.ec == std::errc() && read.ptr == part.data() + part.size();
            const auto resolution = isNumber ? dotsPerInch(number, IPP_RES_PER_INCH) : std::nullopt;
            if (!resolution) {
                answer.dropped().add("urf-supported", capability.valueFromOne,
                                     "holds what is no resolution");
            }
            keepHigher(highest, resolution);
        }
    }
}

}  // namespace

void readHighestResolution(IPPAnswer& answer, IPPDeviceStatus::Values& values,
                           OrbCSToldEntries& told) {
    std::optional<std::int64_t> highest;
    readResolutions(answer, "printer-resolution-supported", highest);
    readResolutions(answer, "pwg-raster-document-resolution-supported", highest);
    readURFResolutions(answer, highest);
    if (highest) {
        values.insert_or_assign(std::string(kTkCSMaxSupportedResolutionKey),
                                OrbCSNumberOrString(*highest));
        if (!answer.dropped().areFrom({"printer-resolution-supported",
                                       "pwg-raster-document-resolution-supported",
                                       "urf-supported"})) {
            told.emplace(kTkCSMaxSupportedResolutionKey);
        }
    }
}

}  // namespace TkPPDUpdating
