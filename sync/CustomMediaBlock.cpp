#include "sync/CustomMediaBlock.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <memory>
#include <set>
#include <utility>

#include "backends/schemes/PlainCustomMediaType.h"
#include "backends/schemes/PlainICCProfile.h"
#include "ppd/OrbPPDProcessor.h"
#include "ppd/PPDTextSafety.h"
#include "ppd/StringsFileFormat.h"
#include "text/FileURL.h"
#include "text/UnicodeWhiteSpace.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kNumberedChoice = "custom";

const PPDModelAttribute* lastAttribute(const PPDModelFile& PPD, std::string_view keyword,
                                       const std::string& spec) {
    const auto attributes = PPD.attributesForName_spec(keyword, spec);
    return attributes.empty() ? nullptr : static_cast<const PPDModelAttribute*>(attributes.back());
}

std::string valueOf(const PPDModelAttribute* attribute) {
    return std::string(attribute ? attribute->value().value_or("") : "");
}

/// A name that is not ASCII stands in the line of its translation alone.
std::string nameOfChoice(const PPDModelFile& PPD, const std::string& choice) {
    for (const std::string_view keyword : {"en.MediaType", "MediaType"}) {
        const auto* const attribute = lastAttribute(PPD, keyword, choice);
        const auto text = attribute ? attribute->text() : std::nullopt;
        if (text) {
            return std::string(*text);
        }
    }
    return {};
}

CustomMediaEntry entryOfChoice(const PPDModelFile& PPD, std::string choice) {
    CustomMediaEntry entry;
    entry.identity.name = nameOfChoice(PPD, choice);
    const auto properties = propertyListFromStringsFileFormat(
        valueOf(lastAttribute(PPD, "ZrChoiceProperties", "MediaType." + choice)));
    const auto property = [&properties](std::string_view key) {
        const auto found = properties ? properties->find(key) : StringsDictionary::const_iterator();
        return properties && found != properties->end() ? found->second : std::string();
    };
    entry.identity.mediaID = property("MediaID");
    entry.parentMediaID = property("ParentMediaID");
    entry.profileQualifier = property("ZrICCProfileId2");
    if (!entry.profileQualifier.empty()) {
        entry.profilePath =
            valueOf(lastAttribute(PPD, "cupsICCProfile", ".." + entry.profileQualifier));
    }
    entry.choice = std::move(choice);
    return entry;
}

MediaTypeIdentity identityOf(const OrbCustomMediaType& type) {
    return {std::string(type.mediaID().value_or("")),
            std::string(OrbPPDProcessor::PPDSavvyNameFromString(type.name().value_or("")))};
}

template <typename Types, typename Identity>
std::vector<MediaTypeIdentity> identitiesOf(const Types& types, const Identity& identity) {
    std::vector<MediaTypeIdentity> identities;
    std::transform(types.begin(), types.end(), std::back_inserter(identities), identity);
    return identities;
}

std::vector<std::optional<std::size_t>> placesInReported(const std::vector<CustomMediaEntry>& block,
                                                         const OrbCustomMediaTypes& reported) {
    return sameMediaTypes(
        identitiesOf(block, [](const CustomMediaEntry& entry) { return entry.identity; }),
        identitiesOf(reported, [](const auto& type) { return identityOf(*type); }));
}

/// The type of an entry; null when one of its texts would be refused today.
std::shared_ptr<const OrbCustomMediaType> typeOfEntry(const CustomMediaEntry& entry) {
    const bool isSafe =
        !reasonPrinterTextIsRefused(PrinterText::mediaTypeName, entry.identity.name) &&
        !reasonPrinterTextIsRefused(PrinterText::mediaID, entry.identity.mediaID) &&
        !reasonPrinterTextIsRefused(PrinterText::mediaID, entry.parentMediaID) &&
        !reasonPrinterTextIsRefused(PrinterText::profileQualifier, entry.profileQualifier) &&
        !reasonPrinterTextIsRefused(PrinterText::profilePath, entry.profilePath);
    if (!isSafe || entry.identity.mediaID.empty()) {
        return nullptr;
    }
    std::shared_ptr<const OrbICCProfile> profile;
    if (!entry.profilePath.empty()) {
        profile = std::make_shared<const PlainICCProfile>(
            fileURLFromPath(absolutePath(entry.profilePath)), entry.profileQualifier, std::nullopt);
    }
    const auto parent =
        entry.parentMediaID.empty() ? std::nullopt : std::optional(entry.parentMediaID);
    return std::make_shared<const PlainCustomMediaType>(entry.identity.name, entry.identity.mediaID,
                                                        parent, std::move(profile));
}

/// Pairs those of both sides that have the same key, in their order, and are not paired yet.
class Pairing {
  public:
    Pairing(std::span<const MediaTypeIdentity> earlier, std::span<const MediaTypeIdentity> later)
        : earlier_(earlier), later_(later), places_(earlier.size()), isTaken_(later.size()) {}

    void pairBy(std::string MediaTypeIdentity::*key) {
        std::map<std::string_view, std::vector<std::size_t>> free;
        for (std::size_t i = later_.size(); i-- > 0;) {
            if (!isTaken_[i]) {
                free[later_[i].*key].push_back(i);
            }
        }
        for (std::size_t i = 0; i < earlier_.size(); ++i) {
            const auto found = free.find(earlier_[i].*key);
            if (places_[i] || (earlier_[i].*key).empty() || found == free.end() ||
                found->second.empty()) {
                continue;
            }
            places_[i] = found->second.back();
            isTaken_[found->second.back()] = true;
            found->second.pop_back();
        }
    }

    std::vector<std::optional<std::size_t>> takePlaces() { return std::move(places_); }

  private:
    std::span<const MediaTypeIdentity> earlier_;
    std::span<const MediaTypeIdentity> later_;
    std::vector<std::optional<std::size_t>> places_;
    std::vector<bool> isTaken_;
};

}  // namespace

std::size_t CustomMediaEntry::number() const {
    const std::string_view text = choice;
    if (!text.starts_with(kNumberedChoice)) {
        return 0;
    }
    const std::string_view digits = text.substr(kNumberedChoice.size());
    std::size_t number = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isWhole = read.ec == std::errc() && read.ptr == digits.data() + digits.size();
    return isWhole && digits.front() != '0' ? number : 0;
}

std::vector<CustomMediaEntry> customMediaBlock(const PPDModelFile& PPD) {
    std::vector<CustomMediaEntry> entries;
    std::set<std::string_view> seen;
    const std::string category = valueOf(lastAttribute(PPD, "ZrMediaTypeCategory", "custom"));
    for (const std::string_view choice : piecesBetweenWhiteSpace(category)) {
        if (!choice.empty() && seen.insert(choice).second) {
            entries.push_back(entryOfChoice(PPD, std::string(choice)));
        }
    }
    return entries;
}

std::vector<std::optional<std::size_t>> sameMediaTypes(std::span<const MediaTypeIdentity> earlier,
                                                       std::span<const MediaTypeIdentity> later) {
    Pairing pairing(earlier, later);
    pairing.pairBy(&MediaTypeIdentity::mediaID);
    pairing.pairBy(&MediaTypeIdentity::name);
    return pairing.takePlaces();
}

OrbCustomMediaTypes inEarlierPlaces(const std::vector<CustomMediaEntry>& block,
                                    OrbCustomMediaTypes reported) {
    std::erase(reported, nullptr);
    const auto same = placesInReported(block, reported);
    OrbCustomMediaTypes ordered(reported.size());
    for (std::size_t i = 0; i < block.size(); ++i) {
        const std::size_t number = block[i].number();
        if (same[i] && number >= 1 && number <= ordered.size()) {
            ordered[number - 1] = std::exchange(reported[*same[i]], nullptr);
        }
    }
    auto gap = ordered.begin();
    for (auto& type : reported) {
        if (type) {
            gap = std::find(gap, ordered.end(), nullptr);
            *gap = std::move(type);
        }
    }
    return ordered;
}

std::optional<OrbCustomMediaTypes> completedMediaTypes(const std::vector<CustomMediaEntry>& block,
                                                       OrbCustomMediaTypes reported) {
    std::erase(reported, nullptr);
    const auto same = placesInReported(block, reported);
    for (std::size_t i = 0; i < block.size(); ++i) {
        if (same[i]) {
            continue;
        }
        auto type = typeOfEntry(block[i]);
        if (!type) {
            return std::nullopt;
        }
        reported.push_back(std::move(type));
    }
    return reported;
}

}  // namespace TkPPDUpdating
