// The tool against a real scheduler and a real printer, as an administrator runs it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <csignal>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/real/ChildProcess.h"
#include "tests/real/LoopbackPort.h"
#include "tests/real/PrivateScheduler.h"
#include "tests/real/SimulatedPrinter.h"
#include "tests/support/FileContents.h"
#include "tests/support/HostileIPPResponder.h"
#include "tests/support/RunProgram.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string kInkjetPPD = TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-inkjet.ppd";
const std::string kOfficePPD = TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-office.ppd";

constexpr const char* kFullPrinter =
    "ATTR keyword sides-supported one-sided,two-sided-long-edge,two-sided-short-edge\n"
    "ATTR keyword media-source-supported auto,tray-1,tray-2\n"
    "ATTR resolution printer-resolution-supported 300dpi,4800x1200dpi\n";
constexpr const char* kBarePrinter =
    "ATTR keyword sides-supported one-sided\n"
    "ATTR keyword media-source-supported auto,main,manual\n"
    "ATTR resolution printer-resolution-supported 300dpi,4800x1200dpi\n";

ProgramResult runTool(std::vector<std::string> arguments, const std::string& home) {
    arguments.insert(arguments.begin(), TKPPDUPDATING_TOOL);
    ProgramSurroundings surroundings;
    surroundings.environment = {{"HOME", home},
                                {"LC_ALL", "C"},
                                {"CUPS_SERVER", std::nullopt},
                                {"ZrCurrentLocaleIdentifier", std::nullopt}};
    return runProgram(arguments, surroundings);
}

class SyncRoundTrip : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(PrivateScheduler::missingPrograms() + SimulatedPrinter::missingPrograms(), "");
        scheduler_ = std::make_unique<PrivateScheduler>();
    }

    ProgramResult sync(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"sync", "--server", scheduler_->server()});
        return runTool(arguments, scheduler_->directory().path().string());
    }

    /// One line of "lpoptions -l": the option with its choices, the default marked by an asterisk.
    std::string shownOption(const std::string& queueName, const std::string& option) const {
        const std::string all =
            scheduler_->runClient({"lpoptions", "-p", queueName, "-l"}).standardOutput;
        const std::size_t begin = all.find(option + "/");
        return begin == std::string::npos ? "" : all.substr(begin, all.find('\n', begin) - begin);
    }

    std::unique_ptr<PrivateScheduler> scheduler_;
};

TEST_F(SyncRoundTrip, ThePrintersAccessoriesBecomeTheQueuesDefaultsAndGoAgain) {
    SimulatedPrinter printer(kFullPrinter);
    scheduler_->addQueue("inkjet", printer.URI(), kInkjetPPD);
    for (const char* setting : {"MediaType=PhotoGlossy", "job-sheets-default=none,none"}) {
        ASSERT_EQ(scheduler_->runClient({"lpadmin", "-p", "inkjet", "-o", setting}).exitStatus, 0);
    }
    ASSERT_THAT(shownOption("inkjet", "ZrAutoDuplexerInstalled"), HasSubstr("*False"));
    ASSERT_THAT(shownOption("inkjet", "MediaType"), HasSubstr("*PhotoGlossy"));

    const ProgramResult first = sync({"inkjet"});
    EXPECT_EQ(first.exitStatus, 0) << first.standardError;
    EXPECT_THAT(first.standardOutput, HasSubstr("inkjet: updated\n"));
    EXPECT_THAT(first.standardOutput,
                HasSubstr("\n  Automatic Duplexer: Not Installed -> Installed\n"));
    EXPECT_THAT(first.standardOutput, HasSubstr("\n  Lower Tray: Not Installed -> Installed\n"));
    EXPECT_THAT(first.standardOutput, HasSubstr("1 queue: 1 updated\n"));
    EXPECT_THAT(shownOption("inkjet", "ZrAutoDuplexerInstalled"), HasSubstr("*True"));
    EXPECT_THAT(shownOption("inkjet", "ZrLowerTrayInstalled"), HasSubstr("*True"));
    EXPECT_THAT(contentsOfFile(scheduler_->PPDPath("inkjet")),
                HasSubstr("\n*ZrMaxSupportedResolution: 4800\n"));

    const std::string installed = contentsOfFile(scheduler_->PPDPath("inkjet"));
    EXPECT_EQ(sync({"inkjet"}).standardOutput,
              "inkjet: unchanged\n  kept: custom media types, ZrPenActualDropVolumes, "
              "ZrPenBriskDropVolumes, ZrPenDropVolumes, ZrPenDyes, ZrPenEverydayStatus, "
              "ZrPenFamilyIDs, ZrPenHasPrintheadDefect, ZrPenInkSufficient, "
              "ZrPenNominalDropVolumes, ZrPensConfigName, pens configuration, calibration, pages "
              "left, which the printer did not tell\n1 queue: 1 unchanged\n");
    EXPECT_EQ(contentsOfFile(scheduler_->PPDPath("inkjet")), installed);

    printer.setAttributes(kBarePrinter);
    EXPECT_EQ(sync({"inkjet"}).exitStatus, 0);
    EXPECT_THAT(shownOption("inkjet", "ZrAutoDuplexerInstalled"), HasSubstr("*False"));
    EXPECT_THAT(shownOption("inkjet", "ZrLowerTrayInstalled"), HasSubstr("*False"));

    EXPECT_THAT(shownOption("inkjet", "MediaType"), HasSubstr("*PhotoGlossy"));
}

/// The lines of a PPD that begin with "*" and one of these keywords.
std::vector<std::string> linesOf(const std::string& PPD, const std::vector<std::string>& keywords) {
    std::vector<std::string> lines;
    std::istringstream stream(PPD);
    for (std::string line; std::getline(stream, line);) {
        const bool isWanted = std::ranges::any_of(
            keywords, [&line](const std::string& each) { return line.starts_with("*" + each); });
        if (isWanted) {
            lines.push_back(line);
        }
    }
    return lines;
}

/// The beginnings of keywords whose lines IPP cannot tell.
const std::vector<std::string> kNotToldOverIPP = {"ZrPenActualDropVolumes",
                                                  "ZrPenBriskDropVolumes",
                                                  "ZrPenDropVolumes",
                                                  "ZrPenEverydayStatus",
                                                  "ZrPenFamilyIDs",
                                                  "ZrPenHasPrintheadDefect",
                                                  "ZrPenNominalDropVolumes",
                                                  "ZrPensConfigName",
                                                  "DefaultZrPenConfig",
                                                  "BPECalibrationDue",
                                                  "ZrEPR",
                                                  "DefaultPageSize"};

TEST_F(SyncRoundTrip, AFirstRunOverIPPLeavesWhatIPPCannotTell) {
    SimulatedPrinter printer(
        std::string(kFullPrinter) +
        "ATTR octetString printer-supply \"type=inkCartridge;level=80;colorantname=cyan;\","
        "\"type=inkCartridge;level=0;colorantname=black;\"\n"
        "ATTR text printer-supply-description \"Cyan ink\",\"Black ink\"\n"
        "ATTR collection media-col-database {\n  MEMBER name media-type \"My Gloss\"\n}\n");
    scheduler_->addQueue("inkjet", printer.URI(), kInkjetPPD);
    const std::string before = contentsOfFile(scheduler_->PPDPath("inkjet"));
    const ProgramResult run = sync({"inkjet"});
    EXPECT_EQ(run.exitStatus, 0) << run.standardError;
    EXPECT_THAT(run.standardOutput,
                HasSubstr("  kept: ZrPenActualDropVolumes, ZrPenBriskDropVolumes, "
                          "ZrPenDropVolumes, ZrPenEverydayStatus, ZrPenFamilyIDs, "
                          "ZrPenHasPrintheadDefect, ZrPenNominalDropVolumes, ZrPensConfigName, "
                          "pens configuration, calibration, pages left, which the printer did not "
                          "tell\n"));
    const std::string after = contentsOfFile(scheduler_->PPDPath("inkjet"));
    EXPECT_GE(linesOf(before, kNotToldOverIPP).size(), 17U);
    EXPECT_EQ(linesOf(after, kNotToldOverIPP), linesOf(before, kNotToldOverIPP));
    EXPECT_EQ(linesOf(after, {"ZrPenDyes", "ZrPenInkSufficient"}),
              (std::vector<std::string>{"*ZrPenDyes: C,K", "*ZrPenInkSufficient: 1,0"}));
    EXPECT_THAT(after, HasSubstr("*MediaType custom1/My Gloss:"));
    EXPECT_THAT(sync({"inkjet"}).standardOutput, HasSubstr("inkjet: unchanged\n"));

    const ProgramResult all = sync({"inkjet", "--all-updaters"});
    EXPECT_THAT(all.standardOutput, HasSubstr("inkjet: updated\n"));
    EXPECT_THAT(all.standardOutput, Not(HasSubstr("kept: ")));
    EXPECT_THAT(contentsOfFile(scheduler_->PPDPath("inkjet")),
                HasSubstr("\n*BPECalibrationDue: True\n"));
}

TEST_F(SyncRoundTrip, AnAnswerThatTellsLessTakesNothingAway) {
    SimulatedPrinter printer(
        std::string(kFullPrinter) +
        "ATTR collection media-col-database {\n  MEMBER name media-type \"My Gloss\"\n},{\n"
        "  MEMBER name media-type \"My Canvas\"\n}\n");
    scheduler_->addQueue("inkjet", printer.URI(), kInkjetPPD);
    ASSERT_EQ(sync({"inkjet"}).exitStatus, 0);
    const std::string installed = contentsOfFile(scheduler_->PPDPath("inkjet"));
    ASSERT_THAT(installed, HasSubstr("*MediaType custom2/My Canvas:"));
    for (const char* less :
         {"ATTR keyword media-source-supported auto,tray-1,tray-2\n",
          "ATTR keyword sides-supported one-sided,two\"sided\n",
          "ATTR collection media-col-database {\n  MEMBER name media-type \"My Gloss\"\n},{\n"
          "  MEMBER name media-type \"My: Canvas\"\n}\n"}) {
        printer.setAttributes(less);
        const ProgramResult run = sync({"inkjet"});
        EXPECT_EQ(run.exitStatus, 0) << run.standardOutput;
        EXPECT_THAT(run.standardOutput, HasSubstr("inkjet: unchanged\n  kept: ")) << less;
        EXPECT_EQ(contentsOfFile(scheduler_->PPDPath("inkjet")), installed) << less;
    }
}

TEST_F(SyncRoundTrip, TheDefaultFollowsItsMedium) {
    const auto record = [this](const std::string& types) {
        return scheduler_->directory().write(
            "printer.json",
            R"({"CustomMediaTypes": [)" + types + R"(], "Told": ["CustomMediaTypes"]})");
    };
    const std::string gloss = R"({"name": "Gloss", "mediaID": "1"})";
    const std::string canvas = R"({"name": "Canvas", "mediaID": "2"})";
    scheduler_->addQueue("inkjet", "file://" + record(gloss + "," + canvas), kInkjetPPD);
    ASSERT_EQ(sync({"inkjet"}).exitStatus, 0);
    ASSERT_EQ(
        scheduler_->runClient({"lpadmin", "-p", "inkjet", "-o", "MediaType=custom2"}).exitStatus,
        0);

    record(canvas + "," + gloss);
    EXPECT_THAT(sync({"inkjet"}).standardOutput, HasSubstr("inkjet: unchanged\n"));
    EXPECT_THAT(shownOption("inkjet", "MediaType"), HasSubstr("*custom2"));

    record(canvas);
    EXPECT_EQ(sync({"inkjet"}).exitStatus, 0);
    EXPECT_THAT(shownOption("inkjet", "MediaType"), HasSubstr("*custom1"));
    EXPECT_THAT(contentsOfFile(scheduler_->PPDPath("inkjet")),
                HasSubstr("*MediaType custom1/Canvas:"));

    record(gloss);
    const ProgramResult gone = sync({"inkjet"});
    EXPECT_EQ(gone.exitStatus, 0) << gone.standardOutput;
    EXPECT_THAT(gone.standardOutput,
                HasSubstr("the default Media Type \"Canvas\" is gone: it is \"Plain"));
    EXPECT_THAT(shownOption("inkjet", "MediaType"), HasSubstr("*Plain"));
}

TEST_F(SyncRoundTrip, NothingElseOfTheQueueMoves) {
    SimulatedPrinter printer(kFullPrinter);
    scheduler_->addQueue("office", printer.URI(), kOfficePPD);
    for (const std::vector<std::string>& change : std::vector<std::vector<std::string>>{
             {"lpadmin", "-p", "office", "-L", "Room 1", "-D", "The office's"},
             {"lpadmin", "-p", "office", "-o", "number-up-default=2"},
             {"lpadmin", "-p", "office", "-o", "printer-is-shared=false", "-u", "deny:mallory"},
             {"cupsdisable", "office"},
             {"cupsreject", "office"}}) {
        ASSERT_EQ(scheduler_->runClient(change).exitStatus, 0) << change.front();
    }
    const auto described = [this] {
        std::vector<std::string> words;
        std::istringstream options(
            scheduler_->runClient({"lpoptions", "-p", "office"}).standardOutput);
        for (std::string word; options >> word;) {
            // The scheduler sets them itself when it takes a PPD.
            if (!word.starts_with("printer-state-reasons=") && !word.starts_with("printer-type=")) {
                words.push_back(word);
            }
        }
        return words;
    };
    const auto before = described();
    ASSERT_THAT(before, testing::IsSupersetOf({"number-up=2", "printer-is-accepting-jobs=false",
                                               "printer-is-shared=false", "printer-state=5"}));
    ASSERT_THAT(sync({"office"}).standardOutput, HasSubstr("office: updated\n"));
    EXPECT_EQ(described(), before);
}

TEST_F(SyncRoundTrip, ASecondRunInstallsNothing) {
    SimulatedPrinter printer(kFullPrinter);
    scheduler_->addQueue("office", printer.URI(), kOfficePPD);
    ASSERT_EQ(sync({"office"}).exitStatus, 0);
    const std::string log = (scheduler_->directory().path() / "access_log").string();
    const auto installations = [&log] {
        const std::string text = contentsOfFile(log);
        std::size_t count = 0;
        for (std::size_t at = text.find("CUPS-Add-Modify-Printer"); at != std::string::npos;
             at = text.find("CUPS-Add-Modify-Printer", at + 1)) {
            ++count;
        }
        return count;
    };
    const std::size_t before = installations();
    ASSERT_GE(before, 2U);  // lpadmin's, and the first run's.
    EXPECT_EQ(sync({"office"}).standardOutput,
              "office: unchanged\n  kept: pages left, which the printer did not tell\n"
              "1 queue: 1 unchanged\n");
    EXPECT_EQ(installations(), before);
}

TEST_F(SyncRoundTrip, ADryRunShowsTheDiffAndInstallsNothing) {
    SimulatedPrinter printer(kFullPrinter);
    scheduler_->addQueue("inkjet", printer.URI(), kInkjetPPD);
    const std::string before = contentsOfFile(scheduler_->PPDPath("inkjet"));
    const ProgramResult run = sync({"--dry-run", "--diff", "inkjet"});
    EXPECT_EQ(run.exitStatus, 0) << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr("inkjet: would be updated\n"));
    EXPECT_THAT(run.standardOutput, HasSubstr("\n-*DefaultZrLowerTrayInstalled: False\n"));
    EXPECT_THAT(run.standardOutput, HasSubstr("\n+*DefaultZrLowerTrayInstalled: True\n"));
    EXPECT_EQ(contentsOfFile(scheduler_->PPDPath("inkjet")), before);
}

TEST_F(SyncRoundTrip, AnExplanationNamesUpdaterStatusAttributeAndLinesAndInstallsNothing) {
    SimulatedPrinter printer(kFullPrinter);
    scheduler_->addQueue("inkjet", printer.URI(), kInkjetPPD);
    const std::string before = contentsOfFile(scheduler_->PPDPath("inkjet"));
    const ProgramResult run = sync({"inkjet", "--explain"});
    EXPECT_EQ(run.exitStatus, 0) << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr("inkjet: would be updated\n"));
    EXPECT_THAT(run.standardOutput, HasSubstr("\n  Lower Tray: Not Installed -> Installed\n"));
    EXPECT_THAT(run.standardOutput, HasSubstr("\n  OrbPPDLowerTrayInstalledUpdater\n"
                                              "    DeviceAccessories.Tray2: installed\n"
                                              "      media-source-supported: auto,tray-1,tray-2\n"
                                              "    -*DefaultZrLowerTrayInstalled: False\n"
                                              "    +*DefaultZrLowerTrayInstalled: True\n"));
    EXPECT_THAT(run.standardOutput,
                HasSubstr("\n    MaxSupportedResolution: 4800\n"
                          "      printer-resolution-supported: 300dpi,4800x1200dpi\n"));
    EXPECT_EQ(contentsOfFile(scheduler_->PPDPath("inkjet")), before);

    const ProgramResult forPrograms = sync({"inkjet", "--explain", "--json"});
    EXPECT_THAT(forPrograms.standardOutput,
                HasSubstr(R"({"updater":"OrbPPDLowerTrayInstalledUpdater","reads":[{"status":)"
                          R"("DeviceAccessories.Tray2","value":"installed","from":[{"attribute":)"
                          R"("media-source-supported","value":"auto,tray-1,tray-2"})"));
    EXPECT_EQ(contentsOfFile(scheduler_->PPDPath("inkjet")), before);
}

TEST_F(SyncRoundTrip, AReportOfItsOwnRunShowsEveryQueueAndInstallsNothing) {
    SimulatedPrinter printer(kFullPrinter);
    scheduler_->addQueue("a-office", printer.URI(), kOfficePPD);
    scheduler_->addQueue("b-raw", printer.URI(), "");
    scheduler_->addQueue("c-web", "https://127.0.0.1:9/", kOfficePPD);
    const std::string before = contentsOfFile(scheduler_->PPDPath("a-office"));
    const std::string page = (scheduler_->directory().path() / "page.html").string();
    const std::string home = scheduler_->directory().path().string();
    const ProgramResult run =
        runTool({"report", "--html", page, "--all", "--server", scheduler_->server()}, home);
    EXPECT_EQ(run.exitStatus, 0) << run.standardError;
    const std::string ofOwnRun = contentsOfFile(page);
    for (const char* text : {"<strong>a-office</strong>", ">would be updated<",
                             ": Not Installed -&gt; Installed<", "<li>lower tray: installed</li>",
                             ">it is a raw queue, which has no PPD<", ">cause: no-backend<"}) {
        EXPECT_THAT(ofOwnRun, HasSubstr(text));
    }
    EXPECT_EQ(contentsOfFile(scheduler_->PPDPath("a-office")), before);

    const std::string JSON = scheduler_->directory().write(
        "print1.json", sync({"--all", "--dry-run", "--json"}).standardOutput);
    ASSERT_EQ(runTool({"report", "--html", page, JSON}, home).exitStatus, 0);
    const std::string ofFile = contentsOfFile(page);
    EXPECT_THAT(ofFile, HasSubstr("print1"));
    const auto rowsOf = [](const std::string& text) {
        const std::size_t begin = text.find("<strong>a-office");
        return text.substr(begin, text.rfind("</table>") - begin);
    };
    EXPECT_EQ(rowsOf(ofFile), rowsOf(ofOwnRun));
}

TEST_F(SyncRoundTrip, AllQueuesGetALineAndOneThatIsNotInStepIsExitStatus4) {
    SimulatedPrinter printer(kFullPrinter);
    scheduler_->addQueue("a-office", printer.URI(), kOfficePPD);
    scheduler_->addQueue("b-raw", printer.URI(), "");
    scheduler_->addQueue("c-web", "https://127.0.0.1:9/", kOfficePPD);
    const ProgramResult run = sync({"--all", "--jobs", "1", "--json"});
    EXPECT_EQ(run.exitStatus, 4);
    EXPECT_THAT(run.standardOutput, HasSubstr(R"({"queue":"a-office","result":"updated",)"));
    EXPECT_THAT(run.standardOutput,
                HasSubstr(R"({"queue":"b-raw","result":"skipped","changed":[],"changes":[],)"
                          R"("reason":"it is a raw queue, which has no PPD",)"));
    EXPECT_THAT(
        run.standardOutput,
        HasSubstr(R"({"queue":"c-web","result":"unsupported","changed":[],"changes":[],"cause":)"
                  R"("no-backend",)"));
    EXPECT_THAT(run.standardOutput, HasSubstr(R"(no backend for the scheme \"https\")"));
}

TEST_F(SyncRoundTrip, APrinterThatCannotBeAskedIsAskedWhereTheUserSays) {
    SimulatedPrinter printer(kFullPrinter);
    scheduler_->addQueue("cable", "usb://Zr/Office%2020", kOfficePPD);
    scheduler_->addQueue("second", "socket://127.0.0.1:9101", kOfficePPD);
    const ProgramResult alone = sync({"--all"});
    EXPECT_EQ(alone.exitStatus, 4);
    EXPECT_EQ(alone.standardOutput,
              "cable: unsupported: its printer cannot be asked: no backend for the scheme "
              "\"usb\"; name another place to ask with --status-uri cable=URI\n"
              "second: unsupported: its printer cannot be asked: port 9101 may lead to another "
              "printer than the host's own; name another place to ask with --status-uri "
              "second=URI\n2 queues: 2 unsupported\n");

    const std::string file = scheduler_->directory().write(
        "places", "# The printers of this server\n\ncable = " + printer.URI() +
                      "  # upstairs\r\nsecond=ipp://127.0.0.1:1/\n");
    const ProgramResult named =
        sync({"--all", "--status-uri", "second=" + printer.URI(), "--status-uris", file});
    EXPECT_EQ(named.exitStatus, 0) << named.standardOutput << named.standardError;
    EXPECT_THAT(named.standardOutput, HasSubstr("cable: updated\n"));
    EXPECT_THAT(named.standardOutput, HasSubstr("second: updated\n"));
    EXPECT_THAT(named.standardOutput, HasSubstr("\n  status from " + printer.URI() + "\n"));
    EXPECT_EQ(named.standardError, "");
    EXPECT_THAT(
        sync({"cable", "--json", "--status-uris", file}).standardOutput,
        HasSubstr(R"("deviceURI":"usb://Zr/Office%2020","statusURI":")" + printer.URI() + "\""));
}

TEST_F(SyncRoundTrip, AnUnknownQueueFailsAndIsNotCreated) {
    for (const char* name : {"nobody", "../etc/passwd", "a/b", "a#b", ".."}) {
        const ProgramResult run = sync({name});
        EXPECT_EQ(run.exitStatus, 1) << name;
        EXPECT_THAT(run.standardOutput, HasSubstr(": failed: ")) << name;
    }
    EXPECT_EQ(sync({"--all"}).standardOutput, "0 queues\n");
}

TEST_F(SyncRoundTrip, AnEmptyQueueNameIsShownAsOne) {
    const ProgramResult run = sync({""});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.standardOutput,
              "\"\": failed: cannot be the name of a queue; \"lpstat -e\" lists the queues\n"
              "1 queue: 1 failed\n");
}

TEST_F(SyncRoundTrip, ProgressIsShownOnATerminalOnly) {
    EXPECT_EQ(sync({"first", "second", "--jobs", "1"}).standardError, "");
    ProgramSurroundings surroundings;
    surroundings.environment = {{"LC_ALL", "C"}};
    const std::string command = std::string(TKPPDUPDATING_TOOL) + " sync --server " +
                                scheduler_->server() + " first second --jobs 1";
    const ProgramResult run = runProgram({"script", "-qec", command, "/dev/null"}, surroundings);
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.standardOutput, HasSubstr("0 of 2 queues done\r\033[K"));
    EXPECT_THAT(run.standardOutput,
                HasSubstr("1 of 2 queues done, the last one first\r\033[Ksecond: failed: "));
}

TEST_F(SyncRoundTrip, TheSchedulerMayBeNamedByItsSocketOrTheEnvironment) {
    SimulatedPrinter printer(kFullPrinter);
    scheduler_->addQueue("office", printer.URI(), kOfficePPD);
    for (const std::string& server : {scheduler_->server(), scheduler_->socketPath()}) {
        ProgramSurroundings surroundings;
        surroundings.environment = {{"CUPS_SERVER", server}, {"LC_ALL", "C"}};
        const ProgramResult run =
            runProgram({TKPPDUPDATING_TOOL, "sync", "--all", "--dry-run"}, surroundings);
        EXPECT_EQ(run.exitStatus, 0) << server << run.standardOutput << run.standardError;
        EXPECT_THAT(run.standardOutput, HasSubstr("office: would be updated\n")) << server;
    }
}

TEST_F(SyncRoundTrip, AnUnreachableSchedulerIsAnError) {
    scheduler_->stop();
    const ProgramResult run = sync({"--all"});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.standardError, HasSubstr("the scheduler cannot be reached"));
}

/// The first word behind each queue's name, in the order of the lines; without the summary.
std::vector<std::string> resultsIn(const std::string& output) {
    std::vector<std::string> results;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t colon = line.find(": ");
        // What changed is indented, and the summary begins with a count.
        if (colon != std::string::npos && !std::isdigit(static_cast<unsigned char>(line[0])) &&
            line[0] != ' ') {
            results.push_back(line.substr(0, line.find(':', colon + 2)));
        }
    }
    return results;
}

TEST_F(SyncRoundTrip, AMixedServerTellsTheResultOfEachQueueInTheirOrder) {
    SimulatedPrinter printer(kFullPrinter);
    const std::string foreign = scheduler_->directory().write(
        "foreign.ppd", "*PPD-Adobe: \"4.3\"\n*% caf\xE9\n*ModelName: \"X\"\n");
    scheduler_->addQueue("a-ipp", printer.URI(), kOfficePPD);
    scheduler_->addQueue("b-off", "ipp://127.0.0.1:" + std::to_string(freeLoopbackPort()) + "/",
                         kOfficePPD);
    scheduler_->addQueue("c-socket", "socket://127.0.0.1:9", kOfficePPD);
    scheduler_->addQueue("d-lpd", "lpd://127.0.0.1/q", foreign);
    scheduler_->addQueue("e-raw", "socket://127.0.0.1:9", "");
    scheduler_->addQueue("f-foreign", printer.URI(), foreign);
    ASSERT_EQ(scheduler_->runClient({"lpadmin", "-p", "a-ipp", "-c", "g-class"}).exitStatus, 0);

    const ProgramResult first = sync({"--all", "--jobs", "8"});
    EXPECT_EQ(first.exitStatus, 4) << first.standardOutput << first.standardError;
    EXPECT_EQ(resultsIn(first.standardOutput),
              (std::vector<std::string>{"a-ipp: updated", "b-off: unreachable",
                                        "c-socket: unsupported", "d-lpd: skipped", "e-raw: skipped",
                                        "f-foreign: skipped", "g-class: skipped"}));
    EXPECT_THAT(first.standardOutput,
                HasSubstr("\n7 queues: 1 updated, 4 skipped, 1 unreachable, 1 unsupported\n"));
    EXPECT_EQ(sync({"--all", "--accept", "unreachable"}).exitStatus, 4);
    EXPECT_EQ(sync({"--all", "--accept", "unreachable", "--accept", "unsupported"}).exitStatus, 0);
    EXPECT_EQ(sync({"--all", "--exclude", "b-off", "--exclude", "c-socket"}).exitStatus, 0);
    EXPECT_THAT(
        sync({"--all", "--quiet", "--accept", "unreachable"}).standardOutput,
        testing::MatchesRegex("b-off: unreachable: [^\n]*\nc-socket: unsupported: [^\n]*\n"));
}

TEST_F(SyncRoundTrip, ADryRunTellsByItsExitStatusWhetherSomethingWouldChange) {
    SimulatedPrinter printer(kFullPrinter);
    scheduler_->addQueue("office", printer.URI(), kOfficePPD);
    EXPECT_EQ(sync({"office", "--dry-run"}).exitStatus, 0);
    EXPECT_EQ(sync({"office", "--dry-run", "--exit-code"}).exitStatus, 10);
    EXPECT_EQ(sync({"office"}).exitStatus, 0);
    EXPECT_EQ(sync({"office", "--dry-run", "--exit-code"}).exitStatus, 0);
    EXPECT_EQ(sync({"office", "nobody", "--dry-run", "--exit-code"}).exitStatus, 1);
}

TEST_F(SyncRoundTrip, AnExcludedQueueThatIsNotThereIsTold) {
    scheduler_->addQueue("raw", "ipp://127.0.0.1:9/", "");
    const ProgramResult run = sync({"--all", "--exclude", "rwa"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.standardError, "tkppdupdate: warning: --exclude: there is no queue \"rwa\"\n");
}

/// A PPD without any keyword of ours, whose default page size is Letter.
std::string paperPPD() {
    std::string text = "*PPD-Adobe: \"4.3\"\n";
    for (const std::string option : {"PageSize", "PageRegion", "ImageableArea", "PaperDimension"}) {
        const bool isUI = option.starts_with("Page");
        text +=
            (isUI ? "*OpenUI *" + option + ": PickOne\n" : "") + "*Default" + option + ": Letter\n";
        for (const std::string size : {"A4", "Letter", "Legal"}) {
            text += "*" + option + " " + size + "/" + size + ": " +
                    (isUI ? "\"\"\n" : "\"0 0 500 800\"\n");
        }
        text += isUI ? "*CloseUI: *" + option + "\n" : "";
    }
    return text;
}

TEST_F(SyncRoundTrip, ThePageSizeStaysUnlessItIsAskedFor) {
    scheduler_->addQueue("paper", "ipp://127.0.0.1:9/",
                         scheduler_->directory().write("paper.ppd", paperPPD()));
    const auto syncWith = [this](const std::string& language, const std::string& option) {
        return runProgram({"env", "-i", language, TKPPDUPDATING_TOOL, "sync", "--server",
                           scheduler_->server(), "paper", option});
    };
    for (const std::string size : {"Legal", "A4"}) {
        ASSERT_EQ(
            scheduler_->runClient({"lpadmin", "-p", "paper", "-o", "PageSize=" + size}).exitStatus,
            0);
        const std::string before = contentsOfFile(scheduler_->PPDPath("paper"));
        ASSERT_THAT(before, HasSubstr("*DefaultPageSize: " + size + "\n"));
        for (const char* language : {"LANG=C", "LANG=de_DE.UTF-8", "NOTHING="}) {
            const ProgramResult run = syncWith(language, "--quiet");
            EXPECT_EQ(run.exitStatus, 0) << run.standardError;
            EXPECT_EQ(run.standardOutput, "") << language;
            EXPECT_EQ(contentsOfFile(scheduler_->PPDPath("paper")), before) << language;
        }
    }
    const ProgramResult asked = syncWith("LANG=en_US.UTF-8", "--page-size");
    EXPECT_EQ(asked.exitStatus, 0) << asked.standardOutput;
    EXPECT_THAT(contentsOfFile(scheduler_->PPDPath("paper")),
                HasSubstr("*DefaultPageSize: Letter\n"));
}

TEST_F(SyncRoundTrip, TwoDashesEndTheOptions) {
    scheduler_->addQueue("raw", "ipp://127.0.0.1:9/", "");
    EXPECT_EQ(sync({"--", "raw"}).exitStatus, 0);
    EXPECT_EQ(sync({"raw", "--", "raw"}).exitStatus, 0);
    EXPECT_THAT(sync({"--", "-raw", "-x"}).standardOutput,
                HasSubstr("-raw: failed: there is no queue"));
}

TEST_F(SyncRoundTrip, NeitherQueuesNorAllIsAUsageError) {
    EXPECT_EQ(sync({}).exitStatus, 2);
    EXPECT_EQ(sync({"--all", "office"}).exitStatus, 2);
    EXPECT_EQ(sync({"--all", "--jobs", "0"}).exitStatus, 2);
}

TEST_F(SyncRoundTrip, ARecordedPrinterUpdatesAsThePrinterItself) {
    SimulatedPrinter printer(
        std::string(kFullPrinter) +
        "ATTR collection media-col-database {\n  MEMBER name media-type \"My Gloss\"\n"
        "  MEMBER name media-key \"gloss-1\"\n  MEMBER text media-info \"Glossy Brochure\"\n}\n");
    const std::string home = scheduler_->directory().path().string();
    const ProgramResult status = runTool({"status", printer.URI()}, home);
    ASSERT_EQ(status.exitStatus, 0) << status.standardError;
    EXPECT_THAT(status.standardOutput, HasSubstr("Glossy Brochure"));
    const std::string recording =
        scheduler_->directory().write("printer.json", status.standardOutput);
    for (const std::string& PPD : {kInkjetPPD, kOfficePPD}) {
        const auto live = runTool({"update", PPD, "--device-uri", printer.URI()}, home);
        const auto replayed = runTool({"update", PPD, "--device-uri", "file:" + recording}, home);
        EXPECT_EQ(live.exitStatus, 0) << live.standardError;
        EXPECT_THAT(live.standardError, Not(HasSubstr("no status")));
        EXPECT_TRUE(live.standardOutput == replayed.standardOutput) << PPD;
        EXPECT_NE(live.standardOutput, contentsOfFile(PPD));
    }
}

TEST_F(SyncRoundTrip, TheValuesOfAnInstalledQueueComeFromTheScheduler) {
    SimulatedPrinter printer(kFullPrinter);
    scheduler_->addQueue("inkjet", printer.URI(), kInkjetPPD);
    ProgramSurroundings surroundings;
    surroundings.environment = {{"CUPS_SERVER", scheduler_->server()}, {"LC_ALL", "C"}};
    const ProgramResult run = runProgram(
        {TKPPDUPDATING_TOOL, "values", "--queue", "inkjet", "--device-uri", printer.URI()},
        surroundings);
    EXPECT_EQ(run.exitStatus, 0) << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr(R"("DefaultZrAutoDuplexerInstalled": "True")"));
}

TEST_F(SyncRoundTrip, TLSWithASelfSignedCertificateIsTalkedToAndNothingIsStored) {
    SimulatedPrinter printer(kFullPrinter);
    const std::string home = scheduler_->directory().path().string();
    const ProgramResult run = runTool({"status", printer.URIWithScheme("ipps")}, home);
    EXPECT_EQ(run.exitStatus, 0) << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr("Duplexer"));
    EXPECT_FALSE(std::filesystem::exists(home + "/.cups"));
}

TEST_F(SyncRoundTrip, StatusOfNoPrinterSaysWhy) {
    const ProgramResult run =
        runTool({"status", "gopher://printer/"}, scheduler_->directory().path().string());
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.standardOutput, "");
    EXPECT_THAT(run.standardError, HasSubstr("no backend for the scheme \"gopher\""));
}

TEST_F(SyncRoundTrip, TheReplacedPPDIsKeptAndPutBack) {
    SimulatedPrinter printer(kFullPrinter);
    scheduler_->addQueue("office", printer.URI(), kOfficePPD);
    const std::string before = contentsOfFile(scheduler_->PPDPath("office"));
    const std::string folder = (scheduler_->directory().path() / "kept").string();
    EXPECT_EQ(sync({"office", "--dry-run", "--backup", folder}).exitStatus, 0);
    EXPECT_FALSE(std::filesystem::exists(folder));
    ASSERT_EQ(sync({"office", "--backup", folder}).exitStatus, 0);
    EXPECT_TRUE(contentsOfFile(folder + "/office.ppd") == before);
    ASSERT_FALSE(contentsOfFile(scheduler_->PPDPath("office")) == before);
    const auto restore = [&] {
        return runTool({"restore", "--backup", folder, "office", "--server", scheduler_->server()},
                       folder);
    };
    const ProgramResult first = restore();
    EXPECT_EQ(first.exitStatus, 0) << first.standardError;
    EXPECT_THAT(first.standardOutput, testing::StartsWith("office: restored\n"));
    EXPECT_TRUE(contentsOfFile(scheduler_->PPDPath("office")) == before);
    EXPECT_EQ(restore().standardOutput, "office: unchanged\n");
}

TEST_F(SyncRoundTrip, WithoutRoomForTheReplacedPPDNothingIsInstalled) {
    SimulatedPrinter printer(kFullPrinter);
    scheduler_->addQueue("office", printer.URI(), kOfficePPD);
    const std::string before = contentsOfFile(scheduler_->PPDPath("office"));
    const std::string folder = (scheduler_->directory().path() / "kept").string();
    const ProgramResult run =
        runProgram({"sh", "-c", "trap '' XFSZ; ulimit -f 1; exec \"$@\"", "sh", TKPPDUPDATING_TOOL,
                    "sync", "--server", scheduler_->server(), "office", "--backup", folder});
    EXPECT_EQ(run.exitStatus, 1) << run.standardError;
    EXPECT_THAT(run.standardOutput,
                testing::StartsWith("office: failed: its PPD cannot be kept, so nothing was "
                                    "installed: File too large\n"));
    EXPECT_TRUE(contentsOfFile(scheduler_->PPDPath("office")) == before);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(SyncRoundTrip, PagesLeftThatAreTheSameAreNotInstalledAgainForTheirTime) {
    const std::string recording = scheduler_->directory().write(
        "printer.json", R"({"RemainingPagesEstimations": [{"pageTypeName": "A",)"
                        R"( "minPageCount": 150, "maxPageCount": 300, "state": 0}]})");
    scheduler_->addQueue("office", "file://" + recording, kOfficePPD);
    ASSERT_THAT(sync({"office"}).standardOutput, testing::StartsWith("office: updated"));
    const auto syncAt = [this](const std::string& time) {
        ProgramSurroundings surroundings;
        surroundings.environment = {{"LC_ALL", "C"}, {"ZrEPRLastUpdateTime", time}};
        return runProgram({TKPPDUPDATING_TOOL, "sync", "--server", scheduler_->server(), "office"},
                          surroundings);
    };
    EXPECT_EQ(syncAt("1").standardOutput, "office: unchanged\n1 queue: 1 unchanged\n");
    EXPECT_EQ(syncAt("2").standardOutput, "office: unchanged\n1 queue: 1 unchanged\n");
}

TEST_F(SyncRoundTrip, ARunThatTakesTooLongIsEndedAndASecondOneWaitsForItOrSaysSo) {
    HostileIPPResponder silent([](const ResponderConnection& c) { c.waitForClose(); });
    scheduler_->addQueue("one", silent.URI("/one"), kOfficePPD);
    scheduler_->addQueue("raw", silent.URI("/raw"), "");
    const std::string output = (scheduler_->directory().path() / "sync.output").string();
    ChildProcess first(
        {TKPPDUPDATING_TOOL, "sync", "--server", scheduler_->server(), "one", "--time-limit", "2"},
        output);
    while (silent.connections() == 0 && first.isRunning()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    const ProgramResult second = sync({"raw", "--wait", "0"});
    EXPECT_EQ(second.exitStatus, 1);
    EXPECT_THAT(second.standardError,
                HasSubstr("another run is at work on the queues of this scheduler (process " +
                          std::to_string(first.id()) + ")"));
    EXPECT_EQ(sync({"raw", "--wait", "0", "--dry-run"}).exitStatus, 0);
    EXPECT_EQ(sync({"raw"}).exitStatus, 0);
    EXPECT_EQ(first.wait(), 1);
    EXPECT_EQ(contentsOfFile(output),
              "one: abandoned: the time limit of the run was over\n1 queue: 1 abandoned\n");
}

class InterruptedSync : public SyncRoundTrip, public testing::WithParamInterface<int> {
  protected:
    /// What "sync" writes when it gets the signal once something is so.
    std::string outputOfSync(std::vector<std::string> arguments,
                             const std::function<bool()>& mayBeInterrupted) const {
        const std::string output = (scheduler_->directory().path() / "sync.output").string();
        arguments.insert(arguments.begin(), {TKPPDUPDATING_TOOL, "sync"});
        ChildProcess tool(arguments, output);
        while (!mayBeInterrupted() && tool.isRunning()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        const auto begin = std::chrono::steady_clock::now();
        tool.signal(GetParam());
        EXPECT_EQ(tool.wait(), 1);
        // A printer has 15 seconds to answer, a scheduler 30.
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
        return contentsOfFile(output);
    }
};

TEST_P(InterruptedSync, AbandonsEachQueueWholeAndSaysWhich) {
    std::atomic<int> asked{0};
    HostileIPPResponder slow([&asked](const ResponderConnection& c) {
        c.readRequest();
        ++asked;
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        c.send(HostileIPPResponder::HTTPAnswer(
            IPPBytes().keyword("sides-supported", "two-sided-long-edge").end()));
    });
    scheduler_->addQueue("one", slow.URI("/one"), kOfficePPD);
    scheduler_->addQueue("two", slow.URI("/two"), kOfficePPD);
    const std::string before = contentsOfFile(scheduler_->PPDPath("one"));
    EXPECT_EQ(outputOfSync({"--server", scheduler_->server(), "--jobs", "1", "one", "two"},
                           [&asked] { return asked > 0; }),
              "one: abandoned: interrupted\ntwo: abandoned: interrupted\n2 queues: 2 abandoned\n");
    EXPECT_EQ(contentsOfFile(scheduler_->PPDPath("one")), before);
    EXPECT_EQ(contentsOfFile(scheduler_->PPDPath("two")), before);
}

TEST_P(InterruptedSync, DoesNotWaitForASilentPrinter) {
    std::atomic<int> asked{0};
    HostileIPPResponder silent([&asked](const ResponderConnection& c) {
        c.readRequest();
        ++asked;
        c.waitForClose();
    });
    scheduler_->addQueue("one", silent.URI("/one"), kOfficePPD);
    const std::string before = contentsOfFile(scheduler_->PPDPath("one"));
    EXPECT_EQ(
        outputOfSync({"--server", scheduler_->server(), "one"}, [&asked] { return asked > 0; }),
        "one: abandoned: interrupted\n1 queue: 1 abandoned\n");
    EXPECT_EQ(contentsOfFile(scheduler_->PPDPath("one")), before);
}

TEST_P(InterruptedSync, DoesNotWaitForASilentScheduler) {
    HostileIPPResponder silent([](const ResponderConnection& c) { c.waitForClose(); });
    EXPECT_EQ(outputOfSync({"--server", "127.0.0.1:" + std::to_string(silent.port()), "one"},
                           [&silent] { return silent.connections() > 0; }),
              "one: abandoned: interrupted\n1 queue: 1 abandoned\n");
}

INSTANTIATE_TEST_SUITE_P(BySignal, InterruptedSync, testing::Values(SIGINT, SIGTERM, SIGHUP),
                         [](const auto& number) {
                             return number.param == SIGINT    ? "SIGINT"
                                    : number.param == SIGTERM ? "SIGTERM"
                                                              : "SIGHUP";
                         });

}  // namespace
}  // namespace TkPPDUpdating::Testing
