#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "manager/ITkPPDStatusReading.h"
#include "updaters/default_choice/OrbPPDDefaultChoiceUpdater.h"

namespace TkPPDUpdating {

/// Sets the defaults of installable options, those of the group "InstallableOptions" (PPD
/// specification 4.3, section 5.4), to what is installed in the printer: trays, finishers, duplex
/// units, memory. It is for the PPDs of all makers; options that other updaters of the library set
/// are left to these.
///
/// No manager has it unless somebody registers it: what is installed is only told by a status under
/// `kTkCSInstalledOptionsKey`, and most cannot tell it.
class OrbPPDInstallableOptionsUpdater : public OrbPPDDefaultChoiceUpdater,
                                        public ITkPPDStatusReading {
  public:
    static constexpr std::string_view kClassName = "OrbPPDInstallableOptionsUpdater";

    /// Empty: which options there are depends on the PPD.
    std::vector<std::string> optionNames() override;

    /// Whether the PPD has the group.
    bool isApplicableForPPDFile(const OrbPPDFile* PPDFile) override;

    /// What the status says is installed; nothing when it does not say.
    std::optional<OrbPPDDefaultChoices> defaultChoicesFromDeviceWithURI_context(
        std::optional<std::string_view> deviceURI, OrbDictionary* context) override;

    /// The text with the choices that are installed as defaults. Unlike the other updaters of
    /// default choices it edits each option by itself, so that one whose choice the text does not
    /// have keeps none of the others from being set. Null when the status says nothing.
    PPDText updatedPPDContentsForContents_deviceURI_context(
        const PPDText& contents, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override;

    /// The same with the defaults that the options have in `PPDFile`, as far as they are there.
    PPDText updatedPPDContentsForContents_PPDFile_context(const PPDText& contents,
                                                          const OrbPPDFile* PPDFile,
                                                          OrbDictionary* context) override;

    /// Whether the option stands in the group and has the choice, and is no other updater's.
    bool containsChoiceWithName_forOptionWithName_inPPDFile(
        std::string_view choiceName, std::optional<std::string_view> optionName,
        const OrbPPDFile* PPDFile) override;

    /// The defaults of the options that stand in the group.
    OrbPPDOwnedLines ownedLines(std::span<const PPDStatement> before,
                                std::span<const PPDStatement> after) override;

    std::vector<std::string> statusEntriesRead() const override;

    /// The options of the group, in their order, without those of other updaters and those that an
    /// earlier line opens elsewhere.
    static std::vector<std::string> installableOptions(std::span<const PPDStatement> statements);

  private:
    static PPDText textWithChoices(const PPDText& contents, const OrbPPDDefaultChoices& choices);
};

}  // namespace TkPPDUpdating
