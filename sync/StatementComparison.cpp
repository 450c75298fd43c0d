#include "sync/StatementComparison.h"

#include <algorithm>
#include <array>
#include <set>

#include "sync/AddedStatements.h"
#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

/// Negative, 0 or positive as the first is less, equal or greater, ASCII letters in any case.
int comparedIgnoringCase(std::string_view left, std::string_view right) {
    for (std::size_t at = 0; at < left.size() && at < right.size(); ++at) {
        const int difference = static_cast<unsigned char>(inASCIILowerCase(left[at])) -
                               static_cast<unsigned char>(inASCIILowerCase(right[at]));
        if (difference != 0) {
            return difference;
        }
    }
    return left.size() < right.size() ? -1 : left.size() > right.size() ? 1 : 0;
}

/// The choice that a default names; a text behind it does not count.
std::string_view choiceOfDefault(const PPDStatement& statement) {
    return statement.value.substr(0, statement.value.find('/'));
}

using Names = std::set<std::string_view>;

bool opensOption(const PPDStatement& statement) {
    return statement.keyword == "OpenUI" || statement.keyword == "JCLOpenUI";
}

Names optionsOf(std::span<const PPDStatement> statements) {
    Names options;
    for (const PPDStatement& statement : statements) {
        if (opensOption(statement)) {
            options.insert(statement.option);
        }
    }
    return options;
}

bool isPageSizeOption(std::string_view keyword) {
    return keyword == "PageSize" || keyword == "PageRegion";
}

bool tellsOfPageSize(const PPDStatement& statement) {
    constexpr std::array<std::string_view, 4> kKeywords = {"PageSize", "PageRegion",
                                                           "ImageableArea", "PaperDimension"};
    return !statement.optionKeyword.empty() &&
           std::ranges::find(kKeywords, statement.keyword) != kKeywords.end();
}

std::string lostDefault(std::string_view option) {
    return "the default of " + std::string(option) + " would be lost, which belongs to the user";
}

std::string lostLine(const PPDStatement& statement) {
    return statement.isDefault() ? lostDefault(statement.optionOfDefault())
                                 : "it would lose a line of " + nameOfStatement(statement);
}

}  // namespace

bool StatementComparison::Key::operator<(const Key& other) const {
    const int ofKeywords = comparedIgnoringCase(keyword, other.keyword);
    return ofKeywords != 0 ? ofKeywords < 0
                           : comparedIgnoringCase(optionKeyword, other.optionKeyword) < 0;
}

// Matching the statements.

std::size_t StatementComparison::nextThatMustStay() {
    staying_ = std::max(staying_, at_);
    while (staying_ < had_.size() && owned_.mayTakeAway(had_[staying_])) {
        ++staying_;
    }
    return staying_;
}

/// The next statement before with those lines, among those that may be taken away.
std::optional<std::size_t> StatementComparison::nextEqual(const PPDStatement& statement) {
    if (placesOfLines_.empty()) {
        for (const PPDStatement& each : had_) {
            placesOfLines_[each.lines].push_back(each.index);
        }
    }
    const auto found = placesOfLines_.find(statement.lines);
    if (found == placesOfLines_.end()) {
        return std::nullopt;
    }
    const auto place = std::lower_bound(found->second.begin(), found->second.end(), at_);
    const bool isReachable = place != found->second.end() && *place < nextThatMustStay();
    return isReachable ? std::optional(*place) : std::nullopt;
}

void StatementComparison::giveUpBefore(std::size_t place) {
    for (; at_ < place; ++at_) {
        gone_.push_back(&had_[at_]);
    }
}

/// Matches the statement with that one before, which has the same lines.
std::optional<std::string> StatementComparison::take(std::size_t place,
                                                     const PPDStatement& statement) {
    giveUpBefore(place);
    ++at_;
    const PPDStatement& same = had_[place];
    return same.option == statement.option && same.group == statement.group
               ? std::nullopt
               : std::optional("the line of " + nameOfStatement(statement) +
                               " would belong to another option or group");
}

std::optional<std::string> StatementComparison::add(const PPDStatement& statement) {
    isAdded_[statement.index] = true;
    added_.push_back(&statement);
    return reasonNotToAdd(statement, owned_);
}

std::optional<std::string> StatementComparison::match(const PPDStatement& statement) {
    if (at_ < had_.size() && had_[at_].lines == statement.lines) {
        return take(at_, statement);
    }
    const std::size_t next = nextThatMustStay();
    if (next < had_.size() && had_[next].lines == statement.lines) {
        return take(next, statement);
    }
    if (owned_.mayAdd(statement)) {
        return add(statement);
    }
    const auto place = nextEqual(statement);
    return place ? take(*place, statement) : reasonOfMismatch(statement);
}

std::optional<std::string> StatementComparison::reasonNotToMatch() {
    for (const PPDStatement& statement : has_) {
        if (auto reason = match(statement)) {
            return reason;
        }
    }
    const std::size_t next = nextThatMustStay();
    if (next < had_.size()) {
        return lostLine(had_[next]);
    }
    giveUpBefore(next);
    return std::nullopt;
}

/// For a statement that is neither one before nor one that an updater may add.
std::string StatementComparison::reasonOfMismatch(const PPDStatement& statement) {
    const std::size_t next = nextThatMustStay();
    const PPDStatement* const lost = next < had_.size() ? &had_[next] : nullptr;
    // A line that stands further on shows that those before it are missing.
    const auto places = placesOfLines_.find(statement.lines);
    if (lost && places != placesOfLines_.end() && places->second.back() > next) {
        return lostLine(*lost);
    }
    const bool isOther = lost && !lost->keyword.empty() && lost->keyword == statement.keyword &&
                         lost->optionKeyword == statement.optionKeyword;
    if (isOther) {
        return statement.isDefault()
                   ? lostDefault(statement.optionOfDefault())
                   : "the line of " + nameOfStatement(statement) + " would be another";
    }
    return "it would get a new line of " + nameOfStatement(statement);
}

// What the changes mean for choices and defaults.

StatementComparison::StatementsOfKeys StatementComparison::statementsOfInterest() const {
    StatementsOfKeys statements;
    for (const auto* const list : {&added_, &gone_}) {
        for (const PPDStatement* const statement : *list) {
            if (!statement->optionKeyword.empty()) {
                statements.try_emplace({statement->keyword, statement->optionKeyword});
            } else if (statement->isDefault()) {
                statements.try_emplace({statement->optionOfDefault(), choiceOfDefault(*statement)});
            }
        }
    }
    for (const PPDStatement& statement : has_) {
        const auto found = statement.optionKeyword.empty()
                               ? statements.end()
                               : statements.find({statement.keyword, statement.optionKeyword});
        if (found != statements.end()) {
            found->second.push_back(&statement);
        }
    }
    return statements;
}

std::optional<std::string> StatementComparison::reasonOfDoubles(
    const StatementsOfKeys& statements) const {
    for (const PPDStatement* const statement : added_) {
        if (statement->optionKeyword.empty()) {
            continue;
        }
        const auto& list = statements.at({statement->keyword, statement->optionKeyword});
        if (list.front() != statement && isAdded_[list.front()->index]) {
            continue;  // looked at with the first of them
        }
        // Two media types may share a profile; what opens an option comes once.
        const bool isAlone = list.size() == 1 || !opensOption(*statement);
        const bool areSame =
            isAlone && std::all_of(list.begin(), list.end(), [&](const auto* each) {
                return isAdded_[each->index] && each->lines == statement->lines;
            });
        if (!areSame) {
            return nameOfStatement(*statement) + " would be there twice";
        }
    }
    return std::nullopt;
}

std::optional<std::string> StatementComparison::reasonOfAttributes() const {
    std::map<std::string_view, std::ptrdiff_t> more;
    for (const PPDStatement* const statement : added_) {
        more[statement->keyword] += owned_.isAttribute(*statement) ? 1 : 0;
    }
    for (const PPDStatement* const statement : gone_) {
        more[statement->keyword] -= owned_.isAttribute(*statement) ? 1 : 0;
    }
    // An updater replaces its attribute. A new value that the PPD has no room for leaves none.
    for (const PPDStatement* const statement : gone_) {
        if (more[statement->keyword] < 0) {
            return lostLine(*statement);
        }
    }
    std::erase_if(more, [](const auto& each) { return each.second == 0; });
    for (const PPDStatement& statement : had_) {
        // One may come where there was none.
        const auto found = more.empty() ? more.end() : more.find(statement.keyword);
        if (found != more.end() && owned_.isAttribute(statement)) {
            return nameOfStatement(statement) + " would be there twice";
        }
    }
    const auto twice =
        std::find_if(more.begin(), more.end(), [](const auto& each) { return each.second > 1; });
    return twice == more.end() ? std::nullopt
                               : std::optional(std::string(twice->first) + " would be there twice");
}

std::optional<std::string> StatementComparison::reasonOfNewDefaults(
    const StatementsOfKeys& statements) const {
    std::map<std::string_view, const PPDStatement*> changed;
    for (const PPDStatement* const statement : added_) {
        if (!statement->isDefault()) {
            continue;
        }
        const auto choices =
            statements.find({statement->optionOfDefault(), choiceOfDefault(*statement)});
        if (choices == statements.end() || choices->second.empty()) {
            changed.emplace(statement->optionOfDefault(), statement);
        }
    }
    for (const PPDStatement& statement : has_) {
        // Of an option without choices nothing can be told.
        if (!changed.empty() && !statement.optionKeyword.empty() &&
            changed.contains(statement.keyword)) {
            return "the default of " + std::string(statement.keyword) +
                   " would name a choice that there is not";
        }
    }
    return std::nullopt;
}

std::map<std::string_view, std::string_view> StatementComparison::defaultsAfter() const {
    std::map<std::string_view, std::string_view> choices;
    for (const PPDStatement& statement : has_) {
        if (statement.isDefault()) {
            choices.emplace(statement.optionOfDefault(), choiceOfDefault(statement));
        }
    }
    return choices;
}

std::optional<std::string> StatementComparison::reasonOfLostDefaults(
    const StatementsOfKeys& statements) const {
    const auto defaults =
        gone_.empty() ? std::map<std::string_view, std::string_view>() : defaultsAfter();
    for (const PPDStatement* const statement : gone_) {
        const auto is = defaults.find(statement->keyword);
        const bool isDefault = is != defaults.end() && !statement->optionKeyword.empty() &&
                               is->second == statement->optionKeyword;
        if (isDefault && statements.at({statement->keyword, statement->optionKeyword}).empty()) {
            return lostDefault(statement->keyword);
        }
    }
    return std::nullopt;
}

std::optional<std::string> StatementComparison::reasonOfNumberOfDefaults() const {
    std::map<std::string_view, std::ptrdiff_t> more;
    for (const PPDStatement* const statement : added_) {
        more[statement->optionOfDefault()] += 1;
    }
    for (const PPDStatement* const statement : gone_) {
        more[statement->optionOfDefault()] -= 1;
    }
    more.erase(std::string_view());
    std::erase_if(more, [](const auto& each) { return each.second == 0; });
    const auto optionsBefore = more.empty() ? Names() : optionsOf(had_);
    const auto optionsAfter = more.empty() ? Names() : optionsOf(has_);
    for (const auto& [option, count] : more) {
        // A default comes and goes with its option only.
        const bool wasThere = optionsBefore.contains(option);
        const bool isThere = optionsAfter.contains(option);
        if (count < 0 && (isThere || !wasThere)) {
            return lostDefault(option);
        }
        if (count > 0 && (wasThere || !isThere)) {
            return "it would get a new line of Default" + std::string(option);
        }
    }
    return std::nullopt;
}

/// libcups takes the text of a group from where it opens first.
std::optional<std::string> StatementComparison::reasonOfGroups() const {
    Names opened;
    for (const PPDStatement& statement : has_) {
        if (statement.keyword != "OpenGroup") {
            continue;
        }
        if (isAdded_[statement.index]) {
            opened.insert(statement.group);
        } else if (opened.contains(statement.group)) {
            return "a new line of " + nameOfStatement(statement) +
                   " would stand before the one of " + std::string(statement.group) +
                   " that there is";
        }
    }
    return std::nullopt;
}

/// A size of which libcups does not read all has no width, no height or no margins.
std::optional<std::string> StatementComparison::reasonOfPageSizes() const {
    std::map<std::string_view, const PPDStatement*> sizes;
    for (const PPDStatement* const statement : gone_) {
        if (tellsOfPageSize(*statement)) {
            sizes.emplace(statement->optionKeyword, statement);
        }
    }
    for (const PPDStatement& statement : has_) {
        const auto gone = sizes.empty() || !tellsOfPageSize(statement)
                              ? sizes.end()
                              : sizes.find(statement.optionKeyword);
        if (gone != sizes.end()) {
            return lostLine(*gone->second) + ", and keep one of " + std::string(statement.keyword);
        }
    }
    return std::nullopt;
}

/// A choice outside of its option may make that to libcups: in front of it, with another order than
/// the one that the opening makes, and without an opening at all, where the option is the page
/// size, which libcups knows by itself.
std::optional<std::string> StatementComparison::reasonOfChoicesOutside() const {
    std::optional<Names> options;
    for (const PPDStatement* const statement : gone_) {
        if (statement->optionKeyword.empty() || statement->option == statement->keyword) {
            continue;
        }
        if (!options) {
            options = optionsOf(had_);
        }
        if (options->contains(statement->keyword) || isPageSizeOption(statement->keyword)) {
            return lostLine(*statement) + " that stands outside of its option";
        }
    }
    return std::nullopt;
}

std::optional<std::string> StatementComparison::reasonOfChoicesAndDefaults() const {
    const auto statements = statementsOfInterest();
    auto reason = reasonOfDoubles(statements);
    if (!reason) {
        reason = reasonOfGroups();
    }
    if (!reason) {
        reason = reasonOfAttributes();
    }
    if (!reason) {
        reason = reasonOfNumberOfDefaults();
    }
    if (!reason) {
        reason = reasonOfPageSizes();
    }
    if (!reason) {
        reason = reasonOfChoicesOutside();
    }
    if (!reason) {
        reason = reasonOfNewDefaults(statements);
    }
    return reason ? reason : reasonOfLostDefaults(statements);
}

}  // namespace TkPPDUpdating
