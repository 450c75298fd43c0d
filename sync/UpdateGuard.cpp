#include "sync/UpdateGuard.h"

#include "ppd/PPDStatements.h"
#include "sync/OwnedLines.h"
#include "sync/StatementComparison.h"

namespace TkPPDUpdating {

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
    const auto reason = comparison.reasonNotToMatch();
    return reason ? reason : comparison.reasonOfChoicesAndDefaults();
}

}  // namespace TkPPDUpdating
