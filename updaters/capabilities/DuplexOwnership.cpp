#include "updaters/capabilities/DuplexOwnership.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "ppd/PPDConstants.h"
#include "updaters/capabilities/PosixRegularExpression.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kTwoSidedGroup = "ZrTwoSidedPrinting";
constexpr std::string_view kConstraint = "*UIConstraints:";
constexpr std::string_view kConstrainedOption = "*Duplex";
constexpr std::string_view kConstraintComment = "*% Duplex <-> ";
constexpr std::string_view kBlanks = " \t\r\n";

/// From the statement that opens the group to the one that closes it; empty when there is no pair.
struct IndexRange {
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Whether the statement is one at which the updater begins or ends to take away: behind the words
/// stands the name of the group, which may go on.
bool isLineOfTwoSidedGroup(const PPDStatement& statement, std::string_view words) {
    return statement.lines.starts_with(words) &&
           statement.lines.substr(words.size()).starts_with(kTwoSidedGroup);
}

/// Whether the name of the group does not go on.
bool namesTwoSidedGroup(const PPDStatement& statement) {
    return statement.value.substr(0, statement.value.find('/')) == kTwoSidedGroup;
}

bool opensTwoSidedGroup(const PPDStatement& statement) {
    return isLineOfTwoSidedGroup(statement, "*OpenGroup: ");
}

/// What the updater takes away, where that is the group and not one whose name only begins so.
IndexRange rangeOfTwoSidedGroup(std::span<const PPDStatement> statements) {
    const auto opens = std::find_if(statements.begin(), statements.end(), opensTwoSidedGroup);
    const auto closes = std::find_if(opens, statements.end(), [](const auto& each) {
        return isLineOfTwoSidedGroup(each, "*CloseGroup: ");
    });
    const bool isGroup =
        closes != statements.end() && namesTwoSidedGroup(*opens) && namesTwoSidedGroup(*closes);
    return isGroup ? IndexRange{opens->index, closes->index + 1} : IndexRange();
}

/// Whether all of the range has gone, not only a part of it: of each of its lines there are as many
/// less as it has.
bool isGone(const IndexRange& range, std::span<const PPDStatement> before,
            std::span<const PPDStatement> after) {
    std::unordered_map<std::string_view, std::ptrdiff_t> left;
    for (const PPDStatement& statement : before.subspan(range.begin, range.end - range.begin)) {
        left.try_emplace(statement.lines, 0);
    }
    const auto add = [&](std::span<const PPDStatement> statements, std::ptrdiff_t count) {
        for (const PPDStatement& statement : statements) {
            const auto found = left.find(statement.lines);
            if (found != left.end()) {
                found->second += count;
            }
        }
    };
    add(before.first(range.begin), 1);
    add(before.subspan(range.end), 1);
    add(after, -1);
    return std::ranges::all_of(left, [](const auto& each) { return each.second >= 0; });
}

/// Whether a line feed, and no carriage return, ends the last line of the statement. Not told of
/// the last statement: only another one shows that the text goes on.
bool endsWithLineFeed(const PPDStatement& statement, std::span<const PPDStatement> statements) {
    return statement.index + 1 < statements.size() &&
           *(statement.lines.data() + statement.lines.size()) == '\n';
}

/// Whether the statement is a constraint that names the option in the words that the updater
/// searches for: the option ends with a blank, or with the line, in front of its line feed.
bool constrainsDuplex(const PPDStatement& statement, std::span<const PPDStatement> statements) {
    const std::string_view lines = statement.lines;
    std::size_t start = lines.starts_with(kConstraint)
                            ? lines.find(kConstrainedOption, kConstraint.size())
                            : std::string_view::npos;
    while (start != std::string_view::npos) {
        const std::size_t end = start + kConstrainedOption.size();
        // The value may stand between quotes, or right behind the colon.
        const bool isFirst = lines.data() + start == statement.value.data();
        const bool isWord = isFirst || kBlanks.find(lines[start - 1]) != std::string_view::npos;
        const bool isEnded =
            end == lines.size() ? endsWithLineFeed(statement, statements) : lines[end] == ' ';
        if (isWord && isEnded) {
            return true;
        }
        start = lines.find(kConstrainedOption, end);
    }
    return false;
}

/// The lines of a statement, and the option and the group that it stands in.
using PlacedLines = std::array<std::string_view, 3>;

PlacedLines placedLines(const PPDStatement& statement) {
    return {statement.lines, statement.option, statement.group};
}

/// A block's lines, which its statements are views of.
struct Block {
    std::string text;
    std::set<PlacedLines> statements;
};

std::unique_ptr<const Block> blockOfText(std::string text) {
    auto block = std::make_unique<Block>();
    block->text = std::move(text);
    for (const PPDStatement& statement : PPDStatementsOfText(block->text)) {
        block->statements.insert(placedLines(statement));
    }
    return block;
}

}  // namespace

std::function<bool(const PPDStatement&)> statementsOfDuplex(std::span<const PPDStatement> before,
                                                            std::span<const PPDStatement> after) {
    const IndexRange range = rangeOfTwoSidedGroup(before);
    const IndexRange group = isGone(range, before, after) ? range : IndexRange();
    return [group, before](const PPDStatement& statement) {
        const bool isInGroup = statement.index >= group.begin && statement.index < group.end;
        return isInGroup || statement.lines.starts_with(kConstraintComment) ||
               constrainsDuplex(statement, before);
    };
}

std::function<bool(const PPDStatement&)> statementsThatMatch(
    const std::optional<std::string>& expression) {
    auto compiled = expression ? PosixRegularExpression::compiled(*expression) : std::nullopt;
    if (!compiled) {
        return [](const PPDStatement&) { return false; };
    }
    const auto shared = std::make_shared<const PosixRegularExpression>(*std::move(compiled));
    return [shared](const PPDStatement& statement) {
        return shared->textByRemovingMatchingLines(makePPDText(std::string(statement.lines)))
            ->empty();
    };
}

std::function<bool(const PPDStatement&)> statementsOfBlock(
    std::function<std::optional<std::string>()> block) {
    return [makeText = std::move(block), made = std::make_shared<std::unique_ptr<const Block>>()](
               const PPDStatement& statement) {
        if (!*made) {
            *made = blockOfText(makeText().value_or(std::string()));
        }
        return (*made)->statements.contains(placedLines(statement));
    };
}

std::optional<std::string> CUPSVersionOfStatements(std::span<const PPDStatement> statements) {
    const auto found = std::find_if(statements.begin(), statements.end(), [](const auto& each) {
        return each.keyword == kTkPPDCUPSVersionAttributeName && each.optionKeyword.empty();
    });
    return found == statements.end() ? std::nullopt : std::optional<std::string>(found->value);
}

}  // namespace TkPPDUpdating
