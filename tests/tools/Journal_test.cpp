#include "tools/Journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "tests/support/ListeningJournal.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/SmallPPD.h"
#include "tests/tools/ToolRun.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::StartsWith;

TEST(Journal, AFieldIsItsNameItsLengthInEightBytesAndItsValue) {
    EXPECT_EQ(Journal::datagram({{"MESSAGE", "a\nb"}, {"QUEUE", ""}}),
              std::string("MESSAGE\n\3\0\0\0\0\0\0\0a\nb\n", 20) +
                  std::string("QUEUE\n\0\0\0\0\0\0\0\0\n", 15));
    const std::string datagram = Journal::datagram({{"A", std::string(0x10203, 'x')}});
    EXPECT_EQ(datagram.substr(0, 10), std::string("A\n\3\2\1\0\0\0\0\0", 10));
}

TEST(Journal, AnEntryHasTextPriorityProgramAndFields) {
    const ListeningJournal listening;
    const Journal journal(listening.path());
    ASSERT_TRUE(
        journal.add(Journal::Priority::warning, "office: busy", {{"TKPPDUPDATE_QUEUE", "office"}}));
    EXPECT_EQ(listening.datagram(), Journal::datagram({{"MESSAGE", "office: busy"},
                                                       {"PRIORITY", "4"},
                                                       {"SYSLOG_IDENTIFIER", "tkppdupdate"},
                                                       {"TKPPDUPDATE_QUEUE", "office"}}));
}

TEST(Journal, SaysSoWhenItTakesNothing) {
    const TemporaryDirectory folder;
    EXPECT_FALSE(Journal((folder.path() / "none").string()).add(Journal::Priority::error, "a", {}));
    EXPECT_FALSE(Journal(std::string(200, '/')).add(Journal::Priority::error, "a", {}));
    const ListeningJournal listening;
    EXPECT_FALSE(Journal(listening.path())
                     .add(Journal::Priority::error, std::string(std::size_t{64} << 20, 'x'), {}));
    EXPECT_EQ(listening.datagram(), "");
}

/// The tool, run by a shell that has told it that its standard error is the journal's.
ToolRun runOfAService(const std::string& arguments, const std::string& directory) {
    return runCommand({"sh", "-c",
                       "exec 3>&2; JOURNAL_STREAM=$(stat -L -c %d:%i /proc/self/fd/3); "
                       "export JOURNAL_STREAM; exec " TKPPDUPDATING_TOOL " " +
                           arguments},
                      {.directory = directory});
}

TEST(Journal, IsToldThePriorityOfDiagnosticsInAService) {
    const TemporaryDirectory directory;
    directory.write("office.ppd", kSmallPPD);
    directory.write("silent.json", "null");
    EXPECT_THAT(runOfAService("updaters none.ppd", directory.path()).errors,
                StartsWith("<3>tkppdupdate: none.ppd: "));
    EXPECT_THAT(
        runOfAService("update office.ppd --device-uri file:silent.json", directory.path()).errors,
        StartsWith("<4>tkppdupdate: office.ppd: warning: "));
}

TEST(Journal, IsNotBehindAnyOtherStream) {
    const TemporaryDirectory directory;
    for (const std::string stream : {"", "1:2", "journal"}) {
        const ToolRun run =
            runTool({"updaters", "none.ppd"},
                    {.environment = {{"JOURNAL_STREAM", stream}}, .directory = directory.path()});
        EXPECT_THAT(run.errors, StartsWith("tkppdupdate: ")) << stream;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
