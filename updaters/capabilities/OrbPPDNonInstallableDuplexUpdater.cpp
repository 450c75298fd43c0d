#include "updaters/capabilities/OrbPPDNonInstallableDuplexUpdater.h"

#include <utility>

#include "updaters/capabilities/DuplexOwnership.h"
#include "updaters/capabilities/PosixRegularExpression.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kNonInstallableDuplex = "ZrNonInstallableDuplex";
constexpr std::string_view kInstalledStatus = "Installed";
constexpr std::string_view kNotInstalledStatus = "Not Installed";
constexpr std::string_view kNotDetectedStatus = "Not Detected";
constexpr std::string_view kExpressionKey = "TkPPDDuplexSafeRegularExpression";

}  // namespace

bool OrbPPDNonInstallableDuplexUpdater::isApplicableForPPDFile(const OrbPPDFile* PPDFile) {
    const auto* const status = OrbPPDFile::firstAttributeForName(PPDFile, kNonInstallableDuplex);
    return status && status->value() == kTkPPDUnknownValue;
}

PPDText OrbPPDNonInstallableDuplexUpdater::updatedPPDContentsForContents_deviceURI_context(
    const PPDText& contents, std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    const auto isInstalled = duplexerInstalledOnDevice_context(deviceURI, context);
    return contentsForContents_byUpdatingDuplexerInstalledWithStatus(
        contents, !isInstalled   ? kNotDetectedStatus
                  : *isInstalled ? kInstalledStatus
                                 : kNotInstalledStatus);
}

PPDText OrbPPDNonInstallableDuplexUpdater::updatedPPDContentsForContents_PPDFile_context(
    const PPDText& contents, const OrbPPDFile* PPDFile, OrbDictionary* /*context*/) {
    const auto* const status = OrbPPDFile::firstAttributeForName(PPDFile, kNonInstallableDuplex);
    return status ? contentsForContents_byUpdatingDuplexerInstalledWithStatus(contents,
                                                                              status->value())
                  : contents;
}

OrbPPDOwnedLines OrbPPDNonInstallableDuplexUpdater::ownedLines(
    std::span<const PPDStatement> before, std::span<const PPDStatement> after) {
    OrbPPDOwnedLines owned = OrbPPDDeviceCapabilitiesUpdater::ownedLines(before, after);
    owned.attributes = {std::string(kNonInstallableDuplex)};
    owned.mayTakeAway = [ofDuplex = std::move(owned.mayTakeAway),
                         ofPageSizes = statementsThatMatch(duplexSafeRegularExpression())](
                            const PPDStatement& statement) {
        return ofDuplex(statement) || ofPageSizes(statement);
    };
    return owned;
}

PPDText
OrbPPDNonInstallableDuplexUpdater::contentsForContents_byUpdatingDuplexerInstalledWithStatus(
    const PPDText& contents, std::optional<std::string_view> status) const {
    if (!contents || !status) {
        return nullptr;
    }
    OrbPPDProcessor processor;
    processor.initWithPDDContent(contents);
    if (!replaceAttribute(processor, kNonInstallableDuplex, *status)) {
        return nullptr;
    }
    PPDText content = processor.content();
    if (*status == kNotInstalledStatus) {
        return contentsByRemovingDuplexSafePageSizesForContents(
            contentsByRemovingDuplexOptionWithConstraintsForContents(content));
    }
    if (*status == kNotDetectedStatus) {
        return contentsByInsertingInstallableOptionsWithConstraintsForContents_CUPSVersion(
            content, processor.valueForAttributeWithKeyword_spec(kTkPPDCUPSVersionAttributeName,
                                                                 std::nullopt));
    }
    return content;
}

PPDText OrbPPDNonInstallableDuplexUpdater::contentsByRemovingDuplexSafePageSizesForContents(
    const PPDText& contents) const {
    const auto& pattern = duplexSafeRegularExpression();
    const auto expression = pattern ? PosixRegularExpression::compiled(*pattern) : std::nullopt;
    return contents && expression ? expression->textByRemovingMatchingLines(contents) : contents;
}

const std::optional<std::string>& OrbPPDNonInstallableDuplexUpdater::duplexSafeRegularExpression()
    const {
    if (!duplexSafeRegularExpression_) {
        const auto data = updatingData();
        const std::string* const expression = data ? data->stringForKey(kExpressionKey) : nullptr;
        if (expression) {
            duplexSafeRegularExpression_ = *expression;
        }
    }
    return duplexSafeRegularExpression_;
}

}  // namespace TkPPDUpdating
