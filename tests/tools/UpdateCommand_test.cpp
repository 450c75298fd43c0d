#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/support/FileContents.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/SmallPPD.h"
#include "tests/tools/ToolRun.h"

namespace TkPPDUpdating::Testing {
namespace {

class UpdateCommandTest : public ::testing::Test {
  protected:
    TemporaryDirectory directory_;
    const std::string ppd_ = directory_.write("printer.ppd", kSmallPPD);
    const std::string deviceURI_ = "file://" + directory_.write("printer.json", kDuplexerIn);

    /// Runs "update" on the small PPD with its printer and these arguments.
    ToolRun update(std::vector<std::string> more, const ToolSurroundings& surroundings = {}) const {
        std::vector<std::string> arguments = {"update", ppd_, "--device-uri", deviceURI_};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runTool(arguments, surroundings);
    }

    std::size_t filesInDirectory() const {
        using Iterator = std::filesystem::directory_iterator;
        return static_cast<std::size_t>(std::distance(Iterator(directory_.path()), Iterator()));
    }
};

TEST_F(UpdateCommandTest, WritesTheUpdatedTextAndNothingElse) {
    const ToolRun run = update({});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, kSmallPPDWithDuplexer);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(contentsOfFile(ppd_), kSmallPPD);
}

TEST_F(UpdateCommandTest, WritesTheFileByteForByteWhenNothingChanges) {
    const std::string bytes = "*PPD-Adobe: \"4.3\"\r\n*ModelName: \"M\xC3\xA9tro\"\r\n\n*End";
    const ToolRun run =
        runTool({"update", directory_.write("other.ppd", bytes), "--device-uri", deviceURI_});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, bytes);
}

TEST_F(UpdateCommandTest, TakesADeviceURIRelativeToTheWorkingDirectory) {
    const ToolRun run = runTool({"update", "printer.ppd", "--device-uri", "file:printer.json"},
                                {.directory = directory_.path()});
    EXPECT_EQ(run.output, kSmallPPDWithDuplexer);
}

TEST_F(UpdateCommandTest, TakesTheValuesFromTheInstalledPPDOfAQueue) {
    directory_.write("etc/ppd/office.ppd", kSmallPPDWithDuplexer);
    const ToolRun run =
        runTool({"update", ppd_, "--queue", "office"},
                {.environment = {{"CUPS_SERVERROOT", (directory_.path() / "etc").string()},
                                 {"CUPS_SERVER", "/nonexistent/cups.sock"}}});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, kSmallPPDWithDuplexer);
    EXPECT_EQ(run.errors, "");
}

TEST_F(UpdateCommandTest, WritesIntoTheOutputFileAndSaysWhatChanged) {
    const std::string output = (directory_.path() / "new.ppd").string();
    const ToolRun run = update({"--output", output});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, "Duplexer: Not Installed -> Installed\n");
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(contentsOfFile(output), kSmallPPDWithDuplexer);
    EXPECT_EQ(contentsOfFile(ppd_), kSmallPPD);
}

TEST_F(UpdateCommandTest, WritesIntoThePPDItselfInPlaceAndSaysWhatChanged) {
    const ToolRun run = update({"--in-place"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, "Duplexer: Not Installed -> Installed\n");
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(contentsOfFile(ppd_), kSmallPPDWithDuplexer);
    EXPECT_EQ(filesInDirectory(), 2U);
}

TEST_F(UpdateCommandTest, LeavesAFileThatDoesNotChangeInPlaceAlone) {
    ASSERT_EQ(update({"--in-place"}).exitStatus, 0);
    struct stat before {};
    ASSERT_EQ(::stat(ppd_.c_str(), &before), 0);
    ASSERT_EQ(update({"--in-place"}).exitStatus, 0);
    struct stat after {};
    ASSERT_EQ(::stat(ppd_.c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(contentsOfFile(ppd_), kSmallPPDWithDuplexer);
}

TEST_F(UpdateCommandTest, SaysNothingOfAFileThatDoesNotChange) {
    directory_.write("printer.json", kDuplexerOut);
    EXPECT_EQ(update({"--in-place"}).output, "");
    EXPECT_EQ(update({"--output", (directory_.path() / "new.ppd").string()}).output, "");
}

TEST_F(UpdateCommandTest, SaysWhatChangedInTheUsersLanguage) {
    std::string text(kSmallPPD);
    text +=
        "*de.Translation ZrAutoDuplexerInstalled/Duplexeinheit: \"\"\n"
        "*de.ZrAutoDuplexerInstalled True/Installiert <C3BC>: \"\"\n";
    for (const auto& [variable, line] : std::map<std::string, std::string>{
             {"LC_ALL", "Duplexeinheit: Not Installed -> Installiert \xC3\xBC\n"},
             {"LC_MESSAGES", "Duplexeinheit: Not Installed -> Installiert \xC3\xBC\n"},
             {"LANG", "Duplexeinheit: Not Installed -> Installiert \xC3\xBC\n"},
             {"LC_PAPER", "Duplexer: Not Installed -> Installed\n"}}) {
        directory_.write("printer.ppd", text);
        EXPECT_EQ(update({"--in-place"}, {.environment = {{variable, "de_DE.UTF-8"}}}).output, line)
            << variable;
    }
}

TEST_F(UpdateCommandTest, ShowsControlCharactersOfTheTextsThatItSays) {
    std::string text(kSmallPPD);
    text.replace(text.find("Duplexer:"), 8, "Duplexer<1B>]0;<07><0A>\x1B[2J<E280AE>");
    directory_.write("printer.ppd", text);
    EXPECT_EQ(update({"--in-place"}).output,
              R"(Duplexer\x1B]0;\x07\x0A\x1B[2J\xE2\x80\xAE: Not Installed -> Installed)"
              "\n");
}

TEST_F(UpdateCommandTest, SaysInOneLineEachWhatASamplePrinterWithoutADuplexerChanges) {
    const std::string samples = TKPPDUPDATING_SOURCE_DIR "/samples";
    const ToolRun run = runTool({"update", samples + "/ppd/zr-compact.ppd", "--device-uri",
                                 "file:" + samples + "/status/zr-compact-none.json", "--output",
                                 (directory_.path() / "new.ppd").string()});
    EXPECT_EQ(run.output,
              "ZrNonInstallableDuplex: Unknown -> Not Installed\n"
              "BPECalibrationDue: False -> True\n"
              "Two-Sided: removed, with 24 constraints and 2 page sizes\n");
}

TEST_F(UpdateCommandTest, WritesTheTextAloneWhereTheOutputFileIsStandardOutput) {
    EXPECT_EQ(update({"--output", "/dev/stdout"}).output, kSmallPPDWithDuplexer);
}

TEST_F(UpdateCommandTest, ShowsADiffInsteadOfTheText) {
    const ToolRun run = update({"--diff"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, "--- " + ppd_ + "\n+++ " + ppd_ +
                              "\n@@ -1,6 +1,6 @@\n"
                              " *PPD-Adobe: \"4.3\"\n"
                              " *OpenUI *ZrAutoDuplexerInstalled/Duplexer: Boolean\n"
                              "-*DefaultZrAutoDuplexerInstalled: False\n"
                              "+*DefaultZrAutoDuplexerInstalled: True\n"
                              " *ZrAutoDuplexerInstalled True/Installed: \"\"\n"
                              " *ZrAutoDuplexerInstalled False/Not Installed: \"\"\n"
                              " *CloseUI: *ZrAutoDuplexerInstalled\n");
}

TEST_F(UpdateCommandTest, ShowsNothingAsTheDiffOfAnUnchangedFile) {
    directory_.write("printer.json", kDuplexerOut);
    const ToolRun run = update({"--diff"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, "");
}

TEST_F(UpdateCommandTest, ShowsTheDiffAndWritesInPlaceWhenAskedForBoth) {
    const ToolRun run = update({"--diff", "--in-place"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_NE(run.output.find("+*DefaultZrAutoDuplexerInstalled: True\n"), std::string::npos);
    EXPECT_EQ(contentsOfFile(ppd_), kSmallPPDWithDuplexer);
}

TEST_F(UpdateCommandTest, ShowsAPlainDiffWhenStandardOutputIsNoTerminal) {
    const ToolRun run = update({"--diff"}, {.environment = {{"TERM", "xterm-256color"}}});
    EXPECT_EQ(run.output.find('\033'), std::string::npos);
}

TEST_F(UpdateCommandTest, ColoursTheDiffOnATerminalUnlessNoColorIsSet) {
    const std::string command = std::string(TKPPDUPDATING_TOOL) + " update '" + ppd_ +
                                "' --device-uri '" + deviceURI_ + "' --diff";
    const auto onTerminal = [&](std::map<std::string, std::string> environment) {
        return runCommand({"script", "-qec", command, "/dev/null"},
                          {.environment = std::move(environment)})
            .output;
    };
    const std::string red = "\033[31m-*DefaultZrAutoDuplexerInstalled: False\033[0m";
    const std::string green = "\033[32m+*DefaultZrAutoDuplexerInstalled: True\033[0m";
    const std::string coloured = onTerminal({{"TERM", "xterm"}});
    EXPECT_NE(coloured.find(red), std::string::npos) << coloured;
    EXPECT_NE(coloured.find(green), std::string::npos) << coloured;
    EXPECT_NE(onTerminal({{"TERM", "xterm"}, {"NO_COLOR", ""}}).find(red), std::string::npos);
    EXPECT_EQ(onTerminal({{"TERM", "xterm"}, {"NO_COLOR", "1"}}).find('\033'), std::string::npos);
    EXPECT_EQ(onTerminal({{"TERM", "dumb"}}).find('\033'), std::string::npos);
}

TEST_F(UpdateCommandTest, SendsNoControlCharacterOfThePPDToATerminalEvenWithoutColour) {
    std::string text(kSmallPPD);
    text.insert(text.find('\n') + 1, "*Evil: \"\033]0;title\a\"\n");
    const std::string ppd = directory_.write("evil.ppd", text);
    const std::string command = std::string(TKPPDUPDATING_TOOL) + " update '" + ppd +
                                "' --device-uri '" + deviceURI_ + "' --diff";
    for (const char* variable : {"NO_COLOR=1", "TERM=dumb"}) {
        const std::string output =
            runCommand({"script", "-qec", std::string(variable) + " " + command, "/dev/null"},
                       {.environment = {{"TERM", "xterm"}}})
                .output;
        EXPECT_NE(output.find("+*DefaultZrAutoDuplexerInstalled: True"), std::string::npos);
        EXPECT_NE(output.find("*Evil: \"\\x1B]0;title\\x07\""), std::string::npos) << output;
        EXPECT_EQ(output.find('\033'), std::string::npos) << variable;
    }
}

TEST_F(UpdateCommandTest, RunsOnlyTheNamedClasses) {
    EXPECT_EQ(update({"--only", "OrbPPDDuplexerInstalledUpdater"}).output, kSmallPPDWithDuplexer);
    EXPECT_EQ(update({"--only", "OrbPPDPenConfigUpdater"}).output, kSmallPPD);
    EXPECT_EQ(
        update({"--only", "OrbPPDPenConfigUpdater", "--only", "OrbPPDDuplexerInstalledUpdater"})
            .output,
        kSmallPPDWithDuplexer);
}

TEST_F(UpdateCommandTest, RunsAllButTheSkippedClasses) {
    EXPECT_EQ(update({"--skip", "OrbPPDPenConfigUpdater"}).output, kSmallPPDWithDuplexer);
    EXPECT_EQ(
        update({"--skip", "OrbPPDPenConfigUpdater", "--skip", "OrbPPDDuplexerInstalledUpdater"})
            .output,
        kSmallPPD);
}

TEST_F(UpdateCommandTest, TakesTheFileAfterAClassName) {
    const ToolRun run = runTool(
        {"update", "--device-uri", deviceURI_, "--only", "OrbPPDDuplexerInstalledUpdater", ppd_});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, kSmallPPDWithDuplexer);
}

TEST_F(UpdateCommandTest, WarnsOfASilentDeviceAndGoesOnToStandardOutput) {
    const std::string silent = directory_.write("silent.json", "null");
    for (const std::vector<std::string>& more :
         {std::vector<std::string>{}, std::vector<std::string>{"--without-device"}}) {
        std::vector<std::string> arguments = {"update", ppd_, "--device-uri", "file:" + silent};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const ToolRun run = runTool(arguments);
        EXPECT_EQ(run.exitStatus, 0);
        EXPECT_EQ(run.output, kSmallPPD);
        EXPECT_EQ(run.errors, "tkppdupdate: " + ppd_ + ": warning: the device \"file:" + silent +
                                  "\" gave no status: " + silent +
                                  ": the printer is recorded as silent\n");
    }
}

TEST_F(UpdateCommandTest, ASilentDeviceEndsWithThreeAndNothingIsWrittenIntoAFile) {
    const std::string silent = "file:" + directory_.write("silent.json", "null");
    const std::string output = directory_.write("old.ppd", "old");
    for (const std::vector<std::string>& more : {std::vector<std::string>{"--output", output},
                                                 {"--in-place"},
                                                 {"--require-device"},
                                                 {"--in-place", "--diff"}}) {
        std::vector<std::string> arguments = {"update", ppd_, "--device-uri", silent};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const ToolRun run = runTool(arguments);
        EXPECT_EQ(run.exitStatus, 3);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(lineCount(run.errors), 1U) << run.errors;
        EXPECT_NE(run.errors.find(ppd_), std::string::npos);
    }
    EXPECT_EQ(contentsOfFile(output), "old");
    EXPECT_EQ(contentsOfFile(ppd_), kSmallPPD);
}

TEST_F(UpdateCommandTest, WithoutDeviceWritesIntoAFileWhatTheUpdatersDefine) {
    const std::string silent = "file:" + directory_.write("silent.json", "null");
    const std::string ppd = directory_.write(
        "open.ppd",
        "*PPD-Adobe: \"4.3\"\n*ZrDeviceCapabilities: Unknown\n*ZrAutoDuplexCapability: Unknown\n");
    const ToolRun run =
        runTool({"update", ppd, "--device-uri", silent, "--in-place", "--without-device"});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(lineCount(run.errors), 1U) << run.errors;
    EXPECT_NE(contentsOfFile(ppd).find("*ZrAutoDuplexCapability: True\n"), std::string::npos);
}

TEST_F(UpdateCommandTest, AsksARequiredDeviceEvenWhenNoUpdaterDoes) {
    const std::string plain = directory_.write("plain.ppd", kPlainPPD);
    const std::string silent = "file:" + directory_.write("silent.json", "null");
    EXPECT_EQ(runTool({"update", plain, "--device-uri", silent, "--require-device"}).exitStatus, 3);
    EXPECT_EQ(runTool({"update", plain, "--device-uri", deviceURI_, "--require-device"}).output,
              kPlainPPD);
}

TEST_F(UpdateCommandTest, DoesNotAskForAStatusThatNoUpdaterNeeds) {
    const std::string plain = directory_.write("plain.ppd", kPlainPPD);
    const std::string silent = "file:" + directory_.write("silent.json", "null");
    const std::string output = directory_.write("old.ppd", "old");
    const ToolRun run = runTool({"update", plain, "--device-uri", silent, "--output", output});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(contentsOfFile(output), kPlainPPD);
}

TEST_F(UpdateCommandTest, KeepsWhatTheDeviceDidNotTellAndSaysSoUnlessAllUpdatersRun) {
    directory_.write("printer.json", R"({"Told": []})");
    const ToolRun kept = update({});
    EXPECT_EQ(kept.exitStatus, 0);
    EXPECT_EQ(kept.output, kSmallPPD);
    EXPECT_EQ(kept.errors,
              "tkppdupdate: " + ppd_ + ": kept: duplexer, which the printer did not tell\n");
    const std::string due =
        directory_.write("due.ppd", "*PPD-Adobe: \"4.3\"\n*BPECalibrationDue: False\n");
    EXPECT_EQ(runTool({"update", due, "--device-uri", deviceURI_}).output, contentsOfFile(due));
    const ToolRun all = runTool({"update", due, "--device-uri", deviceURI_, "--all-updaters"});
    EXPECT_EQ(all.output, "*PPD-Adobe: \"4.3\"\n*BPECalibrationDue: True\n");
    EXPECT_EQ(all.errors, "");
}

/// A PPD with room for custom media, and the default of its option.
std::string mediaPPD(const std::string& defaultType) {
    return "*PPD-Adobe: \"4.3\"\n*ZrCustomMediaSupported: True\n"
           "*OpenUI *MediaType/Media Type: PickOne\n*DefaultMediaType: " +
           defaultType +
           "\n*MediaType Plain/Plain Paper: \"\"\n*CloseUI: *MediaType\n"
           "*OpenUI *ZrICCProfileId2/Profile: PickOne\n*DefaultZrICCProfileId2: Auto\n"
           "*ZrICCProfileId2 Auto/Automatic: \"\"\n*CloseUI: *ZrICCProfileId2\n";
}

constexpr const char* kGloss = R"({"name": "Gloss", "mediaID": "1"})";
constexpr const char* kCanvas = R"({"name": "Canvas", "mediaID": "2"})";

std::string recordingOf(const std::string& types) {
    return R"({"CustomMediaTypes": [)" + types + "]}";
}

TEST_F(UpdateCommandTest, IntoAFileADefaultKeepsItsMeaningAndStandardOutputIsAsWritten) {
    const std::string ppd = directory_.write("media.ppd", mediaPPD("custom2"));
    const std::vector<std::string> inPlace = {"update", ppd, "--device-uri", deviceURI_,
                                              "--in-place"};
    directory_.write("printer.json", recordingOf(std::string(kGloss) + "," + kCanvas));
    ASSERT_EQ(runTool(inPlace).exitStatus, 0);
    const std::string first = contentsOfFile(ppd);
    ASSERT_NE(first.find("*MediaType custom2/Canvas:"), std::string::npos);

    directory_.write("printer.json", recordingOf(std::string(kCanvas) + "," + kGloss));
    EXPECT_NE(runTool({"update", ppd, "--device-uri", deviceURI_})
                  .output.find("*MediaType custom1/Canvas:"),
              std::string::npos);
    EXPECT_EQ(runTool({"update", ppd, "--device-uri", deviceURI_, "--diff"}).output, "");

    directory_.write("printer.json", recordingOf(kCanvas));
    ASSERT_EQ(runTool(inPlace).exitStatus, 0);
    EXPECT_NE(contentsOfFile(ppd).find("*DefaultMediaType: custom1\n"), std::string::npos);

    directory_.write("printer.json", recordingOf(kGloss));
    const ToolRun gone = runTool(inPlace);
    EXPECT_EQ(gone.exitStatus, 0) << gone.errors;
    EXPECT_NE(contentsOfFile(ppd).find("*DefaultMediaType: Plain\n"), std::string::npos);
    EXPECT_EQ(gone.errors, "tkppdupdate: " + ppd +
                               ": warning: the default Media Type \"Canvas\" is gone: it is "
                               "\"Plain Paper\" now\n");
}

TEST_F(UpdateCommandTest, FromAQueueADefaultKeepsItsMeaningToo) {
    const std::string ppd = directory_.write("media.ppd", mediaPPD("custom2"));
    directory_.write("printer.json", recordingOf(std::string(kGloss) + "," + kCanvas));
    ASSERT_EQ(runTool({"update", ppd, "--device-uri", deviceURI_, "--in-place"}).exitStatus, 0);
    // Read back from a queue's PPD, a type needs its parent's media ID.
    std::string queue = mediaPPD("Plain");
    queue +=
        "*MediaType custom1/Canvas: \"\"\n"
        "*ZrChoiceProperties MediaType.custom1: \"MediaID=2;ParentMediaID=1;\"\n"
        "*ZrMediaTypeCategory custom/Custom: \"custom1\"\n";
    directory_.write("etc/ppd/office.ppd", queue);
    const ToolRun run =
        runTool({"update", ppd, "--queue", "office", "--in-place"},
                {.environment = {{"CUPS_SERVERROOT", (directory_.path() / "etc").string()},
                                 {"CUPS_SERVER", "/nonexistent/cups.sock"}}});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_NE(contentsOfFile(ppd).find("*DefaultMediaType: custom1\n"), std::string::npos);
}

TEST_F(UpdateCommandTest, RefusesAnUpdateTimeThatCannotStandInALine) {
    for (const std::string time : {"1\"2", "1\n*cupsFilter: x", "\xFF"}) {
        const ToolRun run =
            update({"--in-place"}, {.environment = {{"ZrEPRLastUpdateTime", time}}});
        EXPECT_EQ(run.exitStatus, 1);
        EXPECT_EQ(lineCount(run.errors), 1U);
        EXPECT_NE(run.errors.find("ZrEPRLastUpdateTime: "), std::string::npos) << run.errors;
    }
    EXPECT_EQ(contentsOfFile(ppd_), kSmallPPD);
    EXPECT_EQ(update({}, {.environment = {{"ZrEPRLastUpdateTime", "any time"}}}).exitStatus, 0);
}

TEST_F(UpdateCommandTest, WarnsOfEachTextOfARecordingThatWasDropped) {
    directory_.write("printer.json",
                     R"({"DeviceAccessories": [{"name": "Duplexer", "isInstalled": true},)"
                     R"( {"name": "a\nb"}, {"name": "c\"d"}]})");
    const ToolRun run = update({});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.output, kSmallPPDWithDuplexer);
    EXPECT_EQ(lineCount(run.errors), 2U) << run.errors;
    EXPECT_NE(run.errors.find(ppd_ + ": warning: the device \"" + deviceURI_ + "\": "),
              std::string::npos)
        << run.errors;
}

TEST_F(UpdateCommandTest, FailsWhenStandardOutputTakesNothing) {
    for (const bool isDiff : {false, true}) {
        const std::vector<std::string> more =
            isDiff ? std::vector<std::string>{"--diff", "--in-place"} : std::vector<std::string>{};
        const ToolRun full = update(more, {.redirection = ">/dev/full"});
        EXPECT_EQ(full.exitStatus, 1);
        EXPECT_EQ(full.errors, "tkppdupdate: standard output: No space left on device\n");
        const ToolRun closed = update(more, {.redirection = ">&-"});
        EXPECT_EQ(closed.exitStatus, 1);
        EXPECT_EQ(closed.errors, "tkppdupdate: standard output: Bad file descriptor\n");
        EXPECT_EQ(contentsOfFile(ppd_), kSmallPPD);
    }
}

TEST_F(UpdateCommandTest, LeavesTheFileAloneWhenStandardOutputDoesNotTakeWhatChanged) {
    const ToolRun full = update({"--in-place"}, {.redirection = ">/dev/full"});
    EXPECT_EQ(full.exitStatus, 1);
    EXPECT_EQ(full.errors, "tkppdupdate: standard output: No space left on device\n");
    EXPECT_EQ(contentsOfFile(ppd_), kSmallPPD);
}

TEST_F(UpdateCommandTest, NeverWritesTheResultIntoAnotherFileWhenStandardOutputIsClosed) {
    const std::string output = (directory_.path() / "new.ppd").string();
    const ToolRun run = update({"--output", output}, {.redirection = ">&-"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(contentsOfFile(output), kSmallPPDWithDuplexer);
}

/// A media type whose profile has the name of a choice of the driver's.
constexpr std::string_view kDriversProfile =
    R"({"CustomMediaTypes": [{"name": "Gloss", "mediaID": "1", "parentMediaID": "2",
        "ICCProfile": {"URL": "file:///p/gloss.icc", "qualifierVer2": "Auto"}}]})";

TEST_F(UpdateCommandTest, RefusesToWriteAPPDThatWouldDoHarm) {
    const std::string sample =
        contentsOfFile(TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-inkjet.ppd");
    const std::string ppd = directory_.write("inkjet.ppd", sample);
    const std::string output = (directory_.path() / "out.ppd").string();
    const std::string printer = "file://" + directory_.write("gloss.json", kDriversProfile);
    const std::vector<std::vector<std::string>> ways = {
        {"--in-place"}, {"--output", output}, {"--output", output, "--diff"}};
    for (const auto& way : ways) {
        std::vector<std::string> arguments = {"update", ppd, "--device-uri", printer};
        arguments.insert(arguments.end(), way.begin(), way.end());
        const ToolRun run = runTool(arguments);
        EXPECT_EQ(run.exitStatus, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "tkppdupdate: " + ppd +
                                  ": the updated PPD is refused: ZrICCProfileId2 Auto would be "
                                  "there twice\n");
        EXPECT_EQ(contentsOfFile(ppd), sample);
        EXPECT_FALSE(std::filesystem::exists(output));
    }
    const ToolRun shown = runTool({"update", ppd, "--device-uri", printer});
    EXPECT_EQ(shown.exitStatus, 0) << "to standard output nothing can do harm";
    EXPECT_NE(shown.output, sample);
}

TEST_F(UpdateCommandTest, RefusesToWriteAPPDThatLostAnAttributeWhoseNewLineWouldBeTooLong) {
    const std::string before = "*PPD-Adobe: \"4.3\"\n*ZrMaxSupportedResolution: 600\n*Z: 1\n";
    const std::string ppd = directory_.write("plotter.ppd", before);
    // With "*ZrMaxSupportedResolution: " before it, 255 and 256 bytes.
    const auto resolutionOf = [&](std::size_t length) {
        return "file://" + directory_.write("printer.json", R"({"MaxSupportedResolution": ")" +
                                                                std::string(length, '6') + "\"}");
    };
    const ToolRun refused =
        runTool({"update", ppd, "--device-uri", resolutionOf(229), "--in-place"});
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_EQ(refused.errors, "tkppdupdate: " + ppd +
                                  ": the updated PPD is refused: it would lose a line of "
                                  "ZrMaxSupportedResolution\n");
    EXPECT_EQ(contentsOfFile(ppd), before);
    const ToolRun taken = runTool({"update", ppd, "--device-uri", resolutionOf(228), "--in-place"});
    EXPECT_EQ(taken.exitStatus, 0);
    EXPECT_EQ(contentsOfFile(ppd), "*PPD-Adobe: \"4.3\"\n*ZrMaxSupportedResolution: " +
                                       std::string(228, '6') + "\n*Z: 1\n");
}

TEST_F(UpdateCommandTest, ADuplexUnitOfAnyMakerIsAsTheDuplexerThatThePrinterTells) {
    const std::string PPD =
        "*PPD-Adobe: \"4.3\"\n*OpenGroup: InstallableOptions/Installable Options\n"
        "*OpenUI *Option5/Duplex Unit: Boolean\n*DefaultOption5: False\n"
        "*Option5 False/Not Installed: \"\"\n*Option5 True/Installed: \"\"\n"
        "*CloseUI: *Option5\n*CloseGroup: InstallableOptions\n";
    const std::string file = directory_.write("other.ppd", PPD);
    const ToolRun run = runTool({"update", file, "--device-uri", deviceURI_});
    EXPECT_EQ(run.exitStatus, 0);
    std::string expected = PPD;
    expected.replace(expected.find("Option5: False"), 14, "Option5: True");
    EXPECT_EQ(run.output, expected);
    EXPECT_NE(run.errors.find("Duplex Unit: as its duplexer: Not Installed -> Installed"),
              std::string::npos)
        << run.errors;
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
