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
