#include "tools/ExplanationReport.h"

#include <gtest/gtest.h>

namespace TkPPDUpdating::Testing {
namespace {

using nlohmann::json;

std::vector<PPDUpdateStep> steps() {
    return {{"OrbPPDDuplexerInstalledUpdater",
             {{"DeviceAccessories.Duplexer",
               "installed",
               {{"DeviceAccessories.Duplexer", "sides-supported", "one-sided,two-sided"}}}},
             {"*DefaultZrAutoDuplexerInstalled: False"},
             {"*DefaultZrAutoDuplexerInstalled: True"}},
            {"OrbPPDDefaultPageSizeUpdater", {}, {"*DefaultPageSize: Letter"}, {}}};
}

TEST(ExplanationReport, EachLineStandsBelowItsUpdaterWithWhatWasRead) {
    EXPECT_EQ(ExplanationReport::lines(steps(), "  "),
              "  OrbPPDDuplexerInstalledUpdater\n"
              "    DeviceAccessories.Duplexer: installed\n"
              "      sides-supported: one-sided,two-sided\n"
              "    -*DefaultZrAutoDuplexerInstalled: False\n"
              "    +*DefaultZrAutoDuplexerInstalled: True\n"
              "  OrbPPDDefaultPageSizeUpdater\n"
              "    -*DefaultPageSize: Letter\n");
    EXPECT_EQ(ExplanationReport::lines({}, "  "), "");
}

TEST(ExplanationReport, NothingOfAPrinterReachesTheTerminalAsItIs) {
    // NOLINTBEGIN(misc-misleading-bidirectional): what it is about.
    const PPDUpdateStep hostile = {"Own\nUpdater",
                                   {{"E\x1B", "v\n+x", {{"E", "a\r", "\xFF\xE2\x80\xAE"}}}},
                                   {"-\x07"},
                                   {"\t"}};
    // NOLINTEND(misc-misleading-bidirectional)
    EXPECT_EQ(ExplanationReport::lines({hostile}, ""),
              "Own\\x0AUpdater\n"
              "  E\\x1B: v\\x0A+x\n"
              "    a\\x0D: \\xFF\\xE2\\x80\\xAE\n"
              "  --\\x07\n"
              "  +\\x09\n");
}

TEST(ExplanationReport, ProgramsGetTheSame) {
    EXPECT_EQ(json(ExplanationReport::JSON(steps())), json::parse(R"([
        {"updater": "OrbPPDDuplexerInstalledUpdater",
         "reads": [{"status": "DeviceAccessories.Duplexer", "value": "installed",
                    "from": [{"attribute": "sides-supported", "value": "one-sided,two-sided"}]}],
         "removed": ["*DefaultZrAutoDuplexerInstalled: False"],
         "added": ["*DefaultZrAutoDuplexerInstalled: True"]},
        {"updater": "OrbPPDDefaultPageSizeUpdater", "reads": [],
         "removed": ["*DefaultPageSize: Letter"], "added": []}])"));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
