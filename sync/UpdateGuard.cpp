#include "sync/UpdateGuard.h"

#include <cstddef>
#include <memory>
#include <string>

#include "ppd/PPDStatements.h"
#include "ppd/PPDTextIndex.h"
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
    const PPDTextIndex index(std::make_shared<const std::string>(text));
    const auto values = index.longValues();
    return !values.empty() && values.back().closes == index.size();
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
    return leavesValueOpen(after) && !leavesValueOpen(before)
               ? std::optional<std::string>("a quoted value would never close")
               : std::nullopt;
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
