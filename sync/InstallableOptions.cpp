#include "sync/InstallableOptions.h"

#include <algorithm>
#include <cstddef>
#include <map>

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kGroup = "InstallableOptions";

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
    std::vector<InstallableOption> options;
    std::map<std::string_view, std::size_t> places;
    for (const PPDStatement& statement : statements) {
        const bool isOpening = statement.keyword == "OpenUI" || statement.keyword == "JCLOpenUI";
        if (isOpening && statement.group == kGroup && !statement.option.empty() &&
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
