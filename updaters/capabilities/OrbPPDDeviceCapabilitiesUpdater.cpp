#include "updaters/capabilities/OrbPPDDeviceCapabilitiesUpdater.h"

#include <algorithm>
#include <utility>

#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/TkCSKeys.h"
#include "manager/MissingResourceWatch.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "resources/PropertyListCache.h"
#include "resources/ResourceFolder.h"
#include "updaters/capabilities/DuplexOwnership.h"
#include "updaters/capabilities/PPDConstraintRemoval.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kAutoDuplexCapability = "ZrAutoDuplexCapability";
constexpr std::string_view kDeviceCapabilities = "ZrDeviceCapabilities";
constexpr std::string_view kDetectedValue = "Detected";
constexpr std::string_view kTwoSidedGroupName = "ZrTwoSidedPrinting";
constexpr std::string_view kDuplexOptionName = "Duplex";
constexpr std::string_view kOpenGroupFormat = "\n*OpenGroup: %@";
constexpr std::string_view kCloseGroupFormat = "\n*CloseGroup: %@";
constexpr std::string_view kPropertyListFileName = "TkPPDUpdatingData.plist";
constexpr std::string_view kBlockKeyFormat = "%@-%@";
/// How a version that is missing reads in a key.
constexpr std::string_view kNoVersion = "(null)";

}  // namespace

bool OrbPPDDeviceCapabilitiesUpdater::isApplicableForPPDFile(const OrbPPDFile* PPDFile) {
    const auto* const capability =
        OrbPPDFile::firstAttributeForName(PPDFile, kAutoDuplexCapability);
    return capability && capability->value() == kTkPPDUnknownValue;
}

PPDText OrbPPDDeviceCapabilitiesUpdater::updatedPPDContentsForContents_deviceURI_context(
    const PPDText& contents, std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    // A printer that cannot be asked keeps its duplex features.
    const bool isInstalled = duplexerInstalledOnDevice_context(deviceURI, context).value_or(true);
    return contentsForContents_byUpdatingDuplexerInstalled(contents, isInstalled);
}

PPDText OrbPPDDeviceCapabilitiesUpdater::updatedPPDContentsForContents_PPDFile_context(
    const PPDText& contents, const OrbPPDFile* PPDFile, OrbDictionary* /*context*/) {
    const auto* const capability =
        OrbPPDFile::firstAttributeForName(PPDFile, kAutoDuplexCapability);
    return capability ? contentsForContents_byUpdatingDuplexerInstalled(
                            contents, capability->value() == kTkPPDTrueValue)
                      : contents;
}

std::optional<OrbPPDUpdatingValues>
OrbPPDDeviceCapabilitiesUpdater::PPDUpdatingValuesForPPDFile_deviceURI_context(
    const OrbPPDFile* /*PPDFile*/, std::optional<std::string_view> /*deviceURI*/,
    OrbDictionary* /*context*/) {
    return OrbPPDUpdatingValues();
}

OrbPPDOwnedLines OrbPPDDeviceCapabilitiesUpdater::ownedLines(std::span<const PPDStatement> before,
                                                             std::span<const PPDStatement> after) {
    OrbPPDOwnedLines owned;
    owned.attributes = {std::string(kDeviceCapabilities), std::string(kAutoDuplexCapability)};
    owned.mayTakeAway = statementsOfDuplex(before, after);
    owned.mayAdd = statementsOfBlock([this, version = CUPSVersionOfStatements(before)] {
        return insertingStringForCUPSVersion(version);
    });
    return owned;
}

std::optional<bool> OrbPPDDeviceCapabilitiesUpdater::duplexerInstalledOnDevice_context(
    std::optional<std::string_view> deviceURI, OrbDictionary* context) const {
    const auto status = OrbPPDUpdatingContext::deviceStatusForURI_inContext(deviceURI, context);
    const auto* const accessories =
        status ? status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey)
               : nullptr;
    if (!accessories) {
        return std::nullopt;
    }
    const auto last = std::find_if(
        accessories->rbegin(), accessories->rend(),
        [](const auto& accessory) { return accessory.name == kTkCSDeviceAccessoryDuplexer; });
    return last == accessories->rend() ? std::nullopt : std::optional(last->isInstalled);
}

PPDText OrbPPDDeviceCapabilitiesUpdater::contentsForContents_byUpdatingDuplexerInstalled(
    const PPDText& contents, bool isInstalled) const {
    OrbPPDProcessor processor;
    processor.initWithPDDContent(contents);
    if (!replaceAttribute(processor, kDeviceCapabilities, kDetectedValue) ||
        !replaceAttribute(processor, kAutoDuplexCapability,
                          isInstalled ? kTkPPDTrueValue : kTkPPDFalseValue)) {
        return nullptr;
    }
    const PPDText content = processor.content();
    if (!isInstalled) {
        return contentsByRemovingDuplexOptionWithConstraintsForContents(content);
    }
    return contentsByInsertingInstallableOptionsWithConstraintsForContents_CUPSVersion(
        content,
        processor.valueForAttributeWithKeyword_spec(kTkPPDCUPSVersionAttributeName, std::nullopt));
}

std::optional<std::string> OrbPPDDeviceCapabilitiesUpdater::insertingStringForCUPSVersion(
    const std::optional<std::string>& CUPSVersion) const {
    const auto data = updatingData();
    const std::string key =
        PPDFormatted(kBlockKeyFormat, {className(), CUPSVersion ? *CUPSVersion : kNoVersion});
    const std::string* const block = data ? data->stringForKey(key) : nullptr;
    return block ? std::optional(*block) : std::nullopt;
}

PPDText OrbPPDDeviceCapabilitiesUpdater::contentsForContents_byRemovingGroupWithName(
    const PPDText& contents, std::string_view groupName) {
    if (!contents) {
        return nullptr;
    }
    const std::string open = PPDFormatted(kOpenGroupFormat, {groupName});
    const std::string close = PPDFormatted(kCloseGroupFormat, {groupName});
    const auto lineCount = [](std::string_view text) {
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    };
    OrbPPDLines lines(contents);
    // The line feed before the group is the end of another line.
    constexpr std::size_t kFirstLine = 1;
    const auto opens =
        lines.indexOfLineBeginning(std::string_view(open).substr(kTkPPDNewLine.size()), kFirstLine);
    const auto closes =
        opens ? lines.indexOfLineBeginning(std::string_view(close).substr(kTkPPDNewLine.size()),
                                           *opens + lineCount(open))
              : std::nullopt;
    const std::size_t end = closes ? *closes + lineCount(close) : 0;
    if (!closes || (end == lines.size() && !lines.endsWithLineFeed())) {
        return contents;
    }
    lines.erase(*opens, end - *opens);
    return lines.text();
}

PPDText OrbPPDDeviceCapabilitiesUpdater::contentsForContents_byRemovingConstraintsForOptionWithName(
    const PPDText& contents, std::string_view optionKeyword) {
    return contents ? PPDTextByRemovingConstraints(contents, optionKeyword) : nullptr;
}

PPDText OrbPPDDeviceCapabilitiesUpdater::
    contentsByInsertingInstallableOptionsWithConstraintsForContents_CUPSVersion(
        const PPDText& contents, const std::optional<std::string>& CUPSVersion) const {
    if (!contents) {
        return nullptr;
    }
    const auto block = insertingStringForCUPSVersion(CUPSVersion);
    if (!block) {
        return contents;
    }
    OrbPPDLines lines(contents);
    if (lines.endsWithLineFeed() || lines.size() == 0) {
        lines.insert(lines.size(), kTkPPDEmptyString);
    }
    for (std::string_view rest = *block; !rest.empty();) {
        const std::size_t end = std::min(rest.find(kTkPPDNewLine), rest.size());
        lines.insert(lines.size(), rest.substr(0, end));
        rest.remove_prefix(std::min(end + kTkPPDNewLine.size(), rest.size()));
    }
    lines.setEndsWithLineFeed(block->empty() || block->ends_with(kTkPPDNewLine));
    return lines.text();
}

PPDText OrbPPDDeviceCapabilitiesUpdater::contentsByRemovingDuplexOptionWithConstraintsForContents(
    const PPDText& contents) {
    return contentsForContents_byRemovingConstraintsForOptionWithName(
        contentsForContents_byRemovingGroupWithName(contents, kTwoSidedGroupName),
        kDuplexOptionName);
}

bool OrbPPDDeviceCapabilitiesUpdater::replaceAttribute(OrbPPDProcessor& processor,
                                                       std::string_view keyword,
                                                       std::string_view value) {
    const std::size_t location =
        processor.deleteAttributeWithKeyword_spec_value(keyword, std::nullopt, std::nullopt);
    if (location == kTkPPDProcessorPPDEndLocation) {
        return false;
    }
    processor.setInsertLocation(location);
    return processor.insertAttributeWithKeyword_spec_text_value_wrap(keyword, std::nullopt,
                                                                     std::nullopt, value, false);
}

std::shared_ptr<const PropertyList> OrbPPDDeviceCapabilitiesUpdater::updatingData() {
    const auto folder = ResourceFolder::path();
    const std::string path = (folder ? *folder + "/" : std::string()).append(kPropertyListFileName);
    auto data = folder ? sharedPropertyListWithContentsOfFile(path) : nullptr;
    if (!data) {
        MissingResourceWatch::tell("data of the library cannot be read: " + path);
    }
    return data;
}

std::vector<std::string> OrbPPDDeviceCapabilitiesUpdater::statusEntriesRead() const {
    return {
        OrbCSPartialStatus::entryForPart(kTkCSDeviceAccessoriesKey, kTkCSDeviceAccessoryDuplexer)};
}

}  // namespace TkPPDUpdating
