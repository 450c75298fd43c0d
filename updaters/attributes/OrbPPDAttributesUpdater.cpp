#include "updaters/attributes/OrbPPDAttributesUpdater.h"

#include <algorithm>

#include "core_interface/OrbInvalidOperationError.h"

namespace TkPPDUpdating {

std::optional<OrbPPDUpdatingValues> OrbPPDAttributesUpdater::attributesFromDeviceWithURI_context(
    std::optional<std::string_view> /*deviceURI*/, OrbDictionary* /*context*/) {
    throw OrbInvalidOperationError("OrbPPDAttributesUpdater",
                                   "attributesFromDeviceWithURI_context");
}

bool OrbPPDAttributesUpdater::isApplicableForPPDFile(const OrbPPDFile* PPDFile) {
    return std::ranges::any_of(attributeNames(), [&](std::string_view name) {
        return OrbPPDFile::firstAttributeForName(PPDFile, name) != nullptr;
    });
}

PPDText OrbPPDAttributesUpdater::updatedPPDContentsForContents_deviceURI_context(
    const PPDText& contents, std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    OrbPPDProcessor processor;
    processor.initWithPDDContent(contents);
    const auto values = attributesFromDeviceWithURI_context(deviceURI, context);
    if (values) {
        for (const std::string_view name : attributeNames()) {
            const auto value = values->find(name);
            if (value != values->end()) {
                updateAttributeName_attributeValue_withPPDProcessor(name, value->second, processor);
            }
        }
    }
    return processor.content();
}

PPDText OrbPPDAttributesUpdater::updatedPPDContentsForContents_PPDFile_context(
    const PPDText& contents, const OrbPPDFile* PPDFile, OrbDictionary* /*context*/) {
    OrbPPDProcessor processor;
    processor.initWithPDDContent(contents);
    for (const std::string_view name : attributeNames()) {
        if (const auto* const attribute = OrbPPDFile::firstAttributeForName(PPDFile, name)) {
            updateAttributeName_attributeValue_withPPDProcessor(name, attribute->value(),
                                                                processor);
        }
    }
    return processor.content();
}

std::optional<OrbPPDUpdatingValues>
OrbPPDAttributesUpdater::PPDUpdatingValuesForPPDFile_deviceURI_context(
    const OrbPPDFile* /*PPDFile*/, std::optional<std::string_view> deviceURI,
    OrbDictionary* context) {
    return attributesFromDeviceWithURI_context(deviceURI, context);
}

OrbPPDOwnedLines OrbPPDAttributesUpdater::ownedLines(std::span<const PPDStatement> /*before*/,
                                                     std::span<const PPDStatement> /*after*/) {
    const auto names = attributeNames();
    OrbPPDOwnedLines owned;
    owned.attributes.assign(names.begin(), names.end());
    return owned;
}

void OrbPPDAttributesUpdater::updateAttributeName_attributeValue_withPPDProcessor(
    std::string_view attributeName, std::optional<std::string_view> attributeValue,
    OrbPPDProcessor& processor) {
    // The index that means "not found" is the insert location that means the end of the PPD.
    const std::size_t location =
        processor.deleteAttributeWithKeyword_spec_value(attributeName, std::nullopt, std::nullopt);
    processor.setInsertLocation(location);
    constexpr bool kWrap = false;
    processor.insertAttributeWithKeyword_spec_text_value_wrap(attributeName, std::nullopt,
                                                              std::nullopt, attributeValue, kWrap);
}

}  // namespace TkPPDUpdating
