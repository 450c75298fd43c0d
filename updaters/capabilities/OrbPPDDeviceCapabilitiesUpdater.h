#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "manager/ITkPPDLineOwnership.h"
#include "manager/ITkPPDStatusReading.h"
#include "manager/ITkPPDUpdater.h"
#include "ppd/OrbPPDProcessor.h"
#include "resources/PropertyList.h"

namespace TkPPDUpdating {

/// Settles, for a PPD whose "ZrAutoDuplexCapability" is "Unknown", whether the printer has an
/// automatic duplexer: with one the PPD gets an installable-options group, without one it loses the
/// two-sided printing group and the constraints of "Duplex". A printer that does not tell counts as
/// having one.
///
/// Texts that its operations are given may be null; the result is null then.
class OrbPPDDeviceCapabilitiesUpdater : public ITkPPDUpdater,
                                        public ITkPPDStatusReading,
                                        public ITkPPDLineOwnership {
  public:
    static constexpr std::string_view kClassName = "OrbPPDDeviceCapabilitiesUpdater";

    /// The name of the object's own class, which may be a subclass. A subclass has text blocks of
    /// its own under its name.
    virtual std::string_view className() const { return kClassName; }

    /// True when the PPD's first "ZrAutoDuplexCapability" is "Unknown".
    bool isApplicableForPPDFile(const OrbPPDFile* PPDFile) override;

    /// Raises `std::out_of_range`, as the following operations that edit the text do, when
    /// "cupsVersion" or "cupsLanguages" ends at its colon.
    PPDText updatedPPDContentsForContents_deviceURI_context(
        const PPDText& contents, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override;

    /// With the state that another PPD has: installed when its first "ZrAutoDuplexCapability" is
    /// "True", not installed for any other value. The text itself when that PPD has no such
    /// attribute.
    PPDText updatedPPDContentsForContents_PPDFile_context(const PPDText& contents,
                                                          const OrbPPDFile* PPDFile,
                                                          OrbDictionary* context) override;

    /// Always empty.
    std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForPPDFile_deviceURI_context(
        const OrbPPDFile* PPDFile, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override;

    /// Its attributes, what goes with a duplex unit, and the block for the PPD's version.
    OrbPPDOwnedLines ownedLines(std::span<const PPDStatement> before,
                                std::span<const PPDStatement> after) override;

    /// Whether the last of the device's accessories that is a duplexer is installed; nothing when
    /// there is none, no list or no status.
    std::optional<bool> duplexerInstalledOnDevice_context(std::optional<std::string_view> deviceURI,
                                                          OrbDictionary* context) const;

    /// Records the state in "ZrDeviceCapabilities" and "ZrAutoDuplexCapability", each in its place,
    /// and reshapes the text. Null when either is missing.
    PPDText contentsForContents_byUpdatingDuplexerInstalled(const PPDText& contents,
                                                            bool isInstalled) const;

    /// The block of PPD text for that version of CUPS from the library's property list, as its
    /// file is now; nothing when the list cannot be read or has no text for class and version. No
    /// version is looked up as "(null)".
    std::optional<std::string> insertingStringForCUPSVersion(
        const std::optional<std::string>& CUPSVersion) const;

    /// Removes from the first line that begins with "*OpenGroup: " and the name through the first
    /// line after it that begins with "*CloseGroup: " and the name; either name may go on. The text
    /// itself when there is no such pair, the group opens at the very start, or no line feed
    /// follows.
    static PPDText contentsForContents_byRemovingGroupWithName(const PPDText& contents,
                                                               std::string_view groupName);

    /// See `PPDTextByRemovingConstraints`.
    static PPDText contentsForContents_byRemovingConstraintsForOptionWithName(
        const PPDText& contents, std::string_view optionKeyword);

    /// Appends a line feed and the block for the version; the text itself when there is no block.
    PPDText contentsByInsertingInstallableOptionsWithConstraintsForContents_CUPSVersion(
        const PPDText& contents, const std::optional<std::string>& CUPSVersion) const;

    /// Removes the group "ZrTwoSidedPrinting", then the constraints of "Duplex".
    static PPDText contentsByRemovingDuplexOptionWithConstraintsForContents(
        const PPDText& contents);

  protected:
    /// Puts the attribute with the new value where its first line stands. False when it has none,
    /// or the new line would be too long; then its line is gone.
    static bool replaceAttribute(OrbPPDProcessor& processor, std::string_view keyword,
                                 std::string_view value);

    /// The library's property list "TkPPDUpdatingData", or null when it cannot be read.
    static std::shared_ptr<const PropertyList> updatingData();

    std::vector<std::string> statusEntriesRead() const override;
};

}  // namespace TkPPDUpdating
