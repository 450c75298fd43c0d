#include "sync/UpdateGuard.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "ppd/PPDStatements.h"
#include "ppd/PPDTextIndex.h"
#include "sync/AddedStatements.h"
#include "sync/OwnedLines.h"
#include "sync/StatementComparison.h"

namespace TkPPDUpdating {

namespace {

/// Whether the text begins with this statement, and not with a blank line or another one.
bool beginsWith(const PPDStatement& first, std::string_view text,
                const std::vector<PPDStatement>& statements) {
    return !statements.empty() && statements.front().lines.data() == text.data() &&
           statements.front().lines == first.lines;
}

/// How many groups open where another one is open.
std::size_t groupsInGroups(const std::vector<PPDStatement>& statements) {
    std::size_t count = 0;
    bool isOpen = false;
    for (const PPDStatement& statement : statements) {
        if (statement.keyword == "OpenGroup") {
            count += isOpen ? 1 : 0;
            isOpen = true;
        } else if (statement.keyword == "CloseGroup") {
            isOpen = false;
        }
    }
    return count;
}

/// Whether a quoted value never closes, by the lines that the parsed model knows, which end with a
/// line feed. libcups ends them with a carriage return, too, so that its statements do not tell.
bool leavesValueOpen(std::string_view text) {
    return PPDTextIndex(std::make_shared<const std::string>(text)).endsInLongValue();
}

/// Of the lines as they end with a line feed, those that go on behind a carriage return. To libcups
/// such a line is several: what is cut from it joins lines, and opens or closes values, that the
/// statements keep apart.
std::set<std::string_view> linesOnBothSidesOfACarriageReturn(std::string_view text) {
    std::set<std::string_view> lines;
    std::size_t at = text.find('\r');
    while (at != std::string_view::npos) {
        const std::size_t begin = text.rfind('\n', at) + 1;
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string_view line = text.substr(begin, end - begin);
        if (line.find_first_not_of('\r', at - begin) != std::string_view::npos) {
            lines.insert(line);
        }
        at = text.find('\r', end);
    }
    return lines;
}

bool hasOnlyLinesOf(const std::set<std::string_view>& lines,
                    const std::set<std::string_view>& others) {
    return std::includes(others.begin(), others.end(), lines.begin(), lines.end());
}

/// The bytes of the longest line with nothing on it, which is no statement.
std::size_t longestBlankLine(std::string_view text) {
    std::size_t longest = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find_first_not_of(" \t\v\f", begin), text.size());
        const bool isBlank = end == text.size() || text[end] == '\n' || text[end] == '\r';
        longest = std::max(longest, isBlank ? end - begin : 0);
        begin = std::min(text.find_first_of("\r\n", end), text.size()) + 1;
    }
    return longest;
}

/// Why libcups, or the next update, would not open the text any more, which its statements alone do
/// not tell.
std::optional<std::string> reasonOfStructure(std::string_view before, std::string_view after,
                                             const std::vector<PPDStatement>& had,
                                             const std::vector<PPDStatement>& has) {
    // It has to be "*PPD-Adobe".
    const bool keepsBeginning =
        had.empty() || !beginsWith(had.front(), before, had) || beginsWith(had.front(), after, has);
    if (!keepsBeginning) {
        return "another line would stand before its first one";
    }
    if (groupsInGroups(has) > groupsInGroups(had)) {
        return "a group would open where another one is open";
    }
    if (leavesValueOpen(after) && !leavesValueOpen(before)) {
        return "a quoted value would never close";
    }
    const std::size_t blanks = longestBlankLine(after);
    if (blanks > kLongestPPDLine && blanks > longestBlankLine(before)) {
        return "a line of blanks would be " + std::to_string(blanks) + " bytes long";
    }
    return hasOnlyLinesOf(linesOnBothSidesOfACarriageReturn(after),
                          linesOnBothSidesOfACarriageReturn(before))
               ? std::nullopt
               : std::optional<std::string>("a line with a carriage return in it would be another");
}

}  // namespace

std::optional<std::string> UpdateGuard::reasonNotToWrite(
    std::string_view before, std::string_view after,
    const std::vector<std::unique_ptr<ITkPPDUpdater>>& updaters) {
    if (before == after) {
        return std::nullopt;
    }
    const auto had = PPDStatementsOfText(before);
    const auto has = PPDStatementsOfText(after);
    const OwnedLines owned(updaters, had, has);
    StatementComparison comparison(had, has, owned);
    auto reason = comparison.reasonNotToMatch();
    if (!reason) {
        reason = comparison.reasonOfChoicesAndDefaults();
    }
    return reason ? reason : reasonOfStructure(before, after, had, has);
}

}  // namespace TkPPDUpdating
