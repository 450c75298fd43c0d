#include "sync/OptionsOfAccessories.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/OrbCSStatusValue.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDStatements.h"
#include "resources/PropertyListReader.h"
#include "resources/ResourceFolder.h"

namespace TkPPDUpdating {

namespace {

struct Rule {
    std::string text;
    std::string installed;
    std::string notInstalled;
    std::string accessory;
};

/// Nothing when the list is not as it should be.
std::optional<std::vector<Rule>> rulesOfList(const PropertyList& list) {
    const auto* const entries = list.as<PropertyList::Array>();
    std::vector<Rule> rules;
    for (const PropertyList& entry : entries ? *entries : PropertyList::Array()) {
        const auto* const text = entry.stringForKey("Text");
        const auto* const installed = entry.stringForKey("Installed");
        const auto* const notInstalled = entry.stringForKey("NotInstalled");
        const auto* const accessory = entry.stringForKey("Accessory");
        if (!text || !installed || !notInstalled || !accessory) {
            return std::nullopt;
        }
        rules.push_back({*text, *installed, *notInstalled, *accessory});
    }
    return rules.empty() ? std::nullopt : std::optional(std::move(rules));
}

std::vector<Rule> readRules() {
    constexpr std::string_view kFileName = "TkPPDUpdatingInstallableOptions.plist";
    const auto folder = ResourceFolder::path();
    const auto list =
        folder
            ? PropertyListReader::propertyListWithContentsOfFile((*folder + "/").append(kFileName))
            : std::nullopt;
    auto rules = list ? rulesOfList(*list) : std::nullopt;
    return std::move(rules).value_or(std::vector<Rule>());
}

/// The keyword of the only choice with that text; null when there is none, or several.
const std::string* keywordOfText(const InstallableOption& option, const std::string& text) {
    const std::string* keyword = nullptr;
    for (const InstallableOption::Choice& choice : option.choices) {
        if (choice.text == text) {
            if (keyword) {
                return nullptr;
            }
            keyword = &choice.keyword;
        }
    }
    return keyword;
}

std::optional<bool> isInstalled(const OrbCSDeviceStatus& status, const std::string& accessory) {
    const auto* const all =
        status.statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey);
    const bool isTold = OrbCSPartialStatus::isTold(
        OrbCSPartialStatus::toldEntriesOf(status),
        OrbCSPartialStatus::entryForPart(kTkCSDeviceAccessoriesKey, accessory));
    if (!all || !isTold) {
        return std::nullopt;
    }
    const auto found =
        std::ranges::find(*all, std::optional(accessory), &OrbCSDeviceAccessory::name);
    return found == all->end() ? std::nullopt : std::optional(found->isInstalled);
}

}  // namespace

OptionsOfAccessories::OptionsOfAccessories(const PPDModelFile& PPD) {
    const std::vector<Rule> rules = readRules();
    // Parsing costs more than looking whether there is any use in it.
    const bool mayHaveOne = std::ranges::any_of(rules, [&PPD](const Rule& rule) {
        return PPD.text()->find("/" + rule.text + ":") != std::string::npos;
    });
    if (!mayHaveOne) {
        return;
    }
    for (InstallableOption& option : installableOptionsOf(PPDStatementsOfText(*PPD.text()))) {
        const auto rule = std::ranges::find(rules, option.text, &Rule::text);
        const auto* const installed =
            rule == rules.end() ? nullptr : keywordOfText(option, rule->installed);
        const auto* const notInstalled =
            rule == rules.end() ? nullptr : keywordOfText(option, rule->notInstalled);
        if (installed && notInstalled && option.choices.size() == 2) {
            std::string yes = *installed;
            std::string no = *notInstalled;
            options_.push_back({std::move(option), rule->accessory, std::move(yes), std::move(no)});
        }
    }
}

std::vector<InstalledOptionAnswer> OptionsOfAccessories::answersOfStatus(
    const OrbCSDeviceStatus& status) const {
    std::vector<InstalledOptionAnswer> answers;
    for (const Option& each : options_) {
        if (const auto isThere = isInstalled(status, each.accessory)) {
            answers.push_back(answeredOption(each.option, "duplexer",
                                             *isThere ? each.installed : each.notInstalled));
        }
    }
    return answers;
}

}  // namespace TkPPDUpdating
