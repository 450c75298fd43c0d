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

TEST_F(ValuesCommandTest, EndsWithThreeForAFileWhenTheDeviceIsSilent) {
    const std::string silent = directory_.write("silent.json", "null");
    for (const std::string& PPD : {ppd_, directory_.write("plain.ppd", kPlainPPD)}) {
        const ToolRun run = runTool({"values", "--ppd", PPD, "--device-uri", "file:" + silent});
        EXPECT_EQ(run.exitStatus, 3);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "tkppdupdate: " + PPD + ": the device \"file:" + silent +
                                  "\" gave no status: " + silent +
                                  ": the printer is recorded as silent\n");
    }
}

TEST_F(ValuesCommandTest, WarnsForAQueueWhenTheDeviceIsSilentUnlessItIsRequired) {
    const std::vector<std::string> arguments = {"values", "--queue", "office", "--device-uri",
                                                "file:" + directory_.write("silent.json", "null")};
    const ToolRun run = runTool(arguments, surroundings_);
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, "{}\n");
    EXPECT_EQ(lineCount(run.errors), 1U);
    EXPECT_TRUE(run.errors.starts_with("tkppdupdate: office: warning: ")) << run.errors;
    std::vector<std::string> requiring = arguments;
    requiring.emplace_back("--require-device");
    const ToolRun required = runTool(requiring, surroundings_);
    EXPECT_EQ(required.exitStatus, 3);
    EXPECT_EQ(required.output, "");
    EXPECT_EQ(lineCount(required.errors), 1U);
}

TEST_F(ValuesCommandTest, LeavesOutWhatTheDeviceDidNotTellUnlessAllUpdatersRun) {
    const std::string ppd = directory_.write("etc/ppd/due.ppd",
                                             "*PPD-Adobe: \"4.3\"\n*BPECalibrationDue: False\n"
                                             "*ZrMaxSupportedResolution: 600\n");
    const std::string deviceURI =
        "file:" + directory_.write("some.json", R"({"MaxSupportedResolution": 1200,
                                                    "Told": ["MaxSupportedResolution"]})");
    for (const std::vector<std::string>& PPD :
         {std::vector<std::string>{"--ppd", ppd}, {"--queue", "due"}}) {
        const std::vector<std::string> arguments = {"values", PPD[0], PPD[1], "--device-uri",
                                                    deviceURI};
        const ToolRun run = runTool(arguments, surroundings_);
        EXPECT_EQ(run.exitStatus, 0);
        EXPECT_EQ(run.output, "{\n  \"ZrMaxSupportedResolution\": \"1200\"\n}\n");
        EXPECT_EQ(run.errors, "tkppdupdate: " + PPD[1] +
                                  ": kept: calibration, which the printer did not tell\n");
        std::vector<std::string> all = arguments;
        all.emplace_back("--all-updaters");
        EXPECT_EQ(runTool(all, surroundings_).output,
                  "{\n  \"BPECalibrationDue\": \"True\",\n"
                  "  \"ZrMaxSupportedResolution\": \"1200\"\n}\n");
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
