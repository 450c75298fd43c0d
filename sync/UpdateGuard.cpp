#include "sync/UpdateGuard.h"

#include "ppd/PPDStatements.h"
#include "sync/OwnedLines.h"
#include "sync/StatementComparison.h"

namespace TkPPDUpdating {

namespace {

/// Whether the text begins with a statement, and not with a blank line.
bool beginsWithStatement(std::string_view text, const std::vector<PPDStatement>& statements) {
    return !statements.empty() && statements.front().lines.data() == text.data();
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
    // libcups opens no PPD whose first line is not its "*PPD-Adobe".
    if (!has.empty() && beginsWithStatement(before, had) && !beginsWithStatement(after, has)) {
        return "it would begin with an empty line";
    }
    const OwnedLines owned(updaters, had, has);
    StatementComparison comparison(had, has, owned);
    const auto reason = comparison.reasonNotToMatch();
    return reason ? reason : comparison.reasonOfChoicesAndDefaults();
}

}  // namespace TkPPDUpdating
