#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core_interface/OrbCSStatusValue.h"
#include "core_interface/OrbCustomMediaType.h"
#include "core_interface/OrbICCProfile.h"
#include "manager/ITkPPDLineOwnership.h"
#include "manager/ITkPPDStatusReading.h"
#include "manager/ITkPPDUpdater.h"
#include "ppd/OrbPPDProcessor.h"

namespace TkPPDUpdating {

/// Writes the custom media types of a printer into the PPD: a "MediaType" choice for each, an ICC
/// profile for each that has one (CUPS PPD extensions: cupsICCProfile), a line that ties each
/// choice to the printer's identifiers, and one category line that lists the choices.
///
/// Each run first removes what an earlier run wrote, and nothing else: it is found through the
/// category line. Texts are written as they are; whoever reports media types sees to it that they
/// are harmless in a PPD (`ppd/PPDTextSafety.h`).
///
/// One object serves one run at a time, on one thread. The operations between the main run and the
/// contract are its steps; they work on the properties and are public so that each can be run by
/// itself. They raise what `OrbPPDProcessor` raises.
class OrbPPDCustomMediaUpdater : public ITkPPDUpdater,
                                 public ITkPPDStatusReading,
                                 public ITkPPDLineOwnership {
  public:
    static constexpr std::string_view kClassName = "OrbPPDCustomMediaUpdater";

    using ICCProfiles = std::vector<std::shared_ptr<const OrbICCProfile>>;

    /// True when the first "ZrCustomMediaSupported" of the PPD is "True".
    bool isApplicableForPPDFile(const OrbPPDFile* PPDFile) override;

    /// Writes the media types that the device reports; a device that is silent or reports none has
    /// none.
    PPDText updatedPPDContentsForContents_deviceURI_context(
        const PPDText& contents, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override;

    /// Writes the media types that stand in `PPDFile`, in the order of its (last) category line.
    PPDText updatedPPDContentsForContents_PPDFile_context(const PPDText& contents,
                                                          const OrbPPDFile* PPDFile,
                                                          OrbDictionary* context) override;

    /// Always an empty dictionary.
    std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForPPDFile_deviceURI_context(
        const OrbPPDFile* PPDFile, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override;

    /// The text with the block of an earlier run replaced by one for `types`.
    /// Null when a line refuses to be written or the PPD lacks "*CloseUI: *MediaType" or
    /// "*CloseUI: *ZrICCProfileId2". Without types the block is only removed; a text that has none
    /// is then given back itself.
    PPDText contentsForContents_updatedWithCustomMediaTypes(const PPDText& contents,
                                                            OrbCustomMediaTypes types);

    /// Inserts the choices "custom1", "custom2", ... before the closing line of "MediaType", and
    /// keeps their names in `customMediaNames`. False when that line is missing or a line refused.
    bool appendCustomMediaTypes();

    /// Adds a "cupsICCProfile" line at the end for each media type whose profile has a qualifier
    /// and a file, and keeps those that were inserted in `customICCProfiles`; a profile whose line
    /// is refused is left out. Always true.
    bool appendCustomProfiles();

    /// Inserts the choice of each of `customICCProfiles` before the closing line of
    /// "ZrICCProfileId2". False when that line is missing, even without profiles, a profile has no
    /// qualifier or no file, or a line is refused.
    bool appendCustomZrProfiles();

    /// Adds the properties of each media type at the end: its identifiers, and its qualifier when
    /// `customICCProfiles` holds its profile. False when a line is refused. Raises
    /// `std::out_of_range` when there are fewer `customMediaNames` than media types.
    bool appendZrChoiceProperties();

    /// Adds the category line with the `customMediaNames` at the end, wrapped where it is long.
    bool appendZrMediaTypeCategory();

    /// The qualifier that names the profile: its own, else the one made of its ID. Nothing for a
    /// null profile or one with neither.
    static std::optional<std::string> PPDProfileQualifierForProfile(const OrbICCProfile* profile);

    /// The media type that stands in a PPD under a choice name. Null when name or PPD is null, the
    /// choice is missing, its properties lack an identifier or are malformed, or the core library
    /// makes none. ("PPDfile" is how the operation is called.)
    static std::shared_ptr<const OrbCustomMediaType> customMediaTypeWithCodeName_PPDfile(
        std::optional<std::string_view> codeName, const OrbPPDFile* PPDFile);

    /// The profile that stands in a PPD under a qualifier: the first "cupsICCProfile" for it. Null
    /// when an argument is null, there is no such line, it has no value, or the core library makes
    /// none.
    static std::shared_ptr<const OrbICCProfile> ICCProfileWithQualifierVer2_PPDFile(
        std::optional<std::string_view> qualifier, const OrbPPDFile* PPDFile);

    /// Empties the three lists.
    void clear();

    /// Removes the block of an earlier run, as far as the category line names it. What is not there
    /// is passed over; without a category line nothing changes.
    void deleteCustomInfo();

    /// The qualifiers in the properties of the named choices, in order; one that two choices share
    /// comes twice.
    std::vector<std::string> customICCProfilesForCustomMediaTypes(
        const std::vector<std::string>& names);

    void deleteMediaTypesAndChoicePropertiesForMediaTypes(const std::vector<std::string>& names);

    /// Removes one "cupsICCProfile" and one "ZrICCProfileId2" attribute for each qualifier; the
    /// profile files stay.
    void deleteICCProfilesAndColorSyncProfiles(const std::vector<std::string>& qualifiers);

    /// The media types of the run, in the order given. Null entries are left out.
    const OrbCustomMediaTypes& customMediaTypes() const { return customMediaTypes_; }
    void setCustomMediaTypes(OrbCustomMediaTypes types) {
        customMediaTypes_ = std::move(types);
        std::erase(customMediaTypes_, nullptr);
    }

    /// The choice names given out in the run, one for each media type.
    const std::vector<std::string>& customMediaNames() const { return customMediaNames_; }
    void setCustomMediaNames(std::vector<std::string> names) {
        customMediaNames_ = std::move(names);
    }

    /// The profiles whose "cupsICCProfile" line was inserted, in that order; one that two media
    /// types share comes twice.
    const ICCProfiles& customICCProfiles() const { return customICCProfiles_; }
    void setCustomICCProfiles(ICCProfiles profiles) { customICCProfiles_ = std::move(profiles); }

    /// The editor over the text of the run, kept until the next run; null before the first. Without
    /// one the steps that insert fail and those that remove do nothing.
    const std::shared_ptr<OrbPPDProcessor>& PPDProcessor() const { return PPDProcessor_; }
    void setPPDProcessor(std::shared_ptr<OrbPPDProcessor> processor) {
        PPDProcessor_ = std::move(processor);
    }

    std::vector<std::string> statusEntriesRead() const override;

    /// The blocks of an earlier run and of this one, and the defaults of media type and profile.
    OrbPPDOwnedLines ownedLines(std::span<const PPDStatement> before,
                                std::span<const PPDStatement> after) override;

  private:
    bool appendAll();
    bool goToCloseUIOfOption(std::string_view option);
    void goToEnd();
    bool insert(std::string_view keyword, std::string_view spec,
                std::optional<std::string_view> text, std::string_view quotedValue,
                bool wrap = false);
    void deleteAttribute(std::string_view keyword, std::string_view spec);
    std::optional<std::string> value(std::string_view keyword, std::string_view spec);

    // Destroyed in the opposite order: the names first, the processor last.
    std::shared_ptr<OrbPPDProcessor> PPDProcessor_;
    ICCProfiles customICCProfiles_;
    OrbCustomMediaTypes customMediaTypes_;
    std::vector<std::string> customMediaNames_;
    /// The value that is being inserted; kept because it has the room.
    std::string quotedValue_;
};

}  // namespace TkPPDUpdating
