#include <gtest/gtest.h>

#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/SmallPPD.h"
#include "tests/tools/ToolRun.h"

namespace TkPPDUpdating::Testing {
namespace {

class ValuesCommandTest : public ::testing::Test {
  protected:
    TemporaryDirectory directory_;
    const std::string ppd_ = directory_.write("etc/ppd/office.ppd", kSmallPPD);
    const std::string deviceURI_ = "file://" + directory_.write("printer.json", kDuplexerIn);
    const ToolSurroundings surroundings_ = {
        .environment = {{"CUPS_SERVERROOT", (directory_.path() / "etc").string()},
                        {"CUPS_SERVER", "/nonexistent/cups.sock"}}};
    const std::string expected_ = "{\n  \"DefaultZrAutoDuplexerInstalled\": \"True\"\n}\n";
};

TEST_F(ValuesCommandTest, WritesTheValuesForAFileAsJSON) {
    const ToolRun run = runTool({"values", "--ppd", ppd_, "--device-uri", deviceURI_});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, expected_);
    EXPECT_EQ(run.errors, "");
}

TEST_F(ValuesCommandTest, WritesTheValuesForAQueueAsJSON) {
    const ToolRun run =
        runTool({"values", "--queue", "office", "--device-uri", deviceURI_}, surroundings_);
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, expected_);
    EXPECT_EQ(run.errors, "");
}

TEST_F(ValuesCommandTest, WritesAnEmptyObjectWhenNoUpdaterApplies) {
    const ToolRun run = runTool(
        {"values", "--ppd", directory_.write("plain.ppd", kPlainPPD), "--device-uri", deviceURI_});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, "{}\n");
}

TEST_F(ValuesCommandTest, UsesTheWantedClassesOnly) {
    EXPECT_EQ(runTool({"values", "--ppd", ppd_, "--device-uri", deviceURI_, "--skip",
                       "OrbPPDDuplexerInstalledUpdater"})
                  .output,
              "{}\n");
    EXPECT_EQ(runTool({"values", "--ppd", ppd_, "--device-uri", deviceURI_, "--only",
                       "OrbPPDDuplexerInstalledUpdater"})
                  .output,
              expected_);
}

TEST_F(ValuesCommandTest, HasNoResultForAFileWhenTheDeviceIsSilent) {
    const std::vector<std::string> arguments = {"values", "--ppd", ppd_, "--device-uri",
                                                "file:/nonexistent"};
    const ToolRun run = runTool(arguments);
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "tkppdupdate: " + ppd_ +
                              ": the device \"file:/nonexistent\" gave no status: /nonexistent: "
                              "No such file or directory\n");
}

TEST_F(ValuesCommandTest, EndsWithThreeForAFileWhenARequiredDeviceIsSilent) {
    const ToolRun run =
        runTool({"values", "--ppd", ppd_, "--device-uri", "file:/nonexistent", "--require-device"});
    EXPECT_EQ(run.exitStatus, 3);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(lineCount(run.errors), 1U);
}

TEST_F(ValuesCommandTest, WarnsForAQueueWhenTheDeviceIsSilent) {
    const ToolRun run = runTool(
        {"values", "--queue", "office", "--device-uri", "file:/nonexistent"}, surroundings_);
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, "{}\n");
    EXPECT_EQ(lineCount(run.errors), 1U);
    EXPECT_TRUE(run.errors.starts_with("tkppdupdate: office: warning: ")) << run.errors;
}

TEST_F(ValuesCommandTest, EndsWithThreeForAQueueWhenARequiredDeviceIsSilent) {
    const ToolRun run = runTool(
        {"values", "--queue", "office", "--device-uri", "file:/nonexistent", "--require-device"},
        surroundings_);
    EXPECT_EQ(run.exitStatus, 3);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(lineCount(run.errors), 1U);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
