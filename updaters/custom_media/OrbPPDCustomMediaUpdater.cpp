#include "updaters/custom_media/OrbPPDCustomMediaUpdater.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <unordered_set>

#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbCUPSICCProfileSpecifier.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "ppd/PPDConstants.h"
#include "ppd/PPDTextSafety.h"
#include "ppd/StringsFileFormat.h"
#include "text/FileURL.h"
#include "text/UnicodeWhiteSpace.h"
#include "updaters/custom_media/CustomMediaKeywords.h"
#include "updaters/custom_media/CustomMediaOwnership.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kCustomMediaSupported = "ZrCustomMediaSupported";
constexpr std::string_view kCloseUI = "CloseUI";
constexpr std::string_view kEnglishMediaType = "en.MediaType";

constexpr std::string_view kOptionFormat = "*%@";

std::vector<std::string> namesInCategory(std::string_view value) {
    const auto pieces = piecesBetweenWhiteSpace(value);
    return {pieces.begin(), pieces.end()};
}

/// The properties of a choice; none when they are missing or malformed.
StringsDictionary propertiesInValue(std::optional<std::string_view> value) {
    return value ? propertyListFromStringsFileFormat(*value).value_or(StringsDictionary())
                 : StringsDictionary();
}

/// The qualifier that the properties of a choice name.
std::optional<std::string> qualifierInProperties(std::optional<std::string_view> value) {
    auto properties = propertiesInValue(value);
    const auto qualifier = properties.find(kZrICCProfileId2);
    return qualifier == properties.end() ? std::nullopt
                                         : std::optional(std::move(qualifier->second));
}

/// The value under the key when it is there and not empty.
const std::string* nonEmptyValue(const StringsDictionary& properties, std::string_view key) {
    const auto entry = properties.find(key);
    return entry == properties.end() || entry->second.empty() ? nullptr : &entry->second;
}

/// The same when it can be written again. A value that could not stand in one PPD line, which an
/// escape in a tampered text can make, counts as missing: it must not become lines of its own.
const std::string* writableValue(const StringsDictionary& properties, std::string_view key) {
    const std::string* const value = nonEmptyValue(properties, key);
    return value && !reasonTextCannotStandInPPDLine(*value) ? value : nullptr;
}

/// Puts the value under the key, or takes the entry away when there is none.
template <typename Value>
void setValue(StringsDictionary& properties, std::string_view key,
              const std::optional<Value>& value) {
    const auto entry = properties.find(key);
    if (!value) {
        if (entry != properties.end()) {
            properties.erase(entry);
        }
    } else if (entry != properties.end()) {
        entry->second = *value;
    } else {
        properties.emplace(key, *value);
    }
}

/// The absolute path of the profile's file; nothing when the profile has no file URL.
std::optional<std::string> filePath(const OrbICCProfile& profile) {
    const auto URL = profile.URL();
    return URL ? absolutePathFromFileURL(*URL) : std::nullopt;
}

template <typename Attribute>
std::optional<std::string_view> valueOfLast(const std::vector<const Attribute*>& attributes) {
    return attributes.empty() ? std::nullopt : attributes.back()->value();
}

/// The media type of a choice; `profileWithQualifier` gives its profile, or null.
template <typename ProfileWithQualifier>
std::shared_ptr<const OrbCustomMediaType> mediaTypeInPPD(
    std::optional<std::string_view> codeName, const OrbPPDFile* PPDFile,
    const ProfileWithQualifier& profileWithQualifier) {
    const auto* const option = codeName && PPDFile ? PPDFile->optionForName(kMediaType) : nullptr;
    const auto* const choice = option ? option->choiceForName(*codeName) : nullptr;
    if (!choice) {
        return nullptr;
    }
    const auto english = PPDFile->attributesForName_spec(kEnglishMediaType, *codeName);
    const auto name = english.empty() ? choice->text() : english.back()->text();
    const auto properties = propertiesInValue(valueOfLast(PPDFile->attributesForName_spec(
        kZrChoiceProperties, std::string(kMediaTypePrefix).append(*codeName))));
    const auto* const mediaID = writableValue(properties, kMediaIDKey);
    const auto* const parentMediaID = writableValue(properties, kParentMediaIDKey);
    if (!mediaID || !parentMediaID) {
        return nullptr;
    }
    OrbDictionary parameters;
    parameters.emplace(kTkPPDCustomMediaTypeCodeNameKey, std::string(*codeName));
    // Entry stops at the first value that is missing.
    if (name) {
        parameters.emplace(kTkPPDCustomMediaTypeNameKey, std::string(*name));
        parameters.emplace(kTkPPDCustomMediaTypeIDKey, *mediaID);
        parameters.emplace(kTkPPDCustomMediaTypeParentIDKey, *parentMediaID);
        const auto* const qualifier = writableValue(properties, kZrICCProfileId2);
        std::shared_ptr<const OrbICCProfile> profile =
            qualifier ? profileWithQualifier(*qualifier) : nullptr;
        if (profile) {
            parameters.emplace(kTkPPDCustomMediaTypeICCProfileKey, std::move(profile));
        }
    }
    return OrbCustomMediaType::customMediaTypeWithPPDParameters(parameters);
}

/// Whether the profile is equal to one of these. As a rule it is one of them; their equality, which
/// a class may define, has no order that could be searched.
class EqualProfiles {
  public:
    explicit EqualProfiles(const OrbPPDCustomMediaUpdater::ICCProfiles& profiles)
        : profiles_(profiles) {
        for (const auto& profile : profiles_) {
            identical_.insert(profile.get());
        }
    }

    bool contains(const OrbICCProfile& profile) const {
        return identical_.contains(&profile) ||
               std::any_of(profiles_.begin(), profiles_.end(),
                           [&profile](const auto& each) { return each->isEqual(profile); });
    }

  private:
    const OrbPPDCustomMediaUpdater::ICCProfiles& profiles_;
    std::unordered_set<const OrbICCProfile*> identical_;
};

}  // namespace

// The contract.

bool OrbPPDCustomMediaUpdater::isApplicableForPPDFile(const OrbPPDFile* PPDFile) {
    const auto* const supported = OrbPPDFile::firstAttributeForName(PPDFile, kCustomMediaSupported);
    return supported && supported->value() == kTkPPDTrueValue;
}

PPDText OrbPPDCustomMediaUpdater::updatedPPDContentsForContents_deviceURI_context(
    const PPDText& contents, std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    const auto status = OrbPPDUpdatingContext::deviceStatusForURI_inContext(deviceURI, context);
    const auto* types =
        status ? status->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey) : nullptr;
    return contentsForContents_updatedWithCustomMediaTypes(contents,
                                                           types ? *types : OrbCustomMediaTypes());
}

PPDText OrbPPDCustomMediaUpdater::updatedPPDContentsForContents_PPDFile_context(
    const PPDText& contents, const OrbPPDFile* PPDFile, OrbDictionary* /*context*/) {
    OrbCustomMediaTypes types;
    const auto category =
        PPDFile ? valueOfLast(PPDFile->attributesForName_spec(kZrMediaTypeCategory, kCategory))
                : std::nullopt;
    if (category) {
        // Each name and qualifier is looked up once: a hostile category gains nothing by repeating
        // a name, nor do choices that share a profile by the number of its lines.
        std::map<std::string, std::shared_ptr<const OrbICCProfile>> profileOfQualifier;
        const auto profileWithQualifier = [&](const std::string& qualifier) {
            const auto [entry, isNew] = profileOfQualifier.try_emplace(qualifier);
            if (isNew) {
                entry->second = ICCProfileWithQualifierVer2_PPDFile(qualifier, PPDFile);
            }
            return entry->second;
        };
        std::map<std::string_view, std::shared_ptr<const OrbCustomMediaType>> typeOfName;
        for (const std::string_view name : piecesBetweenWhiteSpace(*category)) {
            const auto [entry, isNew] = typeOfName.try_emplace(name);
            if (isNew) {
                entry->second = mediaTypeInPPD(name, PPDFile, profileWithQualifier);
            }
            if (entry->second) {
                types.push_back(entry->second);
            }
        }
    }
    return contentsForContents_updatedWithCustomMediaTypes(contents, std::move(types));
}

std::optional<OrbPPDUpdatingValues>
OrbPPDCustomMediaUpdater::PPDUpdatingValuesForPPDFile_deviceURI_context(
    const OrbPPDFile* /*PPDFile*/, std::optional<std::string_view> /*deviceURI*/,
    OrbDictionary* /*context*/) {
    return OrbPPDUpdatingValues();
}

OrbPPDOwnedLines OrbPPDCustomMediaUpdater::ownedLines(std::span<const PPDStatement> before,
                                                      std::span<const PPDStatement> after) {
    return ownedCustomMediaLines(before, after);
}

// The main run.

PPDText OrbPPDCustomMediaUpdater::contentsForContents_updatedWithCustomMediaTypes(
    const PPDText& contents, OrbCustomMediaTypes types) {
    clear();
    setPPDProcessor(OrbPPDProcessor::processorWithPPDContent(contents));
    deleteCustomInfo();
    setCustomMediaTypes(std::move(types));
    if (customMediaTypes_.empty()) {
        return PPDProcessor_->content();
    }
    return appendAll() ? PPDProcessor_->content() : nullptr;
}

bool OrbPPDCustomMediaUpdater::appendAll() {
    return appendCustomMediaTypes() && appendCustomProfiles() && appendCustomZrProfiles() &&
           appendZrChoiceProperties() && appendZrMediaTypeCategory();
}

bool OrbPPDCustomMediaUpdater::appendCustomMediaTypes() {
    if (!goToCloseUIOfOption(kMediaType)) {
        return false;
    }
    customMediaNames_.reserve(customMediaTypes_.size());
    std::size_t number = 0;
    std::string code;
    for (const auto& type : customMediaTypes_) {
        const std::string& name = customMediaNames_.emplace_back(std::string(kChoiceNamePrefix) +
                                                                 std::to_string(++number));
        code.clear();
        appendPPDFormatted(kChoiceValueFormat, {name}, code);
        if (!insert(kMediaType, name, type->name(), code)) {
            return false;
        }
    }
    return true;
}

bool OrbPPDCustomMediaUpdater::appendCustomProfiles() {
    goToEnd();
    for (const auto& type : customMediaTypes_) {
        auto profile = type->ICCProfile();
        const auto qualifier = PPDProfileQualifierForProfile(profile.get());
        const auto path = qualifier ? filePath(*profile) : std::nullopt;
        if (path && insert(kCUPSICCProfile, std::string(kEmptyQualifiers).append(*qualifier),
                           fileNameWithoutExtension(*path), *path)) {
            customICCProfiles_.push_back(std::move(profile));
        }
    }
    return true;
}

bool OrbPPDCustomMediaUpdater::appendCustomZrProfiles() {
    if (!goToCloseUIOfOption(kZrICCProfileId2)) {
        return false;
    }
    return std::all_of(
        customICCProfiles_.begin(), customICCProfiles_.end(), [this](const auto& profile) {
            const auto qualifier = PPDProfileQualifierForProfile(profile.get());
            const auto path = qualifier ? filePath(*profile) : std::nullopt;
            return path && insert(kZrICCProfileId2, *qualifier, fileNameWithoutExtension(*path),
                                  kTkPPDEmptyString);
        });
}

bool OrbPPDCustomMediaUpdater::appendZrChoiceProperties() {
    goToEnd();
    const EqualProfiles inserted(customICCProfiles_);
    StringsDictionary properties;
    std::string optionKeyword;
    for (std::size_t i = 0; i < customMediaTypes_.size(); ++i) {
        const OrbCustomMediaType& type = *customMediaTypes_[i];
        // Entry stops at the first identifier that is missing.
        const auto mediaID = type.mediaID();
        setValue(properties, kMediaIDKey, mediaID);
        setValue(properties, kParentMediaIDKey, mediaID ? type.parentMediaID() : std::nullopt);
        const auto profile = type.ICCProfile();
        setValue(properties, kZrICCProfileId2,
                 profile && inserted.contains(*profile)
                     ? PPDProfileQualifierForProfile(profile.get())
                     : std::nullopt);
        optionKeyword.assign(kMediaTypePrefix).append(customMediaNames_.at(i));
        if (!insert(kZrChoiceProperties, optionKeyword, std::nullopt,
                    zrlumen_keysAndValuesInPPDStringsFileFormat(properties))) {
            return false;
        }
    }
    return true;
}

bool OrbPPDCustomMediaUpdater::appendZrMediaTypeCategory() {
    goToEnd();
    std::string names;
    names.reserve(customMediaNames_.size() * (kChoiceNamePrefix.size() + 4));
    for (const std::string& name : customMediaNames_) {
        names += &name == customMediaNames_.data() ? kTkPPDEmptyString : kTkPPDSpace;
        names += name;
    }
    return insert(kZrMediaTypeCategory, kCategory, kCategoryText, names, true);
}

std::optional<std::string> OrbPPDCustomMediaUpdater::PPDProfileQualifierForProfile(
    const OrbICCProfile* profile) {
    if (!profile) {
        return std::nullopt;
    }
    if (const auto qualifier = profile->qualifierVer2()) {
        return std::string(*qualifier);
    }
    const auto profileID = profile->profileID();
    const auto specifier =
        profileID ? OrbCUPSICCProfileSpecifier::specifierVer2WithProfileID(*profileID) : nullptr;
    return specifier ? std::optional(specifier->CUPSQualifier()) : std::nullopt;
}

// Reading media types back from a PPD.

std::shared_ptr<const OrbCustomMediaType>
OrbPPDCustomMediaUpdater::customMediaTypeWithCodeName_PPDfile(
    std::optional<std::string_view> codeName, const OrbPPDFile* PPDFile) {
    return mediaTypeInPPD(codeName, PPDFile, [PPDFile](const std::string& qualifier) {
        return ICCProfileWithQualifierVer2_PPDFile(qualifier, PPDFile);
    });
}

std::shared_ptr<const OrbICCProfile> OrbPPDCustomMediaUpdater::ICCProfileWithQualifierVer2_PPDFile(
    std::optional<std::string_view> qualifier, const OrbPPDFile* PPDFile) {
    if (!qualifier || !PPDFile) {
        return nullptr;
    }
    const auto attributes = PPDFile->attributesForName_spec(
        kCUPSICCProfile, std::string(kEmptyQualifiers).append(*qualifier));
    const auto path = attributes.empty() ? std::nullopt : attributes.front()->value();
    if (!path || path->empty()) {
        return nullptr;
    }
    OrbDictionary parameters;
    parameters.emplace(kTkPPDProfileNameKey, std::string(*qualifier));
    parameters.emplace(kTkPPDProfileURLKey, fileURLFromPath(absolutePath(std::string(*path))));
    parameters.emplace(kTkPPDProfileQualifierVer2Key, std::string(*qualifier));
    return OrbICCProfile::profileWithPPDParameters(parameters);
}

// Removal of what an earlier run wrote.

void OrbPPDCustomMediaUpdater::clear() {
    customMediaTypes_.clear();
    customMediaNames_.clear();
    customICCProfiles_.clear();
}

void OrbPPDCustomMediaUpdater::deleteCustomInfo() {
    const auto category = value(kZrMediaTypeCategory, kCategory);
    if (!category) {
        return;
    }
    const auto names = namesInCategory(*category);
    // While the properties are still there.
    const auto qualifiers = customICCProfilesForCustomMediaTypes(names);
    deleteAttribute(kZrMediaTypeCategory, kCategory);
    deleteMediaTypesAndChoicePropertiesForMediaTypes(names);
    deleteICCProfilesAndColorSyncProfiles(qualifiers);
}

std::vector<std::string> OrbPPDCustomMediaUpdater::customICCProfilesForCustomMediaTypes(
    const std::vector<std::string>& names) {
    // Each name is looked up once, so that a hostile category gains nothing by repeating one.
    std::map<std::string_view, std::optional<std::string>> qualifierOfName;
    std::vector<std::string> qualifiers;
    for (const std::string& name : names) {
        const auto [entry, isNew] = qualifierOfName.try_emplace(name);
        if (isNew) {
            entry->second = qualifierInProperties(
                value(kZrChoiceProperties, std::string(kMediaTypePrefix).append(name)));
        }
        if (entry->second) {
            qualifiers.push_back(*entry->second);
        }
    }
    return qualifiers;
}

void OrbPPDCustomMediaUpdater::deleteMediaTypesAndChoicePropertiesForMediaTypes(
    const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        deleteAttribute(kMediaType, name);
        deleteAttribute(kZrChoiceProperties, std::string(kMediaTypePrefix).append(name));
    }
}

void OrbPPDCustomMediaUpdater::deleteICCProfilesAndColorSyncProfiles(
    const std::vector<std::string>& qualifiers) {
    for (const std::string& qualifier : qualifiers) {
        deleteAttribute(kCUPSICCProfile, std::string(kEmptyQualifiers).append(qualifier));
        deleteAttribute(kZrICCProfileId2, qualifier);
    }
}

// The processor, which is null before the first run.

bool OrbPPDCustomMediaUpdater::goToCloseUIOfOption(std::string_view option) {
    const OrbPPDLineRange range =
        PPDProcessor_ ? PPDProcessor_->rangeOfAttributeWithKeyword_spec_value(
                            kCloseUI, std::nullopt, PPDFormatted(kOptionFormat, {option}))
                      : OrbPPDLineRange();
    if (range.length == 0) {
        return false;
    }
    PPDProcessor_->setInsertLocation(range.location);
    return true;
}

void OrbPPDCustomMediaUpdater::goToEnd() {
    if (PPDProcessor_) {
        PPDProcessor_->setInsertLocation(kTkPPDProcessorPPDEndLocation);
    }
}

bool OrbPPDCustomMediaUpdater::insert(std::string_view keyword, std::string_view spec,
                                      std::optional<std::string_view> text,
                                      std::string_view quotedValue, bool wrap) {
    quotedValue_.assign(kTkPPDQuote).append(quotedValue).append(kTkPPDQuote);
    return PPDProcessor_ && PPDProcessor_->insertAttributeWithKeyword_spec_text_value_wrap(
                                keyword, spec, text, quotedValue_, wrap);
}

void OrbPPDCustomMediaUpdater::deleteAttribute(std::string_view keyword, std::string_view spec) {
    if (PPDProcessor_) {
        PPDProcessor_->deleteAttributeWithKeyword_spec_value(keyword, spec, std::nullopt);
    }
}

std::optional<std::string> OrbPPDCustomMediaUpdater::value(std::string_view keyword,
                                                           std::string_view spec) {
    return PPDProcessor_ ? PPDProcessor_->valueForAttributeWithKeyword_spec(keyword, spec)
                         : std::nullopt;
}

std::vector<std::string> OrbPPDCustomMediaUpdater::statusEntriesRead() const {
    return {std::string(kTkCSCustomMediaTypesKey)};
}

}  // namespace TkPPDUpdating
