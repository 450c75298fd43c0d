#include "updaters/default_choice/OrbPPDDefaultChoiceUpdater.h"

#include <algorithm>

#include "core_interface/OrbInvalidOperationError.h"
#include "ppd/PPDConstants.h"
#include "updaters/default_choice/DefaultLineEditor.h"

namespace TkPPDUpdating {

std::vector<std::string> OrbPPDDefaultChoiceUpdater::optionNames() {
    throw OrbInvalidOperationError(kClassName, "optionNames");
}

std::optional<OrbPPDDefaultChoices>
OrbPPDDefaultChoiceUpdater::defaultChoicesFromDeviceWithURI_context(
    std::optional<std::string_view> /*deviceURI*/, OrbDictionary* /*context*/) {
    throw OrbInvalidOperationError(kClassName, "defaultChoicesFromDeviceWithURI_context");
}

bool OrbPPDDefaultChoiceUpdater::isApplicableForPPDFile(const OrbPPDFile* PPDFile) {
    if (!PPDFile) {
        return false;
    }
    const std::vector<std::string> names = optionNames();
    return std::any_of(names.begin(), names.end(), [PPDFile](const std::string& name) {
        return PPDFile->optionForName(name) != nullptr;
    });
}

PPDText OrbPPDDefaultChoiceUpdater::updatedPPDContentsForContents_deviceURI_context(
    const PPDText& contents, std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    const auto defaultChoices = defaultChoicesFromDeviceWithURI_context(deviceURI, context);
    return defaultChoices ? contentsForContents_byChangingDefaultChoices(contents, *defaultChoices)
                          : nullptr;
}

PPDText OrbPPDDefaultChoiceUpdater::updatedPPDContentsForContents_PPDFile_context(
    const PPDText& contents, const OrbPPDFile* PPDFile, OrbDictionary* /*context*/) {
    DefaultLineEditor editor(contents);
    for (const std::string& optionName : optionNames()) {
        const OrbPPDOption* option = PPDFile ? PPDFile->optionForName(optionName) : nullptr;
        const auto defaultChoice = option ? option->defaultChoiceName() : std::nullopt;
        if (!defaultChoice || !editor.setDefaultChoice(optionName, *defaultChoice)) {
            return nullptr;
        }
    }
    return editor.takeContents();
}

std::optional<OrbPPDUpdatingValues>
OrbPPDDefaultChoiceUpdater::PPDUpdatingValuesForPPDFile_deviceURI_context(
    const OrbPPDFile* PPDFile, std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    const auto defaultChoices = defaultChoicesFromDeviceWithURI_context(deviceURI, context);
    if (!defaultChoices) {
        return std::nullopt;
    }
    OrbPPDUpdatingValues values;
    for (const auto& [optionName, choiceName] : *defaultChoices) {
        if (containsChoiceWithName_forOptionWithName_inPPDFile(choiceName, optionName, PPDFile)) {
            values.emplace(PPDFormatted(kTkPPDDefaultChoiceNameFormat, {optionName}), choiceName);
        }
    }
    return values;
}

bool OrbPPDDefaultChoiceUpdater::containsChoiceWithName_forOptionWithName_inPPDFile(
    std::string_view choiceName, std::optional<std::string_view> optionName,
    const OrbPPDFile* PPDFile) {
    const OrbPPDOption* option =
        PPDFile && optionName ? PPDFile->optionForName(*optionName) : nullptr;
    return option && option->choiceForName(choiceName);
}

OrbPPDOwnedLines OrbPPDDefaultChoiceUpdater::ownedLines(std::span<const PPDStatement> /*before*/,
                                                        std::span<const PPDStatement> /*after*/) {
    OrbPPDOwnedLines owned;
    owned.defaultsOfOptions = optionNames();
    return owned;
}

PPDText OrbPPDDefaultChoiceUpdater::updatedContentsForContents_optionWithName_defaultChoice(
    const PPDText& contents, std::string_view optionName, std::string_view defaultChoice) {
    DefaultLineEditor editor(contents);
    editor.setDefaultChoice(optionName, defaultChoice);
    return editor.takeContents();
}

PPDText OrbPPDDefaultChoiceUpdater::contentsForContents_byChangingDefaultChoices(
    const PPDText& contents, const OrbPPDDefaultChoices& defaultChoices) {
    DefaultLineEditor editor(contents);
    for (const auto& [optionName, choiceName] : defaultChoices) {
        if (!editor.setDefaultChoice(optionName, choiceName)) {
            return nullptr;
        }
    }
    return editor.takeContents();
}

}  // namespace TkPPDUpdating
