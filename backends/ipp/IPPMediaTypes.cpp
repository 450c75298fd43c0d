#include "backends/ipp/IPPMediaTypes.h"

#include <array>
#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/ipp/IPPStandardMediaTypes.h"
#include "backends/schemes/PlainCustomMediaType.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDTextSafety.h"

namespace TkPPDUpdating {

namespace {

constexpr std::size_t kMostMediaTypes = 256;
/// The ID stands in one PPD line with the choice's name and the profile's qualifier.
constexpr std::size_t kLongestMediaID = 100;

/// A name for any text, the same on every machine: 64 bits of FNV-1a.
std::string hashedMediaID(std::string_view type) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char byte : type) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3U;
    }
    std::array<char, 20> text{};
    std::snprintf(text.data(), text.size(), "t-%016" PRIx64, hash);
    return text.data();
}

std::string mediaIDOfType(const std::string& type) {
    const bool canBeID =
        type.size() <= kLongestMediaID && !reasonPrinterTextIsRefused(PrinterText::mediaID, type);
    return canBeID ? type : hashedMediaID(type);
}

std::string placeOf(const std::string& attribute, std::size_t index) {
    return attribute + ", value " + std::to_string(index + 1);
}

/// Gathers media types, each once.
class CustomMediaTypes {
  public:
    explicit CustomMediaTypes(IPPAnswer& answer) : answer_(answer) {}

    /// One of "media-col-database".
    void addCollection(ipp_t* collection, const std::string& place) {
        const auto type = answer_.member(collection, "media-type", PrinterText::plain, place);
        isAnyTypeNamed_ = isAnyTypeNamed_ || type.text;
        if (!type.text || !isNewCustomType(*type.text, type.isName)) {
            return;
        }
        auto info = answer_.member(collection, "media-info", PrinterText::mediaTypeName, place);
        auto key = answer_.member(collection, "media-key", PrinterText::mediaID, place);
        if (!info.isRefused && !key.isRefused) {
            add(*type.text, info.text, std::move(key.text), place);
        }
    }

    /// One of "media-type-supported".
    void addType(const IPPAnswer::Text& type, const std::string& place) {
        isAnyTypeNamed_ = true;
        if (isNewCustomType(type.text, type.isName)) {
            add(type.text, std::nullopt, std::nullopt, place);
        }
    }

    /// Whether the printer named any media type, a registered one included.
    bool isAnyTypeNamed() const { return isAnyTypeNamed_; }

    OrbCustomMediaTypes take() { return std::move(types_); }

  private:
    bool isNewCustomType(const std::string& type, bool isName) {
        const bool isCustom = isName ? !isStandardMediaType(type) : type.starts_with("custom-");
        return isCustom && seen_.insert(type).second;
    }

    void add(const std::string& type, const std::optional<std::string>& info,
             std::optional<std::string> key, const std::string& place) {
        if (types_.size() == kMostMediaTypes) {
            answer_.dropped().add(place, "there are more than " + std::to_string(kMostMediaTypes) +
                                             " custom media types");
            return;
        }
        // A "media-info" was looked at when it was read; the type has to do for the name otherwise.
        const auto reason =
            info ? std::nullopt : reasonPrinterTextIsRefused(PrinterText::mediaTypeName, type);
        if (reason) {
            answer_.dropped().add(place, "the type " + *reason);
            return;
        }
        std::string mediaID = key ? std::move(*key) : mediaIDOfType(type);
        if (mediaID.size() > kLongestMediaID) {
            answer_.dropped().add(
                place, "the media ID is longer than " + std::to_string(kLongestMediaID) + " bytes");
            return;
        }
        types_.push_back(std::make_shared<const PlainCustomMediaType>(
            info.value_or(type), std::move(mediaID), std::nullopt, nullptr));
    }

    IPPAnswer& answer_;
    std::set<std::string> seen_;
    OrbCustomMediaTypes types_;
    bool isAnyTypeNamed_ = false;
};

}  // namespace

void readCustomMediaTypes(IPPAnswer& answer, ReportedDeviceStatus::Values& values,
                          OrbCSToldEntries& told) {
    constexpr const char* kDatabase = "media-col-database";
    constexpr const char* kTypes = "media-type-supported";
    CustomMediaTypes types(answer);
    const auto collections = answer.collections(kDatabase);
    for (std::size_t index = 0; index < collections.size(); ++index) {
        types.addCollection(collections[index], placeOf(kDatabase, index));
    }
    const auto supported = answer.keywordsOrNames(kTypes);
    for (std::size_t index = 0; supported && index < supported->size(); ++index) {
        if (const auto& type = (*supported)[index]) {
            types.addType(*type, placeOf(kTypes, index));
        }
    }
    if (!collections.empty() || supported) {
        values.insert_or_assign(std::string(kTkCSCustomMediaTypesKey), types.take());
    }
    if (types.isAnyTypeNamed()) {
        told.insert(answer.dropped().areFrom({kDatabase, kTypes})
                        ? OrbCSPartialStatus::entryForPart(kTkCSCustomMediaTypesKey,
                                                           kTkCSReportedMediaTypesPart)
                        : std::string(kTkCSCustomMediaTypesKey));
    }
}

}  // namespace TkPPDUpdating
