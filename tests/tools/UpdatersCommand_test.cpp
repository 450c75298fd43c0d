#include <gtest/gtest.h>

#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/SmallPPD.h"
#include "tests/tools/ToolRun.h"

namespace TkPPDUpdating::Testing {
namespace {

TEST(UpdatersCommandTest, ListsTheFourteenClassesSortedOneALine) {
    const ToolRun run = runTool({"updaters"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.output,
              "OrbPPDCustomMediaUpdater\n"
              "OrbPPDDefaultPageSizeUpdater\n"
              "OrbPPDDeviceCapabilitiesUpdater\n"
              "OrbPPDDuplexerInstalledUpdater\n"
              "OrbPPDEstimatedPagesUpdater\n"
              "OrbPPDLinTablesUpdater\n"
              "OrbPPDLowerTrayInstalledUpdater\n"
              "OrbPPDMaxResolutionUpdater\n"
              "OrbPPDNonInstallableDuplexUpdater\n"
              "OrbPPDPenConfigUpdater\n"
              "OrbPPDPensConfigAdditionalInfoUpdater\n"
              "OrbPPDPensConfigCSLInfoUpdater\n"
              "OrbPPDPensConfigFamilyIDUpdater\n"
              "OrbPPDPensConfigNameUpdater\n");
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
