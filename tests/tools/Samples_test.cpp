// The sample printers through the command line.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "tests/samples/SamplePrinters.h"
#include "tests/support/FileContents.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/ToolRun.h"

namespace TkPPDUpdating::Testing {
namespace {

/// A user in Germany, and an update time that stands still.
const std::map<std::string, std::string> kUser = {{"LC_ALL", "de_DE.UTF-8"},
                                                  {"ZrEPRLastUpdateTime", "252532800"},
                                                  {"CUPS_SERVER", "/nonexistent/cups.sock"}};

TEST(SamplesTest, UpdateOnItsOwnOutputChangesNothing) {
    for (const auto& [printer, states] : sampleStates()) {
        for (const std::string& state : states) {
            const TemporaryDirectory directory;
            const std::string deviceURI = "file://" + recordingPathOf(printer, state);
            const ToolRun first = runTool({"update", PPDPathOf(printer), "--device-uri", deviceURI},
                                          {.environment = kUser});
            ASSERT_EQ(first.exitStatus, 0) << first.errors;
            EXPECT_NE(first.output, textOfFile(PPDPathOf(printer))) << printer << " " << state;
            const ToolRun second = runTool({"update", directory.write("new.ppd", first.output),
                                            "--device-uri", deviceURI, "--diff"},
                                           {.environment = kUser});
            EXPECT_EQ(second.exitStatus, 0);
            EXPECT_EQ(second.output, "") << printer << " " << state;
        }
    }
}

TEST(SamplesTest, PatchMakesTheUpdatedTextOfTheDiff) {
    for (const auto& [printer, states] : sampleStates()) {
        for (const std::string& state : states) {
            const TemporaryDirectory directory;
            directory.write("p.ppd", textOfFile(PPDPathOf(printer)));
            const std::vector<std::string> update = {"update", "p.ppd", "--device-uri",
                                                     "file://" + recordingPathOf(printer, state)};
            const ToolSurroundings surroundings = {.environment = kUser,
                                                   .directory = directory.path()};
            const std::string updated = runTool(update, surroundings).output;
            std::vector<std::string> diff = update;
            diff.emplace_back("--diff");
            directory.write("p.diff", runTool(diff, surroundings).output);
            ASSERT_EQ(runCommand({"patch", "-p0", "--input=p.diff"}, surroundings).exitStatus, 0);
            EXPECT_EQ(contentsOfFile((directory.path() / "p.ppd").string()), updated);
        }
    }
}

/// What the values of the ink-jet with everything in it must be, from its recording.
const nlohmann::json kInkjetValues = {{"BPECalibrationDue", "False"},
                                      {"DefaultZrAutoDuplexerInstalled", "True"},
                                      {"DefaultZrLowerTrayInstalled", "True"},
                                      {"DefaultZrPenConfig", "SixPens"},
                                      {"ZrEPRLastUpdate", "252532800"},
                                      {"ZrEPRMaxPageCounts", "300,90"},
                                      {"ZrEPRMinPageCounts", "150,40"},
                                      {"ZrEPRPageTypes", "Text,Photo"},
                                      {"ZrEPRStates", "0,1"},
                                      {"ZrMaxSupportedResolution", "1200"},
                                      {"ZrPenDyes", "C,M,Y,K,c,m"},
                                      {"ZrPensConfigName", "SixPens"}};

void expectInkjetValues(const ToolRun& run) {
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(run.errors, "");
    const auto values = nlohmann::json::parse(run.output, nullptr, false);
    ASSERT_TRUE(values.is_object()) << run.output;
    for (const auto& [key, value] : kInkjetValues.items()) {
        EXPECT_EQ(values.value(key, nlohmann::json()), value) << key;
    }
    // Sorted: the order in which a parser that sorts would write them is the order of the text.
    EXPECT_EQ(values.dump(2) + "\n", run.output);
}

TEST(SamplesTest, ValuesOfAPPDWithARecordingAreJSON) {
    expectInkjetValues(runTool({"values", "--ppd", PPDPathOf("zr-inkjet"), "--device-uri",
                                "file://" + recordingPathOf("zr-inkjet", "all")},
                               {.environment = kUser}));
}

TEST(SamplesTest, ValuesOfAQueueInTheServerRootAreJSON) {
    const TemporaryDirectory directory;
    directory.write("ppd/inkjet.ppd", textOfFile(PPDPathOf("zr-inkjet")));
    auto environment = kUser;
    environment["CUPS_SERVERROOT"] = directory.path();
    expectInkjetValues(runTool({"values", "--queue", "inkjet", "--device-uri",
                                "file://" + recordingPathOf("zr-inkjet", "all")},
                               {.environment = environment}));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
