#include "backends/cups/IPPMediaTypes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/cups/IPPStandardMediaTypes.h"
#include "backends/ppdmodel/PPDModelCustomMediaType.h"
#include "backends/ppdmodel/PPDModelICCProfile.h"
#include "core_interface/FileURL.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDTextSafety.h"

namespace TkPPDUpdating {

namespace {

constexpr std::size_t kMostMediaTypes = 256;
/// The ID stands in one PPD line with the choice's name and the profile's qualifier.
constexpr std::size_t kLongestMediaID = 100;

using ProfilesByMediaType = std::map<std::string, std::shared_ptr<const OrbICCProfile>>;

/// PPD specification 4.3, section 3.2: printable characters but blank, slash and colon, at most 40.
bool canBeOptionKeyword(std::string_view text) {
    constexpr std::size_t kLongestKeyword = 40;
    return text.size() <= kLongestKeyword &&
           std::all_of(text.begin(), text.end(), [](char character) {
               return character > ' ' && character < '\x7F' && character != '/' && character != ':';
           });
}

/// The URL as the printer gave it; nothing, with the reason kept, when the path of a file URL could
/// not stand in a PPD line.
std::optional<std::string> safeURL(IPPAnswer& answer, std::string URL, const std::string& place) {
    const auto path = pathFromFileURL(URL);
    const auto reason = path ? reasonTextCannotStandInPPDLine(*path) : std::nullopt;
    if (reason) {
        answer.dropped().add(place, "the path of the file URL " + *reason);
        return std::nullopt;
    }
    return URL;
}

std::shared_ptr<const OrbICCProfile> profile(IPPAnswer& answer, ipp_t* collection,
                                             const std::string& place) {
    auto URL = answer.member(collection, "profile-url", place);
    if (!URL) {
        URL = answer.member(collection, "profile-uri", place);
    }
    const auto usableURL = URL ? safeURL(answer, std::move(URL->text), place) : std::nullopt;
    const auto name = answer.member(collection, "profile-name", place);
    if (name && !canBeOptionKeyword(name->text)) {
        answer.dropped().add(place, "the profile's name cannot be a PPD option keyword");
        return nullptr;
    }
    if (!usableURL || !name) {
        return nullptr;
    }
    return std::make_shared<const PPDModelICCProfile>(usableURL, name->text, std::nullopt);
}

ProfilesByMediaType profilesByMediaType(IPPAnswer& answer) {
    ProfilesByMediaType profiles;
    std::size_t count = 0;
    for (ipp_t* collection : answer.collections("printer-icc-profiles")) {
        const std::string place = "printer-icc-profiles, value " + std::to_string(++count);
        const auto type = answer.member(collection, "media-type", place);
        auto itsProfile = type ? profile(answer, collection, place) : nullptr;
        if (itsProfile) {
            profiles.emplace(type->text, std::move(itsProfile));
        }
    }
    return profiles;
}

/// Gathers media types, each once.
class CustomMediaTypes {
  public:
    explicit CustomMediaTypes(IPPAnswer& answer)
        : answer_(answer), profiles_(profilesByMediaType(answer)) {}

    /// `type` is the media type as it is in the answer.
    void add(const IPPAnswer::Text& type, const std::optional<std::string>& info,
             const std::optional<std::string>& key, const std::string& place) {
        if (!type.isName && isStandardMediaType(type.text)) {
            return;
        }
        if (!seen_.insert(type.text).second) {
            return;
        }
        if (types_.size() == kMostMediaTypes) {
            answer_.dropped().add(place, "there are more than " + std::to_string(kMostMediaTypes) +
                                             " custom media types");
            return;
        }
        std::string mediaID = key.value_or(type.text);
        if (mediaID.size() > kLongestMediaID) {
            answer_.dropped().add(
                place, "the media ID is longer than " + std::to_string(kLongestMediaID) + " bytes");
            return;
        }
        const auto itsProfile = profiles_.find(type.text);
        types_.push_back(std::make_shared<const PPDModelCustomMediaType>(
            info.value_or(type.text), std::move(mediaID), std::nullopt,
            itsProfile == profiles_.end() ? nullptr : itsProfile->second));
    }

    OrbCustomMediaTypes take() { return std::move(types_); }

  private:
    IPPAnswer& answer_;
    ProfilesByMediaType profiles_;
    std::set<std::string> seen_;
    OrbCustomMediaTypes types_;
};

std::optional<std::string> textOf(std::optional<IPPAnswer::Text> member) {
    return member ? std::optional(std::move(member->text)) : std::nullopt;
}

}  // namespace

void readCustomMediaTypes(IPPAnswer& answer, IPPDeviceStatus::Values& values) {
    CustomMediaTypes types(answer);
    const auto collections = answer.collections("media-col-database");
    for (std::size_t index = 0; index < collections.size(); ++index) {
        const std::string place = "media-col-database, value " + std::to_string(index + 1);
        if (const auto type = answer.member(collections[index], "media-type", place)) {
            types.add(*type, textOf(answer.member(collections[index], "media-info", place)),
                      textOf(answer.member(collections[index], "media-key", place)), place);
        }
    }
    const auto supported = answer.keywordsOrNames("media-type-supported");
    for (const IPPAnswer::Text& type : supported.value_or(std::vector<IPPAnswer::Text>())) {
        // libcups keeps one syntax for all values of a set, so that among keywords and names the
        // standard list alone tells which are the printer's own.
        types.add({type.text, false}, std::nullopt, std::nullopt,
                  "media-type-supported, value " + std::to_string(type.valueFromOne));
    }
    if (!collections.empty() || supported) {
        values.insert_or_assign(std::string(kTkCSCustomMediaTypesKey), types.take());
    }
}

}  // namespace TkPPDUpdating
