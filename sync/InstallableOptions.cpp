#include "sync/InstallableOptions.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <map>
#include <set>

#include "manager/ITkPPDLineOwnership.h"
#include "manager/ITkPPDUpdater.h"
#include "manager/OrbClassTable.h"

namespace TkPPDUpdating {

namespace {

/// Those whose defaults the updater sets: what nobody would set need not be asked.
std::set<std::string, std::less<>> keywordsOfOptions(std::span<const PPDStatement> statements) {
    const auto updater = OrbClassFromName("OrbPPDInstallableOptionsUpdater")->newInstance();
    auto& owner = dynamic_cast<ITkPPDLineOwnership&>(*updater);
    auto options = owner.ownedLines(statements, statements).defaultsOfOptions;
    return {std::make_move_iterator(options.begin()), std::make_move_iterator(options.end())};
}

std::string textOr(std::string_view text, std::string_view keyword) {
    return text.empty() ? std::string(keyword) : decodedPPDTranslation(text);
}

}  // namespace

const InstallableOption::Choice* InstallableOption::choice(std::string_view choiceKeyword) const {
    const auto found = std::ranges::find(choices, choiceKeyword, &Choice::keyword);
    return found == choices.end() ? nullptr : &*found;
}

std::string InstallableOption::textOfChoice(std::string_view choiceKeyword) const {
    const Choice* const found = choice(choiceKeyword);
    return found ? found->text : std::string(choiceKeyword);
}

std::vector<InstallableOption> installableOptionsOf(std::span<const PPDStatement> statements) {
    const auto keywords = keywordsOfOptions(statements);
    std::vector<InstallableOption> options;
    std::map<std::string_view, std::size_t> places;
    for (const PPDStatement& statement : statements) {
        const bool isOpening = statement.keyword == "OpenUI" || statement.keyword == "JCLOpenUI";
        if (isOpening && keywords.contains(statement.option) &&
            places.emplace(statement.option, options.size()).second) {
            options.push_back(
                {std::string(statement.option), textOr(statement.text, statement.option), {}, {}});
        }
    }
    for (const PPDStatement& statement : statements) {
        const auto place = places.find(statement.keyword);
        if (place != places.end() && !statement.optionKeyword.empty()) {
            options[place->second].choices.push_back(
                {std::string(statement.optionKeyword),
                 textOr(statement.text, statement.optionKeyword)});
        }
        const auto ofDefault = places.find(statement.optionOfDefault());
        if (ofDefault != places.end() && options[ofDefault->second].defaultChoice.empty()) {
            options[ofDefault->second].defaultChoice = statement.value;
        }
    }
    return options;
}

}  // namespace TkPPDUpdating
