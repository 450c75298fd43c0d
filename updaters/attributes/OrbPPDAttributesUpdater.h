#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "manager/ITkPPDLineOwnership.h"
#include "manager/ITkPPDUpdater.h"
#include "ppd/OrbPPDProcessor.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Writes vendor attributes, one line "*Keyword: value" each, into a PPD that already carries at
/// least one of them.
///
/// A subclass names its attributes and says where their values come from; how they get into the
/// text stands here once. Values are written as they are, unquoted and unwrapped. Holds no state.
///
/// A line that would take 256 bytes or more (PPD specification 4.3: 255 at most) is not written,
/// and the line that stood there is gone all the same: no value is better than a stale one.
///
/// The operations that edit pass on the `std::out_of_range` of
/// `OrbPPDProcessor::deleteAttributeWithKeyword_spec_value`.
class TKPPDUPDATING_PUBLIC OrbPPDAttributesUpdater : public ITkPPDUpdater,
                                                     public ITkPPDLineOwnership {
  public:
    /// The main keywords (without asterisk) of the attributes, in the order in which they are
    /// written. The texts live as long as the process.
    virtual std::span<const std::string_view> attributeNames() const = 0;

    /// Keyword to value from the device; a keyword that is not in it has no value, and its line
    /// stays. Nothing when there is no value at all. To be overridden: this one raises
    /// `OrbInvalidOperationError`.
    virtual std::optional<OrbPPDUpdatingValues> attributesFromDeviceWithURI_context(
        std::optional<std::string_view> deviceURI, OrbDictionary* context);

    /// Whether the PPD has a line of at least one of the attributes.
    bool isApplicableForPPDFile(const OrbPPDFile* PPDFile) override;

    /// The text with the values of the device: always a text, unless `contents` is null.
    PPDText updatedPPDContentsForContents_deviceURI_context(
        const PPDText& contents, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override;

    /// The text with the values that the first attribute of each keyword has in `PPDFile`: always a
    /// text, unless `contents` is null. An attribute that stands there without a value is deleted.
    PPDText updatedPPDContentsForContents_PPDFile_context(const PPDText& contents,
                                                          const OrbPPDFile* PPDFile,
                                                          OrbDictionary* context) override;

    /// What `attributesFromDeviceWithURI_context` gives; the PPD is not looked at.
    std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForPPDFile_deviceURI_context(
        const OrbPPDFile* PPDFile, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override;

    /// Its attributes.
    OrbPPDOwnedLines ownedLines(std::span<const PPDStatement> before,
                                std::span<const PPDStatement> after) override;

    /// Deletes the attribute and writes it anew with that value, in the place of the old line, or
    /// at the end of the PPD when there was none. Without a value, or with one too long for a line,
    /// it stays deleted.
    void updateAttributeName_attributeValue_withPPDProcessor(
        std::string_view attributeName, std::optional<std::string_view> attributeValue,
        OrbPPDProcessor& processor);
};

}  // namespace TkPPDUpdating
