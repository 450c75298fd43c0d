#include "sync/StatusValueText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

#include "core_interface/OrbCSStatusValue.h"
#include "core_interface/TkCSKeys.h"
#include "text/UTF8.h"

namespace TkPPDUpdating {

namespace {

/// What a key, or a part of what stands under it, is for people. A part without words of its own is
/// a PPD keyword and tells itself.
struct EntryWords {
    std::string_view key;
    std::string_view part;
    std::string_view words;
};

constexpr auto kEntryWords = std::to_array<EntryWords>({
    {kTkCSDeviceAccessoriesKey, kTkCSDeviceAccessoryDuplexer, "duplexer"},
    {kTkCSDeviceAccessoriesKey, kTkCSDeviceAccessoryTray2, "lower tray"},
    {kTkCSInstalledPensConfigurationKey, kTkCSPensCodeNamePart, "pens configuration"},
    {kTkCSLinTableKey, "", "calibration"},
    {kTkCSMaxSupportedResolutionKey, "", "highest resolution"},
    {kTkCSRemainingPagesEstimationsKey, "", "pages left"},
    {kTkCSCustomMediaTypesKey, "", "custom media types"},
    {kTkCSInstalledOptionsKey, "", "installed options"},
});

constexpr std::size_t kMostBytes = 500;
constexpr std::string_view kEllipsis = "...";
constexpr std::string_view kNotReported = "not reported";

std::string orNotReported(const std::optional<OrbCSNumberOrString>& scalar) {
    return scalar ? scalar->stringValue() : std::string(kNotReported);
}

/// Joins elements until there is more than anybody is shown.
class List {
  public:
    bool isFull() const { return text_.size() > kMostBytes; }

    void add(const std::string& element) { text_ += text_.empty() ? element : ", " + element; }

    std::string text() const { return text_.empty() ? "none" : text_; }

  private:
    std::string text_;
};

template <typename Elements, typename Text>
std::string listOf(const Elements& elements, const Text& textOf) {
    List list;
    for (const auto& element : elements) {
        if (list.isFull()) {
            break;
        }
        list.add(textOf(element));
    }
    return list.text();
}

/// The text of a value, of which only one part is wanted where `part_` is not empty.
class ValueText {
  public:
    explicit ValueText(std::string_view part) : part_(part) {}

    std::string operator()(const OrbCSDeviceAccessories& accessories) const {
        const auto state = [](const OrbCSDeviceAccessory& accessory) {
            return std::string(accessory.isInstalled ? "installed" : "not installed");
        };
        if (part_.empty()) {
            return listOf(accessories, [&state](const OrbCSDeviceAccessory& accessory) {
                return accessory.name.value_or("") + " " + state(accessory);
            });
        }
        const auto named = std::find_if(
            accessories.begin(), accessories.end(),
            [this](const OrbCSDeviceAccessory& accessory) { return accessory.name == part_; });
        return named == accessories.end() ? std::string(kNotReported) : state(*named);
    }

    std::string operator()(const OrbCSPensConfiguration& pens) const {
        if (part_.empty()) {
            return listOf(pens.PPDAttributeValues, [](const auto& keywordAndValue) {
                return keywordAndValue.first + " " + keywordAndValue.second;
            });
        }
        if (part_ == kTkCSPensCodeNamePart) {
            return pens.codeName.value_or(std::string(kNotReported));
        }
        const auto value = pens.PPDAttributeValues.find(part_);
        return value == pens.PPDAttributeValues.end() ? std::string(kNotReported) : value->second;
    }

    std::string operator()(const OrbCSLinTable& table) const {
        return "calibrated at " + orNotReported(table.timestamp);
    }

    std::string operator()(const OrbCSNumberOrString& scalar) const { return scalar.stringValue(); }

    std::string operator()(const OrbCSRemainingPagesEstimations& estimations) const {
        return listOf(estimations, [](const OrbCSRemainingPagesEstimation& estimation) {
            return estimation.pageTypeName.value_or(std::string(kNotReported)) + " " +
                   orNotReported(estimation.minPageCount) + " to " +
                   orNotReported(estimation.maxPageCount) + ", state " +
                   orNotReported(estimation.state);
        });
    }

    std::string operator()(const OrbCustomMediaTypes& types) const {
        return listOf(types, [](const std::shared_ptr<const OrbCustomMediaType>& type) {
            return type ? std::string(type->name().value_or(kNotReported)) + " (" +
                              std::string(type->mediaID().value_or(kNotReported)) + ")"
                        : std::string(kNotReported);
        });
    }

    std::string operator()(const OrbCSInstalledOptions& options) const {
        if (part_.empty()) {
            return listOf(options, [](const auto& optionAndChoice) {
                return optionAndChoice.first + " " + optionAndChoice.second;
            });
        }
        const auto choice = options.find(part_);
        return choice == options.end() ? std::string(kNotReported) : choice->second;
    }

  private:
    std::string_view part_;
};

std::string shortened(std::string text) {
    if (text.size() > kMostBytes) {
        std::size_t end = kMostBytes - kEllipsis.size();
        // Not within a character of UTF-8.
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
            --end;
        }
        text.resize(end);
        text += kEllipsis;
    }
    return text;
}

struct KeyAndPart {
    std::string_view key;
    std::string_view part;
};

KeyAndPart keyAndPartOf(std::string_view entry) {
    const std::string_view key = entry.substr(0, entry.find('.'));
    return {key, entry.substr(std::min(key.size() + 1, entry.size()))};
}

}  // namespace

std::string_view statusEntryWords(std::string_view entry) {
    const auto [key, part] = keyAndPartOf(entry);
    for (const EntryWords& each : kEntryWords) {
        if (each.key == key && each.part == part) {
            return each.words;
        }
    }
    return part.empty() ? entry : part;
}

std::string statusValueText(const OrbCSDeviceStatus& status, std::string_view entry) {
    const auto [key, part] = keyAndPartOf(entry);
    const OrbCSStatusValue* const value = status.statusValueForKey_error(key, nullptr);
    return value ? shortened(std::visit(ValueText(part), *value)) : std::string(kNotReported);
}

}  // namespace TkPPDUpdating
