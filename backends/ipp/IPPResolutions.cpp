#include "backends/ipp/IPPResolutions.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "backends/schemes/DotsPerInch.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

/// No printer is finer; a larger number is a mistake or worse.
constexpr std::int64_t kFinest = 100'000;

constexpr const char* kPrinter = "printer-resolution-supported";
constexpr const char* kRaster = "pwg-raster-document-resolution-supported";
constexpr const char* kURF = "urf-supported";

/// What the printer named, in dots per inch: across and along the feed.
using Resolutions = std::set<std::pair<std::int64_t, std::int64_t>>;

/// Nothing when the number cannot be a resolution.
std::optional<std::int64_t> dotsPerInch(std::int64_t dots, ipp_res_t units) {
    if (dots < 1 || dots > kFinest || (units != IPP_RES_PER_INCH && units != IPP_RES_PER_CM)) {
        return std::nullopt;
    }
    return units == IPP_RES_PER_INCH ? dots : dotsPerInchFromCentimetre(dots);
}

void readResolutions(IPPAnswer& answer, const char* name, Resolutions& resolutions) {
    ipp_attribute_t* attribute = answer.attribute(name, {IPP_TAG_RESOLUTION});
    for (int index = 0; attribute && index < ippGetCount(attribute); ++index) {
        int feed = 0;
        ipp_res_t units = IPP_RES_PER_INCH;
        const int cross = ippGetResolution(attribute, index, &feed, &units);
        const auto across = dotsPerInch(cross, units);
        const auto along = dotsPerInch(feed, units);
        if (across && along) {
            resolutions.emplace(*across, *along);
        } else {
            answer.dropped().addUnlessTold(name, static_cast<std::size_t>(index) + 1,
                                           "is no resolution");
        }
    }
}

/// "RS300-600": resolutions in dots per inch, joined with hyphens (CUPS extension).
void addURFResolutions(IPPAnswer& answer, std::string_view list, std::size_t valueFromOne,
                       Resolutions& resolutions) {
    while (!list.empty()) {
        const std::string_view part = list.substr(0, list.find('-'));
        list.remove_prefix(std::min(list.size(), part.size() + 1));
        std::int64_t number = 0;
        const auto read = std::from_chars(part.data(), part.data() + part.size(), number);
        const bool isNumber = read.ec == std::errc() && read.ptr == part.data() + part.size();
        const auto resolution = isNumber ? dotsPerInch(number, IPP_RES_PER_INCH) : std::nullopt;
        if (resolution) {
            resolutions.emplace(*resolution, *resolution);
        } else {
            answer.dropped().add(kURF, valueFromOne, "holds what is no resolution");
        }
    }
}

void readURFResolutions(IPPAnswer& answer, Resolutions& resolutions) {
    const auto capabilities = answer.keywordsOrNames(kURF);
    for (std::size_t index = 0; capabilities && index < capabilities->size(); ++index) {
        const auto& capability = (*capabilities)[index];
        if (capability && capability->text.starts_with("RS")) {
            addURFResolutions(answer, std::string_view(capability->text).substr(2), index + 1,
                              resolutions);
        }
    }
}

}  // namespace

void readHighestResolution(IPPAnswer& answer, ReportedDeviceStatus::Values& values,
                           OrbCSToldEntries& told) {
    Resolutions resolutions;
    readResolutions(answer, kPrinter, resolutions);
    readResolutions(answer, kRaster, resolutions);
    readURFResolutions(answer, resolutions);
    if (resolutions.size() < 2) {
        return;
    }
    std::int64_t highest = 0;
    for (const auto& [across, along] : resolutions) {
        highest = std::max({highest, across, along});
    }
    values.insert_or_assign(std::string(kTkCSMaxSupportedResolutionKey),
                            OrbCSNumberOrString(highest));
    if (!answer.dropped().areFrom({kPrinter, kRaster, kURF})) {
        told.emplace(kTkCSMaxSupportedResolutionKey);
    }
}

}  // namespace TkPPDUpdating
