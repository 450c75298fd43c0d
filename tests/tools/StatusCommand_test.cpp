#include <gtest/gtest.h>

#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/SmallPPD.h"
#include "tests/tools/ToolRun.h"

namespace TkPPDUpdating::Testing {
namespace {

TEST(StatusCommandTest, WritesWhatARecordingHoldsAndWhatItTold) {
    const TemporaryDirectory directory;
    const std::string all = "file:" + directory.write("all.json", kDuplexerOut);
    EXPECT_EQ(runTool({"status", all}).output.find("Told"), std::string::npos);
    const std::string told = R"({
  "Told": [
    "DeviceAccessories",
    "InstalledPensConfiguration.ZrPenDyes"
  ]
}
)";
    const ToolRun run = runTool({"status", "file:" + directory.write("some.json", told)});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, told);
    EXPECT_EQ(run.errors, "");
}

TEST(StatusCommandTest, IgnoresMembersOfARecordingThatResembleNoneOfTheFormat) {
    const TemporaryDirectory directory;
    const ToolRun run = runTool(
        {"status", "file:" + directory.write("more.json", R"({"Comment": 1, "date": "2026-11-22",
            "LinTable": {"timestamp": 7, "clock": "UTC"}, "Resolutions of old": [],
            "InstalledPensConfiguration": {"PPDAttributeValues": {"codename": "x"}}})")});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(run.errors, "");
    EXPECT_NE(run.output.find("\"timestamp\": 7"), std::string::npos) << run.output;
}

TEST(StatusCommandTest, ASilentPrinterEndsWithThree) {
    const TemporaryDirectory directory;
    const std::string silent = directory.write("silent.json", "null");
    const ToolRun run = runTool({"status", "file:" + silent});
    EXPECT_EQ(run.exitStatus, 3);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "tkppdupdate: the device \"file:" + silent + "\": gave no status: " +
                              silent + ": the printer is recorded as silent\n");
}

#ifdef TKPPDUPDATING_WITH_CUPS
TEST(StatusCommandTest, APrinterThatTakesNoConnectionEndsWithThree) {
    const ToolRun run = runTool({"status", "ipp://127.0.0.1:9/ipp/print"});
    EXPECT_EQ(run.exitStatus, 3);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(lineCount(run.errors), 1U);
}
#endif

}  // namespace
}  // namespace TkPPDUpdating::Testing
