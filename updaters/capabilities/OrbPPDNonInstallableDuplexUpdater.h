#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "updaters/capabilities/OrbPPDDeviceCapabilitiesUpdater.h"

namespace TkPPDUpdating {

/// Settles, for a PPD whose "ZrNonInstallableDuplex" is "Unknown", whether a printer whose duplex
/// unit is built in or absent by model has it. Without one the PPD loses the two-sided printing
/// group, the constraints of "Duplex" and the page sizes that are safe with a duplexer only. When
/// the printer does not tell, the PPD gets an installable-options group, so that the user can.
/// Offers no values.
class OrbPPDNonInstallableDuplexUpdater : public OrbPPDDeviceCapabilitiesUpdater {
  public:
    static constexpr std::string_view kClassName = "OrbPPDNonInstallableDuplexUpdater";

    std::string_view className() const override { return kClassName; }

    /// True when the PPD's first "ZrNonInstallableDuplex" is "Unknown".
    bool isApplicableForPPDFile(const OrbPPDFile* PPDFile) override;

    /// Raises `std::out_of_range`, as `...byUpdatingDuplexerInstalledWithStatus` does, when
    /// "cupsVersion" or "cupsLanguages" ends at its colon.
    PPDText updatedPPDContentsForContents_deviceURI_context(
        const PPDText& contents, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override;

    /// With the first "ZrNonInstallableDuplex" of another PPD as the status, whatever its word; the
    /// text itself when that PPD has no such attribute.
    PPDText updatedPPDContentsForContents_PPDFile_context(const PPDText& contents,
                                                          const OrbPPDFile* PPDFile,
                                                          OrbDictionary* context) override;

    /// Its attribute, what goes with a duplex unit, the page sizes that are safe with one only, and
    /// the block for the PPD's version.
    OrbPPDOwnedLines ownedLines(std::span<const PPDStatement> before,
                                std::span<const PPDStatement> after) override;

    /// Records the status in "ZrNonInstallableDuplex", in its place, and reshapes the text for "Not
    /// Installed" and "Not Detected"; any other word is only recorded. Null when text or status is
    /// null, the text has no such attribute, or the word is too long for a PPD line.
    PPDText contentsForContents_byUpdatingDuplexerInstalledWithStatus(
        const PPDText& contents, std::optional<std::string_view> status) const;

    /// Removes every line that `duplexSafeRegularExpression` matches; see
    /// `PosixRegularExpression`. The text itself when there is no expression or it does not
    /// compile; null when it is null.
    PPDText contentsByRemovingDuplexSafePageSizesForContents(const PPDText& contents) const;

    /// The POSIX extended expression for lines of page sizes that are safe with a duplexer only;
    /// nothing when the library's property list gives none. Read once it is there, then kept.
    const std::optional<std::string>& duplexSafeRegularExpression() const;

  private:
    mutable std::optional<std::string> duplexSafeRegularExpression_;
};

}  // namespace TkPPDUpdating
