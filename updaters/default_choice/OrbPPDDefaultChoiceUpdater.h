#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "manager/ITkPPDLineOwnership.h"
#include "manager/ITkPPDUpdater.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Option keyword (no asterisk) to the choice keyword that shall be its default.
using OrbPPDDefaultChoices = std::map<std::string, std::string, std::less<>>;

/// Abstract base of the updaters that set the default choice of options ("*DefaultOPTION: CHOICE",
/// PPD specification 4.3). A subclass says which options it cares for (`optionNames`) and which
/// choices the device wants (`defaultChoicesFromDeviceWithURI_context`); the rest stands here.
///
/// Two tests tell whether a choice exists, and they differ on purpose: values are checked against
/// the parsed PPD, a text edit against the text itself, where the choice must have a translation.
///
/// Implementers: keep no state from one PPD to the next.
class TKPPDUPDATING_PUBLIC OrbPPDDefaultChoiceUpdater : public ITkPPDUpdater,
                                                        public ITkPPDLineOwnership {
  public:
    static constexpr std::string_view kClassName = "OrbPPDDefaultChoiceUpdater";  ///< Its name.

    /// The option keywords, without asterisk, in the order in which they are processed. Raises
    /// `OrbInvalidOperationError` here: subclasses answer it.
    virtual std::vector<std::string> optionNames();

    /// The choices that the device wants as defaults; empty when nothing is to change, nothing when
    /// the device gave nothing usable. Raises `OrbInvalidOperationError` here: subclasses answer
    /// it.
    virtual std::optional<OrbPPDDefaultChoices> defaultChoicesFromDeviceWithURI_context(
        std::optional<std::string_view> deviceURI, OrbDictionary* context);

    /// Whether the PPD has at least one of the options.
    bool isApplicableForPPDFile(const OrbPPDFile* PPDFile) override;

    /// The text with the device's choices as defaults, or null when the device gave nothing or one
    /// of them cannot be set.
    PPDText updatedPPDContentsForContents_deviceURI_context(
        const PPDText& contents, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override;

    /// The text with the defaults that the options have in `PPDFile`. Null when one of them is
    /// missing there or cannot be set.
    PPDText updatedPPDContentsForContents_PPDFile_context(const PPDText& contents,
                                                          const OrbPPDFile* PPDFile,
                                                          OrbDictionary* context) override;

    /// The device's choices under "DefaultOPTION", without those that the PPD does not have;
    /// nothing when the device gave nothing.
    std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForPPDFile_deviceURI_context(
        const OrbPPDFile* PPDFile, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) override;

    /// The defaults of its options.
    OrbPPDOwnedLines ownedLines(std::span<const PPDStatement> before,
                                std::span<const PPDStatement> after) override;

    /// Whether the option of the PPD has the choice. False when option or PPD are absent.
    virtual bool containsChoiceWithName_forOptionWithName_inPPDFile(
        std::string_view choiceName, std::optional<std::string_view> optionName,
        const OrbPPDFile* PPDFile);

    /// The text with the option's first default line, all of it, set to the choice; the same text
    /// when the line says so already.
    ///
    /// Null when the text is null, has no line that begins with the option, one space, the choice
    /// and the slash of a translation, or has no default line of the option that ends with a line
    /// feed. The very first line of a text never counts.
    static PPDText updatedContentsForContents_optionWithName_defaultChoice(
        const PPDText& contents, std::string_view optionName, std::string_view defaultChoice);

    /// The text with all of the choices set, as above; null when one of them cannot be. The same
    /// text for an empty map.
    static PPDText contentsForContents_byChangingDefaultChoices(
        const PPDText& contents, const OrbPPDDefaultChoices& defaultChoices);
};

}  // namespace TkPPDUpdating
