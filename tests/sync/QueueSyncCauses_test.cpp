#include "sync/QueueSyncCauses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/CodeBlocks.h"

namespace TkPPDUpdating::Testing {
namespace {

/// The rows of the table of docs/sync.md whose first cell is in backquotes: cause, result, meaning.
std::vector<std::vector<std::string>> documentedCauses() {
    std::vector<std::vector<std::string>> rows;
    std::istringstream lines(textOfSource("docs/sync.md"));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("| `")) {
            std::vector<std::string> cells;
            std::istringstream rest(line.substr(2));
            for (std::string cell; std::getline(rest, cell, '|');) {
                const std::size_t begin = std::min(cell.find_first_not_of(" `"), cell.size());
                cells.push_back(cell.substr(begin, cell.find_last_not_of(" `") + 1 - begin));
            }
            rows.push_back(std::move(cells));
        }
    }
    return rows;
}

std::string nameOf(QueueSyncResult result) {
    using enum QueueSyncResult;
    return result == busy          ? "busy"
           : result == unreachable ? "unreachable"
           : result == unsupported ? "unsupported"
           : result == failed      ? "failed"
           : result == abandoned   ? "abandoned"
                                   : "";
}

TEST(QueueSyncCauses, AreThoseOfTheDocumentationInItsOrder) {
    std::vector<std::vector<std::string>> inCode;
    for (const QueueSyncCause& cause : kQueueSyncCauses) {
        inCode.push_back(
            {std::string(cause.name), nameOf(cause.result), std::string(cause.meaning)});
    }
    EXPECT_EQ(inCode, documentedCauses());
}

TEST(QueueSyncCauses, HaveNamesOfTheirOwnAndGoWithResultsThatNeedOne) {
    std::set<std::string_view> names;
    for (const QueueSyncCause& cause : kQueueSyncCauses) {
        EXPECT_TRUE(names.insert(cause.name).second) << cause.name;
        EXPECT_NE(nameOf(cause.result), "") << cause.name;
        EXPECT_THAT(cause.name, testing::MatchesRegex("[a-z0-9-]+"));
    }
}

TEST(QueueSyncCauses, TellAPrinterThatCannotBeAskedFromOneThatIsSilent) {
    using Cause = OrbCSError::Cause;
    for (const Cause cause : {Cause::malformedURI, Cause::noBackend, Cause::anotherPrinter}) {
        EXPECT_EQ(queueSyncCauseForError(cause).result, QueueSyncResult::unsupported);
    }
    for (const Cause cause :
         {Cause::unknown, Cause::unreadableRecording, Cause::unknownHost, Cause::noConnection,
          Cause::timeout, Cause::accessDenied, Cause::deviceError, Cause::brokenAnswer,
          Cause::notIPP, Cause::notAPrinter}) {
        EXPECT_EQ(queueSyncCauseForError(cause).result, QueueSyncResult::unreachable);
    }
    EXPECT_EQ(queueSyncCauseForError(Cause::cancelled).result, QueueSyncResult::abandoned);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
