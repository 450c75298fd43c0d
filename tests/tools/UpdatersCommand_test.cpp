#include <gtest/gtest.h>

#include <numeric>
#include <set>
#include <string>

#include "manager/OrbClassTable.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/SmallPPD.h"
#include "tests/tools/ToolRun.h"

namespace TkPPDUpdating::Testing {
namespace {

TEST(UpdatersCommandTest, ListsTheClassesSortedOneALine) {
    std::set<std::string> lines;
    for (const auto classes : {OrbClassTable(), OrbFurtherClassTable()}) {
        for (const OrbClass* each : classes) {
            lines.insert(std::string(each->name()) + "\n");
        }
    }
    EXPECT_EQ(lines.size(), 15U);
    const ToolRun run = runTool({"updaters"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.output, std::accumulate(lines.begin(), lines.end(), std::string()));
    EXPECT_TRUE(run.output.starts_with("OrbPPDCustomMediaUpdater\nOrbPPDDefaultPageSizeUpdater\n"));
}

TEST(UpdatersCommandTest, ListsThoseThatApplyToAFile) {
    const TemporaryDirectory directory;
    EXPECT_EQ(runTool({"updaters", directory.write("a.ppd", kSmallPPD)}).output,
              "OrbPPDDuplexerInstalledUpdater\n");
}

TEST(UpdatersCommandTest, ListsNothingForAFileThatNoneAppliesTo) {
    const TemporaryDirectory directory;
    const ToolRun run = runTool({"updaters", directory.write("a.ppd", kPlainPPD)});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "");
}

TEST(UpdatersCommandTest, FailsWhenStandardOutputTakesNothing) {
    EXPECT_EQ(runTool({"updaters"}, {.redirection = ">/dev/full"}).exitStatus, 1);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
