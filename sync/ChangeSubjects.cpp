#include "sync/ChangeSubjects.h"

#include <algorithm>
#include <array>
#include <optional>

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kPageSize = "PageSize";
constexpr std::string_view kMediaType = "MediaType";
constexpr std::string_view kProfiles = "ZrICCProfileId2";
constexpr std::string_view kDefault = "Default";

/// They say more of the sizes that PageSize names (PPD specification 4.3, section 5.14).
constexpr std::array<std::string_view, 3> kPageSizeKeywords = {"PageRegion", "ImageableArea",
                                                               "PaperDimension"};
constexpr std::array<std::string_view, 3> kConstraintKeywords = {
    "UIConstraints", "NonUIConstraints", "cupsUIConstraints"};
constexpr std::array<std::string_view, 4> kGroupKeywords = {"OpenGroup", "CloseGroup",
                                                            "OpenSubGroup", "CloseSubGroup"};
constexpr std::array<std::string_view, 5> kDeclaringKeywords = {"OpenUI", "JCLOpenUI", "CloseUI",
                                                                "JCLCloseUI", "OrderDependency"};

template <std::size_t count>
bool isOneOf(const std::array<std::string_view, count>& keywords, std::string_view keyword) {
    return std::find(keywords.begin(), keywords.end(), keyword) != keywords.end();
}

const PPDChange::State& eitherState(const PPDChange& change) {
    return change.after ? *change.after : *change.before;
}

/// The option keywords that a value names ("*Duplex None *MediaType Thick").
std::vector<std::string_view> namedOptions(std::string_view value) {
    std::vector<std::string_view> names;
    for (std::size_t star = value.find('*'); star != std::string_view::npos;
         star = value.find('*', star + 1)) {
        const std::size_t end = std::min(value.find_first_of(" \t", star), value.size());
        names.push_back(value.substr(star + 1, end - star - 1));
    }
    return names;
}

/// The option that the line opens, closes or orders; empty when it is none of these.
std::string_view declaredOption(const PPDChange& change) {
    if (!isOneOf(kDeclaringKeywords, change.keyword)) {
        return {};
    }
    const auto names = namedOptions(change.optionKeyword.empty() ? eitherState(change).value
                                                                 : change.optionKeyword);
    return names.empty() ? std::string_view() : names.front();
}

std::optional<std::string_view> defaultChoice(const PPDModelFile& PPD, std::string_view option) {
    const OrbPPDOption* found = PPD.optionForName(option);
    return found ? found->defaultChoiceName() : std::nullopt;
}

}  // namespace

ChangeSubjects::ChangeSubjects(const PPDModelFile& before, const PPDModelFile& after,
                               const std::vector<PPDChange>& changes)
    : before_(before),
      after_(after),
      hasOptionComeOrGone_(std::any_of(
          changes.begin(), changes.end(),
          [this](const PPDChange& change) { return cameOrWent(declaredOption(change)); })) {
    for (const PPDChange& change : changes) {
        sort(change);
    }
}

bool ChangeSubjects::isOption(std::string_view name) const {
    return before_.optionForName(name) || after_.optionForName(name);
}

bool ChangeSubjects::cameOrWent(std::string_view option) const {
    return (before_.optionForName(option) == nullptr) != (after_.optionForName(option) == nullptr);
}

ChangeSubject& ChangeSubjects::subjectOfOption(std::string_view option) {
    const auto [place, isNew] = places_.try_emplace(option, subjects_.size());
    if (isNew) {
        subjects_.emplace_back().option = option;
    }
    return subjects_[place->second];
}

void ChangeSubjects::sort(const PPDChange& change) {
    if (isOneOf(kConstraintKeywords, change.keyword)) {
        sortConstraint(change);
    } else if (!sortDeclaration(change) && !sortDefault(change) && !sortChoice(change)) {
        subjects_.emplace_back().attribute = &change;
    }
}

void ChangeSubjects::sortConstraint(const PPDChange& change) {
    const auto names = namedOptions(eitherState(change).value);
    const auto concerned =
        std::find_if(names.begin(), names.end(), [this](auto name) { return cameOrWent(name); });
    ChangeSubject& subject =
        subjectOfOption(concerned == names.end() ? std::string_view() : *concerned);
    subject.constraintsAdded += change.after ? 1 : 0;
    subject.constraintsRemoved += change.before ? 1 : 0;
}

bool ChangeSubjects::sortDeclaration(const PPDChange& change) {
    if (isOneOf(kGroupKeywords, change.keyword)) {
        return hasOptionComeOrGone_;
    }
    const std::string_view option = declaredOption(change);
    if (!cameOrWent(option)) {
        return false;
    }
    subjectOfOption(option);
    return true;
}

bool ChangeSubjects::sortDefault(const PPDChange& change) {
    std::string_view name = change.keyword;
    if (!name.starts_with(kDefault) || !change.optionKeyword.empty()) {
        return false;
    }
    name.remove_prefix(kDefault.size());
    if (isOneOf(kPageSizeKeywords, name) && followsPageSize(change)) {
        return true;
    }
    if (isOption(name)) {
        subjectOfOption(name).isDefaultChanged = true;
    }
    return isOption(name);
}

bool ChangeSubjects::followsPageSize(const PPDChange& change) const {
    const auto size = defaultChoice(after_, kPageSize);
    return size && size != defaultChoice(before_, kPageSize) && change.after &&
           change.after->value == *size;
}

bool ChangeSubjects::sortChoice(const PPDChange& change) {
    const std::string_view keyword = change.keyword;
    const std::string_view spec = change.optionKeyword;
    if (spec.empty()) {
        return false;
    }
    if (isOneOf(kPageSizeKeywords, keyword) && isOption(kPageSize)) {
        subjectOfOption(kPageSize).choices.insert(spec);
    } else if (isOption(keyword)) {
        subjectOfOption(keyword).choices.insert(spec);
    } else if (keyword == "ZrMediaTypeCategory" && spec == "custom" && isOption(kMediaType)) {
        subjectOfOption(kMediaType).choices.insert("");
    } else if (keyword == "cupsICCProfile" && spec.starts_with("..") && isOption(kProfiles)) {
        subjectOfOption(kProfiles).choices.insert(spec.substr(2));
    } else {
        return keyword == "ZrChoiceProperties" && sortProperties(spec);
    }
    return true;
}

/// The option keyword of properties is "OPTION.CHOICE".
bool ChangeSubjects::sortProperties(std::string_view spec) {
    const std::size_t dot = spec.find('.');
    if (dot == std::string_view::npos || !isOption(spec.substr(0, dot))) {
        return false;
    }
    subjectOfOption(spec.substr(0, dot)).choices.insert(spec.substr(dot + 1));
    return true;
}

}  // namespace TkPPDUpdating
