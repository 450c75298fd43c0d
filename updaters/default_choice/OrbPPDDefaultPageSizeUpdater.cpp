#include "updaters/default_choice/OrbPPDDefaultPageSizeUpdater.h"

#include "core_interface/OrbCoreInterface.h"
#include "ppd/PPDConstants.h"
#include "updaters/default_choice/DefaultLineEditor.h"
#include "updaters/default_choice/UserLocale.h"

namespace TkPPDUpdating {

std::vector<std::string> OrbPPDDefaultPageSizeUpdater::optionNames() {
    return {"PageSize", "PageRegion", "ImageableArea", "PaperDimension"};
}

std::string_view OrbPPDDefaultPageSizeUpdater::defaultPageSizeName() {
    if (!defaultPageSizeName_) {
        const std::string locale = currentLocaleIdentifier();
        defaultPageSizeName_ = locale == "en_US" || locale == "en_US_POSIX" ? "Letter" : "A4";
    }
    return *defaultPageSizeName_;
}

std::string OrbPPDDefaultPageSizeUpdater::currentLocaleIdentifier() const {
    const auto environment = OrbCoreInterface::environment();
    const auto override = environment->valueForVariable("ZrCurrentLocaleIdentifier");
    return override ? *override : userLocaleIdentifier(*environment);
}

std::optional<OrbPPDDefaultChoices>
OrbPPDDefaultPageSizeUpdater::defaultChoicesFromDeviceWithURI_context(
    std::optional<std::string_view> /*deviceURI*/, OrbDictionary* /*context*/) {
    OrbPPDDefaultChoices choices;
    for (std::string& optionName : optionNames()) {
        choices.emplace(std::move(optionName), defaultPageSizeName());
    }
    return choices;
}

bool OrbPPDDefaultPageSizeUpdater::containsChoiceWithName_forOptionWithName_inPPDFile(
    std::string_view choiceName, std::optional<std::string_view> /*optionName*/,
    const OrbPPDFile* PPDFile) {
    return PPDFile && PPDFile->pageSizeForName(choiceName);
}

bool OrbPPDDefaultPageSizeUpdater::isApplicableForPPDFile(const OrbPPDFile* PPDFile) {
    return containsChoiceWithName_forOptionWithName_inPPDFile(defaultPageSizeName(), std::nullopt,
                                                              PPDFile);
}

PPDText OrbPPDDefaultPageSizeUpdater::updatedPPDContentsForContents_PPDFile_context(
    const PPDText& contents, const OrbPPDFile* PPDFile, OrbDictionary* /*context*/) {
    DefaultLineEditor editor(contents);
    for (const std::string& optionName : optionNames()) {
        const std::string defaultName = PPDFormatted(kTkPPDDefaultChoiceNameFormat, {optionName});
        const auto* const attribute = OrbPPDFile::firstAttributeForName(PPDFile, defaultName);
        const auto value = attribute ? attribute->value() : std::nullopt;
        if (value && !editor.setDefaultChoice(optionName, *value)) {
            return nullptr;
        }
    }
    return editor.takeContents();
}

std::optional<OrbPPDUpdatingValues>
OrbPPDDefaultPageSizeUpdater::PPDUpdatingValuesForPPDFile_deviceURI_context(
    const OrbPPDFile* /*PPDFile*/, std::optional<std::string_view> /*deviceURI*/,
    OrbDictionary* /*context*/) {
    return OrbPPDUpdatingValues();
}

std::vector<std::string> OrbPPDDefaultPageSizeUpdater::statusEntriesRead() const {
    return {};
}

}  // namespace TkPPDUpdating
