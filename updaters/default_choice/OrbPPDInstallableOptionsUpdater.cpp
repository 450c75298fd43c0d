#include "updaters/default_choice/OrbPPDInstallableOptionsUpdater.h"

#include <algorithm>
#include <set>
#include <utility>

#include "core_interface/OrbPPDGroupedOption.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbClassTable.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "ppd/PPDStatements.h"
#include "updaters/default_choice/DefaultLineEditor.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kGroup = "InstallableOptions";

using OptionNames = std::set<std::string, std::less<>>;

/// The options of the updaters that every manager has.
const OptionNames& optionsOfOtherUpdaters() {
    static const OptionNames names = [] {
        OptionNames all;
        for (const OrbClass* updaterClass : OrbClassTable()) {
            const auto updater = updaterClass->newInstance();
            if (auto* const other = dynamic_cast<OrbPPDDefaultChoiceUpdater*>(updater.get())) {
                for (std::string& name : other->optionNames()) {
                    all.insert(std::move(name));
                }
            }
        }
        return all;
    }();
    return names;
}

}  // namespace

std::vector<std::string> OrbPPDInstallableOptionsUpdater::optionNames() {
    return {};
}

bool OrbPPDInstallableOptionsUpdater::isApplicableForPPDFile(const OrbPPDFile* PPDFile) {
    if (!PPDFile) {
        return false;
    }
    const auto groups = PPDFile->attributesForName("OpenGroup");
    return std::any_of(groups.begin(), groups.end(), [](const OrbPPDAttribute* group) {
        const auto value = group->value();
        return value && value->substr(0, value->find('/')) == kGroup;
    });
}

std::optional<OrbPPDDefaultChoices>
OrbPPDInstallableOptionsUpdater::defaultChoicesFromDeviceWithURI_context(
    std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    const auto status = OrbPPDUpdatingContext::deviceStatusForURI_inContext(deviceURI, context);
    const auto* const installed =
        status ? status->statusValueForKey<OrbCSInstalledOptions>(kTkCSInstalledOptionsKey)
               : nullptr;
    return installed ? std::optional<OrbPPDDefaultChoices>(*installed) : std::nullopt;
}

PPDText OrbPPDInstallableOptionsUpdater::updatedPPDContentsForContents_deviceURI_context(
    const PPDText& contents, std::optional<std::string_view> deviceURI, OrbDictionary* context) {
    const auto installed = defaultChoicesFromDeviceWithURI_context(deviceURI, context);
    if (!contents || !installed) {
        return nullptr;
    }
    OrbPPDDefaultChoices choices;
    for (std::string& name : installableOptions(PPDStatementsOfText(*contents))) {
        const auto choice = installed->find(name);
        if (choice != installed->end()) {
            choices.emplace(std::move(name), choice->second);
        }
    }
    return textWithChoices(contents, choices);
}

PPDText OrbPPDInstallableOptionsUpdater::updatedPPDContentsForContents_PPDFile_context(
    const PPDText& contents, const OrbPPDFile* PPDFile, OrbDictionary* /*context*/) {
    if (!contents || !PPDFile) {
        return nullptr;
    }
    OrbPPDDefaultChoices choices;
    for (std::string& name : installableOptions(PPDStatementsOfText(*contents))) {
        const OrbPPDOption* const option = PPDFile->optionForName(name);
        const auto choice = option ? option->defaultChoiceName() : std::nullopt;
        if (choice) {
            choices.emplace(std::move(name), *choice);
        }
    }
    return textWithChoices(contents, choices);
}

PPDText OrbPPDInstallableOptionsUpdater::textWithChoices(const PPDText& contents,
                                                         const OrbPPDDefaultChoices& choices) {
    DefaultLineEditor editor(contents);
    for (const auto& [optionName, choiceName] : choices) {
        editor.setDefaultChoiceIfPossible(optionName, choiceName);
    }
    return editor.takeContents();
}

bool OrbPPDInstallableOptionsUpdater::containsChoiceWithName_forOptionWithName_inPPDFile(
    std::string_view choiceName, std::optional<std::string_view> optionName,
    const OrbPPDFile* PPDFile) {
    const OrbPPDOption* const option =
        PPDFile && optionName ? PPDFile->optionForName(*optionName) : nullptr;
    return option && option->choiceForName(choiceName) &&
           OrbPPDGroupedOption::groupNameOf(option) == kGroup &&
           !optionsOfOtherUpdaters().contains(*optionName);
}

OrbPPDOwnedLines OrbPPDInstallableOptionsUpdater::ownedLines(
    std::span<const PPDStatement> before, std::span<const PPDStatement> /*after*/) {
    OrbPPDOwnedLines owned;
    owned.defaultsOfOptions = installableOptions(before);
    return owned;
}

std::vector<std::string> OrbPPDInstallableOptionsUpdater::statusEntriesRead() const {
    return {std::string(kTkCSInstalledOptionsKey)};
}

std::vector<std::string> OrbPPDInstallableOptionsUpdater::installableOptions(
    std::span<const PPDStatement> statements) {
    std::vector<std::string> names;
    OptionNames known = optionsOfOtherUpdaters();
    for (const PPDStatement& statement : statements) {
        const bool isOpening = statement.keyword == "OpenUI" || statement.keyword == "JCLOpenUI";
        const bool isFirst =
            isOpening && !statement.option.empty() && known.emplace(statement.option).second;
        if (isFirst && statement.group == kGroup) {
            names.emplace_back(statement.option);
        }
    }
    return names;
}

}  // namespace TkPPDUpdating
