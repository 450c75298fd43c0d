// Queues of a scheduler of the test's own whose printer is a PostScript interpreter.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "tests/real/ChildProcess.h"
#include "tests/real/PrivateScheduler.h"
#include "tests/support/FileContents.h"
#include "tests/support/RunProgram.h"
#include "tests/support/SocketPrinter.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;
using testing::Not;

/// Of a maker that this project knows nothing of.
constexpr const char* kPPD =
    "*PPD-Adobe: \"4.3\"\n"
    "*FormatVersion: \"4.3\"\n*FileVersion: \"1.0\"\n*LanguageVersion: English\n"
    "*LanguageEncoding: ISOLatin1\n*PCFileName: \"OTHER.PPD\"\n*Product: \"(Other 5)\"\n"
    "*PSVersion: \"(3015) 26\"\n*Manufacturer: \"Other\"\n*ModelName: \"Other 5\"\n"
    "*ShortNickName: \"Other 5\"\n*NickName: \"Other 5\"\n*LanguageLevel: \"3\"\n"
    "*JCLBegin: \"<1B>%-12345X@PJL JOB<0A>\"\n"
    "*JCLToPSInterpreter: \"@PJL ENTER LANGUAGE=POSTSCRIPT<0A>\"\n"
    "*JCLEnd: \"<1B>%-12345X@PJL EOJ <0A>\"\n"
    "*OpenGroup: InstallableOptions/Installable Options\n"
    "*OpenUI *OptionTray/Lower Tray: PickOne\n"
    "*DefaultOptionTray: None\n"
    "*OptionTray None/Not Installed: \"\"\n"
    "*OptionTray Tray500/500 Sheets: \"\"\n"
    "*?OptionTray: \"\n"
    " currentpagedevice /InputAttributes get dup 1 known {1 get null ne}{pop false} ifelse\n"
    " {(Tray500)}{(None)} ifelse = flush\"\n*End\n"
    "*CloseUI: *OptionTray\n"
    "*OpenUI *OptionDuplex/Duplexing Unit: Boolean\n"
    "*DefaultOptionDuplex: False\n"
    "*OptionDuplex True/Installed: \"\"\n"
    "*OptionDuplex False/Not Installed: \"\"\n"
    "*?OptionDuplex: \"\n"
    " currentpagedevice /Duplex 2 copy known{\n"
    " get << /Duplex true >> setpagedevice\n"
    " currentpagedevice /Duplex get {(True)}{(False)}ifelse exch\n"
    " << /Duplex 3 -1 roll >> setpagedevice\n"
    " }{pop pop (False)}ifelse = flush\"\n*End\n"
    "*CloseUI: *OptionDuplex\n"
    "*OpenUI *OptionDisk/Hard Disk: Boolean\n"
    "*DefaultOptionDisk: True\n"
    "*OptionDisk True/Installed: \"\"\n"
    "*OptionDisk False/Not Installed: \"\"\n"
    "*?OptionDisk: \"(Unknown) = flush\"\n"
    "*CloseUI: *OptionDisk\n"
    "*CloseGroup: InstallableOptions\n"
    "*OpenUI *PageSize/Page Size: PickOne\n*OrderDependency: 10 AnySetup *PageSize\n"
    "*DefaultPageSize: A4\n*PageSize A4/A4: \"\"\n*CloseUI: *PageSize\n"
    "*OpenUI *PageRegion: PickOne\n*OrderDependency: 10 AnySetup *PageRegion\n"
    "*DefaultPageRegion: A4\n*PageRegion A4/A4: \"\"\n*CloseUI: *PageRegion\n"
    "*DefaultImageableArea: A4\n*ImageableArea A4/A4: \"0 0 595 842\"\n"
    "*DefaultPaperDimension: A4\n*PaperDimension A4/A4: \"595 842\"\n";

/// The product of that PPD, and a page device with two trays.
const std::string kProduct = "/product (Other 5) def\n";
const std::string kTwoTrays =
    "<< /InputAttributes 80 dict begin 2 1 79 {null def} for\n"
    "0 << /PageSize [595 842] >> def 1 << /PageSize [595 842] >> def currentdict end >> "
    "setpagedevice";

class PostScriptQueues : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(PrivateScheduler::missingPrograms() + PostScriptPrinter::missingPrograms(), "");
    }

    ProgramResult runTool(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), TKPPDUPDATING_TOOL);
        ProgramSurroundings surroundings;
        surroundings.environment = {
            {"HOME", folder_.path().string()}, {"LC_ALL", "C"}, {"CUPS_SERVER", std::nullopt}};
        return runProgram(arguments, surroundings);
    }

    ProgramResult sync(const PrivateScheduler& scheduler,
                       std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"sync", "--server", scheduler.server()});
        return runTool(arguments);
    }

    TemporaryDirectory folder_;
    std::string PPD_ = folder_.write("other.ppd", kPPD);
};

TEST_F(PostScriptQueues, GetWhatTheirPrinterAnswersAndStayInStepThen) {
    const PostScriptPrinter printer(kProduct + kTwoTrays, 2);
    const PrivateScheduler scheduler;
    scheduler.addQueue("other", printer.URI(), PPD_);
    const ProgramResult run = sync(scheduler, {"other", "--ask-postscript"});
    EXPECT_EQ(run.exitStatus, 0) << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr("other: updated\n"));
    EXPECT_THAT(run.standardOutput, HasSubstr("  Lower Tray: Not Installed -> 500 Sheets\n"));
    EXPECT_THAT(run.standardOutput, HasSubstr("  Duplexing Unit: Not Installed -> Installed\n"));
    EXPECT_THAT(run.standardOutput,
                HasSubstr("  Lower Tray: asked over PostScript: Not Installed -> 500 Sheets\n"));
    EXPECT_THAT(run.standardOutput,
                HasSubstr("  Hard Disk: asked over PostScript, no answer: the printer does not "
                          "know; stays Installed\n"));
    const std::string installed = contentsOfFile(scheduler.PPDPath("other"));
    EXPECT_THAT(installed, HasSubstr("\n*DefaultOptionTray: Tray500\n"));
    EXPECT_THAT(installed, HasSubstr("\n*DefaultOptionDuplex: True\n"));
    EXPECT_THAT(installed, HasSubstr("\n*DefaultOptionDisk: True\n"));
    EXPECT_THAT(sync(scheduler, {"other", "--ask-postscript"}).standardOutput,
                HasSubstr("other: unchanged\n"));
    EXPECT_EQ(contentsOfFile(scheduler.PPDPath("other")), installed);
    EXPECT_EQ(printer.connectionCount(), 2);
}

TEST_F(PostScriptQueues, OfAnotherPrinterStayAsTheyAreUnlessTheUserBelievesIt) {
    const PostScriptPrinter printer(kTwoTrays, 2);
    const PrivateScheduler scheduler;
    scheduler.addQueue("other", printer.URI(), PPD_);
    const std::string before = contentsOfFile(scheduler.PPDPath("other"));
    const ProgramResult run = sync(scheduler, {"other", "--ask-postscript"});
    EXPECT_EQ(run.exitStatus, 4) << run.standardError;
    EXPECT_THAT(
        run.standardOutput,
        HasSubstr(
            "other: unsupported: at " + printer.URI() +
            " answers \"GPL Ghostscript\", and its PPD is for \"Other 5\"; if it is the right "
            "one, say so with --status-uri other=" +
            printer.URI() + "\n"));
    EXPECT_EQ(contentsOfFile(scheduler.PPDPath("other")), before);
    EXPECT_THAT(printer.received(), Not(HasSubstr("(0) <")));
    const ProgramResult believed =
        sync(scheduler, {"other", "--ask-postscript", "--status-uri", "other=" + printer.URI()});
    EXPECT_EQ(believed.exitStatus, 0) << believed.standardError;
    EXPECT_THAT(believed.standardOutput, HasSubstr("  Lower Tray: Not Installed -> 500 Sheets\n"));
    EXPECT_THAT(believed.standardOutput, Not(HasSubstr("status from")));
}

TEST_F(PostScriptQueues, AreAskedWhereTheUserSaysWhateverTheirDeviceURI) {
    const PostScriptPrinter printer(kTwoTrays);
    const PrivateScheduler scheduler;
    scheduler.addQueue("other", "lpd://127.0.0.1:1/q", PPD_);
    const ProgramResult run =
        sync(scheduler, {"other", "--ask-postscript", "--status-uri", "other=" + printer.URI()});
    EXPECT_EQ(run.exitStatus, 0) << run.standardOutput << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr("  Lower Tray: Not Installed -> 500 Sheets\n"));
    EXPECT_THAT(run.standardOutput, HasSubstr("  status from " + printer.URI() + "\n"));
}

TEST_F(PostScriptQueues, AreSentNothingUnlessTheUserWantsIt) {
    const PostScriptPrinter printer("");
    const PrivateScheduler scheduler;
    scheduler.addQueue("other", printer.URI(), PPD_);
    const ProgramResult run = sync(scheduler, {"other"});
    EXPECT_EQ(run.exitStatus, 0) << run.standardError;
    EXPECT_THAT(run.standardOutput,
                HasSubstr("other: skipped: nothing in its PPD follows the printer\n"));
    EXPECT_EQ(printer.connectionCount(), 0);
    EXPECT_EQ(printer.received(), "");
}

TEST_F(PostScriptQueues, OfPPDsForOtherPrintersAreSentNothing) {
    const PostScriptPrinter printer("");
    const PrivateScheduler scheduler;
    scheduler.addQueue(
        "other", printer.URI(),
        folder_.write(
            "raster.ppd",
            std::string(kPPD) + "*cupsFilter: \"application/vnd.cups-raster 0 rastertohp\"\n"));
    EXPECT_THAT(sync(scheduler, {"other", "--ask-postscript"}).standardOutput,
                HasSubstr("other: skipped"));
    EXPECT_EQ(printer.connectionCount(), 0);
}

TEST_F(PostScriptQueues, AreNotAskedWhileTheyPrint) {
    // Takes the job and does not end it.
    const SocketPrinter printer([](const SocketTalk& talk) {
        while (talk.pause(std::chrono::milliseconds(10))) {
        }
    });
    const PrivateScheduler scheduler;
    // Before it prints, the scheduler asks for supplies over SNMP, which nobody answers here.
    scheduler.addQueue(
        "other", printer.URI(),
        folder_.write("quick.ppd", std::string(kPPD) + "*cupsSNMPSupplies: False\n"));
    const std::string job = folder_.write("job.ps", "%!PS-Adobe-3.0\nshowpage\n");
    ASSERT_EQ(scheduler.runClient({"lp", "-d", "other", job}).exitStatus, 0);
    for (int tries = 0; tries < 600 && printer.connectionCount() == 0; ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    ASSERT_EQ(printer.connectionCount(), 1);
    const ProgramResult run = sync(scheduler, {"other", "--ask-postscript", "--wait", "0"});
    EXPECT_EQ(run.exitStatus, 4) << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr("other: busy: it is printing\n"));
    EXPECT_EQ(printer.connectionCount(), 1);
}

TEST_F(PostScriptQueues, ASilentPrinterLeavesTheQueueAsItIs) {
    const SocketPrinter printer([](const SocketTalk& talk) {
        while (talk.next()) {
        }
    });
    const PrivateScheduler scheduler;
    scheduler.addQueue("other", printer.URI(), PPD_);
    const std::string before = contentsOfFile(scheduler.PPDPath("other"));
    const ProgramResult run = sync(scheduler, {"other", "--ask-postscript"});
    EXPECT_EQ(run.exitStatus, 4) << run.standardError;
    EXPECT_THAT(run.standardOutput, HasSubstr("other: unreachable: its printer does not tell what "
                                              "is installed: it does not answer"));
    EXPECT_EQ(contentsOfFile(scheduler.PPDPath("other")), before);
}

TEST_F(PostScriptQueues, AFileIsUpdatedByItsQuestionsToo) {
    const PostScriptPrinter printer(kTwoTrays, 2);
    const ProgramResult values =
        runTool({"values", "--ppd", PPD_, "--device-uri", printer.URI(), "--ask-postscript"});
    EXPECT_EQ(values.exitStatus, 0) << values.standardError;
    EXPECT_EQ(values.standardOutput,
              "{\n  \"DefaultOptionDuplex\": \"True\",\n  \"DefaultOptionTray\": \"Tray500\"\n}\n");
    const ProgramResult update =
        runTool({"update", PPD_, "--device-uri", printer.URI(), "--ask-postscript", "--in-place"});
    EXPECT_EQ(update.exitStatus, 0) << update.standardError;
    EXPECT_THAT(update.standardOutput, HasSubstr("Lower Tray: Not Installed -> 500 Sheets\n"));
    EXPECT_THAT(update.standardError,
                HasSubstr("Duplexing Unit: asked over PostScript: Not Installed -> Installed"));
    EXPECT_THAT(contentsOfFile(PPD_), HasSubstr("\n*DefaultOptionTray: Tray500\n"));
}

TEST_F(PostScriptQueues, AMistakeInTheURIIsToldBeforeAnybodyIsAsked) {
    const ProgramResult run = runTool(
        {"update", PPD_, "--device-uri", "ipp://127.0.0.1:1/ipp/print", "--ask-postscript"});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.standardError, HasSubstr("write socket://HOST"));
    for (const char* URI : {"socket:", "socket://127.0.0.1:0", "socket://me@127.0.0.1"}) {
        const ProgramResult mistaken =
            runTool({"update", PPD_, "--device-uri", URI, "--ask-postscript"});
        EXPECT_EQ(mistaken.exitStatus, 1) << URI;
        EXPECT_EQ(mistaken.standardOutput, "") << URI;
        EXPECT_THAT(mistaken.standardError, HasSubstr("write socket://HOST")) << URI;
    }
    const ProgramResult without = runTool({"update", PPD_, "--device-uri", "socket://127.0.0.1"});
    EXPECT_EQ(without.exitStatus, 1);
    EXPECT_THAT(without.standardError, Not(HasSubstr("--ask-postscript")));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
