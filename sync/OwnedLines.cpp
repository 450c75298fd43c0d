#include "sync/OwnedLines.h"

#include <algorithm>
#include <utility>

#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {

namespace {

/// Whether the statement's lines are its own. Where a quote is missing, or one too many, a value
/// goes on over the lines of others up to the next that is left over.
bool endsWithItsValue(const PPDStatement& statement) {
    const bool hasOneLine = statement.lines.find_first_of("\r\n") == std::string_view::npos;
    return hasOneLine ||
           (statement.isQuoted && statement.value.find('"') == std::string_view::npos);
}

}  // namespace

OwnedLines::OwnedLines(const Updaters& updaters, std::span<const PPDStatement> before,
                       std::span<const PPDStatement> after) {
    for (const auto& updater : updaters) {
        if (auto* const owner = dynamic_cast<ITkPPDLineOwnership*>(updater.get())) {
            add(owner->ownedLines(before, after));
        } else {
            ownsAllDefaults_ = true;
        }
    }
    readLanguages(before);
}

void OwnedLines::readLanguages(std::span<const PPDStatement> before) {
    for (const PPDStatement& statement : before) {
        if (statement.keyword == kTkPPDCUPSLanguagesAttributeName) {
            std::string_view rest = statement.value;
            while (!rest.empty()) {
                const std::size_t end = std::min(rest.find(' '), rest.size());
                languages_.insert(rest.substr(0, end));
                rest.remove_prefix(std::min(end + 1, rest.size()));
            }
        }
    }
    languages_.erase(std::string_view());
}

void OwnedLines::add(OrbPPDOwnedLines lines) {
    defaults_.insert(lines.defaultsOfOptions.begin(), lines.defaultsOfOptions.end());
    attributes_.insert(lines.attributes.begin(), lines.attributes.end());
    for (OrbPPDOwnedLines::Choice& choice : lines.choices) {
        codes_.insert_or_assign({std::move(choice.option), std::move(choice.keyword)},
                                std::move(choice.code));
    }
    if (lines.mayTakeAway) {
        mayTakeAway_.push_back(std::move(lines.mayTakeAway));
    }
    if (lines.mayAdd) {
        mayAdd_.push_back(std::move(lines.mayAdd));
    }
}

bool OwnedLines::isAttribute(const PPDStatement& statement) const {
    return statement.optionKeyword.empty() && statement.text.empty() &&
           attributes_.contains(statement.keyword);
}

bool OwnedLines::isTranslationOfAttribute(const PPDStatement& statement) const {
    const std::size_t stop = statement.keyword.find('.');
    return stop != std::string_view::npos && statement.optionKeyword.empty() &&
           languages_.contains(statement.keyword.substr(0, stop)) &&
           attributes_.contains(statement.keyword.substr(stop + 1));
}

bool OwnedLines::isDefault(const PPDStatement& statement) const {
    return statement.isDefault() &&
           (ownsAllDefaults_ || defaults_.contains(statement.optionOfDefault()));
}

const std::string* OwnedLines::codeOfChoice(const PPDStatement& statement) const {
    if (codes_.empty() || statement.optionKeyword.empty()) {
        return nullptr;
    }
    const auto found =
        codes_.find({std::string(statement.keyword), std::string(statement.optionKeyword)});
    return found == codes_.end() ? nullptr : &found->second;
}

bool OwnedLines::mayTakeAway(const PPDStatement& statement) const {
    const bool isOwned =
        isAttribute(statement) || isTranslationOfAttribute(statement) || isDefault(statement) ||
        codeOfChoice(statement) ||
        std::any_of(mayTakeAway_.begin(), mayTakeAway_.end(),
                    [&](const Test& mayTakeAway) { return mayTakeAway(statement); });
    return isOwned && endsWithItsValue(statement);
}

bool OwnedLines::mayAdd(const PPDStatement& statement) const {
    if (isAttribute(statement) || isDefault(statement)) {
        return true;
    }
    const std::string* const code = codeOfChoice(statement);
    return (code && *code == statement.value && statement.isQuoted) ||
           std::any_of(mayAdd_.begin(), mayAdd_.end(),
                       [&](const Test& mayAdd) { return mayAdd(statement); });
}

}  // namespace TkPPDUpdating
