#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "manager/ITkPPDStatusReading.h"
#include "updaters/default_choice/OrbPPDDefaultChoiceUpdater.h"

namespace TkPPDUpdating {

/// Makes the paper of the user's country the default: "Letter" for United States English, "A4"
/// otherwise. Asks no device. The defaults of PageSize, PageRegion, ImageableArea and
/// PaperDimension change together or not at all (PPD specification 4.3: media handling).
class OrbPPDDefaultPageSizeUpdater : public OrbPPDDefaultChoiceUpdater, public ITkPPDStatusReading {
  public:
    static constexpr std::string_view kClassName = "OrbPPDDefaultPageSizeUpdater";

    std::vector<std::string> optionNames() override;

    /// "Letter" or "A4". Fixed for the life of the instance once it has been asked for.
    std::string_view defaultPageSizeName();

    /// The environment variable "ZrCurrentLocaleIdentifier" as it is, also when empty; else the
    /// identifier of the user's locale.
    std::string currentLocaleIdentifier() const;

    /// The one page size for all four keywords.
    std::optional<OrbPPDDefaultChoices> defaultChoicesFromDeviceWithURI_context(
        std::optional<std::string_view> deviceURI, OrbDictionary* context) override;

    /// Whether the PPD has the page size; the option does not matter.
    bool containsChoiceWithName_forOptionWithName_inPPDFile(
        std::string_view choiceName, std::optional<std::string_view> optionName,
        const OrbPPDFile* PPDFile) override;

    /// Whether the PPD has the page size of the user's country.
    bool isApplicableForPPDFile(const OrbPPDFile* PPDFile) override;

    /// As inherited, from the default attributes instead of the options of `PPDFile`, because
    /// imageable areas and paper dimensions are no options; a missing default is passed over.
    PPDText updatedPPDContentsForContents_PPDFile_context(const PPDText& contents,
                                                          const OrbPPDFile* PPDFile,
                                                          OrbDictionary* context) override;

    /// Always empty: the page size is not offered as a value.
    std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForPPDFile_deviceURI_context(
        const OrbPPDFile* PPDFile, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override;

    std::vector<std::string> statusEntriesRead() const override;

  private:
    std::optional<std::string_view> defaultPageSizeName_;
};

}  // namespace TkPPDUpdating
