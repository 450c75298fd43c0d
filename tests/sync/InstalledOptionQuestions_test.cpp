#include "sync/InstalledOptionQuestions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/TkCSKeys.h"
#include "tests/support/ParsedPPD.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kOptions =
    "*OpenGroup: InstallableOptions/Installable Options\n"
    "*OpenUI *Option1/Tray 2: PickOne\n"
    "*DefaultOption1: None\n"
    "*Option1 None/Not Installed: \"\"\n"
    "*Option1 Tray500/500 Sheets: \"\"\n"
    "*?Option1: \"\n  currentpagedevice % whatever\n  pop (None) = flush\"\n*End\n"
    "*CloseUI: *Option1\n"
    "*OpenUI *Option2/Finisher: Boolean\n"
    "*DefaultOption2: False\n"
    "*Option2 False/No: \"\"\n"
    "*Option2 True/Yes: \"\"\n"
    "*?Option2 : \"(True) =\"\n"
    "*CloseUI: *Option2\n"
    "*CloseGroup: InstallableOptions\n"
    "*OpenUI *Duplex/Two-sided: PickOne\n"
    "*DefaultDuplex: None\n"
    "*Duplex None/Off: \"\"\n"
    "*?Duplex: \"(None) =\"\n"
    "*CloseUI: *Duplex\n"
    "*?TTRasterizer: \"(Type42) =\"\n";

std::shared_ptr<const OrbCSPostScriptQuestions> questionsOf(const std::string& PPD,
                                                            std::string* why = nullptr) {
    std::string reason;
    auto questions = postScriptQuestionsOfPPD(*parsedPPD(PPD), reason);
    EXPECT_EQ(questions == nullptr, !reason.empty());
    if (why) {
        *why = reason;
    }
    return questions;
}

TEST(InstalledOptionQuestions, AreThoseOfTheGroupWithTheirChoices) {
    const auto questions = questionsOf(kOptions);
    ASSERT_TRUE(questions);
    ASSERT_EQ(questions->questions.size(), 2U);
    EXPECT_EQ(questions->questions[0].option, "Option1");
    EXPECT_THAT(questions->questions[0].choices, ElementsAre("None", "Tray500"));
    EXPECT_EQ(questions->questions[0].code,
              "\n  currentpagedevice % whatever\n  pop (None) = flush");
    EXPECT_EQ(questions->questions[1].option, "Option2");
    EXPECT_THAT(questions->questions[1].choices, ElementsAre("False", "True"));
    EXPECT_EQ(questions->questions[1].code, "(True) =");
    EXPECT_EQ(questions->beginning, "");
    EXPECT_EQ(questions->end, "");
}

TEST(InstalledOptionQuestions, StandBetweenTheSwitchesOfThePPD) {
    const auto questions = questionsOf(std::string(kOptions) +
                                       "*JCLBegin: \"<1B>%-12345X@PJL JOB<0A>\"\n"
                                       "*JCLToPSInterpreter: \"@PJL ENTER LANGUAGE = "
                                       "POSTSCRIPT <0A>\"\n"
                                       "*JCLEnd: \"<1B>%-12345X@PJL EOJ <0A>\"\n");
    ASSERT_TRUE(questions);
    EXPECT_EQ(questions->beginning, "\x1B%-12345X@PJL JOB\n@PJL ENTER LANGUAGE = POSTSCRIPT \n");
    EXPECT_EQ(questions->end, "\x1B%-12345X@PJL EOJ \n");
    EXPECT_EQ(questionsOf(std::string(kOptions) + "*JCLBegin: \"<1B>x\"\n")->beginning, "");
}

TEST(InstalledOptionQuestions, AreNoneInAPPDThatAsksNothing) {
    std::string reason;
    EXPECT_FALSE(
        questionsOf("*OpenGroup: InstallableOptions\n*CloseGroup: InstallableOptions\n"
                    "*?Option1: \"(x) =\"\n",
                    &reason));
    EXPECT_EQ(reason, "its PPD has no question about what is installed");
}

TEST(InstalledOptionQuestions, AreForPostScriptPrintersOnly) {
    const std::string passing =
        "*FoomaticRIPCommandLine: \"printf &quot;%%!PS-Adobe-3.0\\n%A%B&quot;%%%%; cat;\"\n";
    for (const std::string& lines :
         {std::string("*cupsFilter: \"application/vnd.cups-postscript 0 -\"\n"),
          std::string("*cupsFilter: \"application/vnd.cups-postscript 100 foomatic-rip\"\n"),
          "*cupsFilter: \"application/vnd.cups-postscript 0 foomatic-rip\"\n" + passing,
          std::string("*cupsFilter: \"application/vnd.cups-command 0 commandtops\"\n"),
          std::string("*cupsFilter2: \"application/vnd.cups-postscript application/postscript 0 "
                      "-\"\n")}) {
        EXPECT_TRUE(questionsOf(kOptions + lines)) << lines;
    }
    for (const std::string lines :
         {"*cupsFilter: \"application/vnd.cups-raster 0 rastertoepson\"\n",
          "*cupsFilter: \"application/vnd.cups-pdf 0 -\"\n",
          "*cupsFilter: \"application/vnd.cups-postscript 0 pstoother\"\n",
          "*cupsFilter: \"application/vnd.cups-postscript\"\n", "*cupsFilter:\n",
          "*cupsFilter2: \"application/vnd.cups-postscript application/pdf 0 -\"\n",
          "*cupsFilter: \"application/vnd.cups-postscript 0 foomatic-rip\"\n"
          "*FoomaticRIPCommandLine: \"gs -q -sDEVICE=ljet4 -sOutputFile=- -\"\n",
          "*cupsFilter: \"application/vnd.cups-postscript 0 foomatic-rip\"\n"
          "*FoomaticRIPCommandLine: \"gs -q -sOutputFile=- - | cat\"\n",
          "*cupsFilter: \"application/vnd.cups-postscript 0 -\"\n"
          "*cupsFilter: \"application/vnd.cups-raster 0 -\"\n"}) {
        std::string reason;
        EXPECT_FALSE(questionsOf(kOptions + lines, &reason)) << lines;
        EXPECT_EQ(reason, "its PPD is not for a PostScript printer");
    }
}

TEST(InstalledOptionQuestions, AnswersAreToldInThePPDsWords) {
    const auto PPD = parsedPPD(kOptions);
    const auto questions = questionsOf(kOptions);
    ReportedDeviceStatus::Values values;
    values.emplace(kTkCSInstalledOptionsKey, OrbCSInstalledOptions{{"Option1", "Tray500"}});
    const ReportedDeviceStatus answer(values, {"Option2: the printer does not know"},
                                      OrbCSToldEntries{"InstalledOptions"});
    EXPECT_THAT(wordsForAnswers(*PPD, *questions, &answer),
                ElementsAre("Tray 2: asked over PostScript: 500 Sheets",
                            "Finisher: asked over PostScript, no answer: the printer does not "
                            "know"));
}

TEST(InstalledOptionQuestions, OneStatusHasWhatTwoTold) {
    ReportedDeviceStatus::Values ofOthers;
    ofOthers.emplace(kTkCSLinTableKey, OrbCSLinTable());
    const auto others = std::make_shared<const ReportedDeviceStatus>(
        ofOthers, std::vector<std::string>(), OrbCSToldEntries{"LinTable"});
    ReportedDeviceStatus::Values ofAsked;
    ofAsked.emplace(kTkCSInstalledOptionsKey, OrbCSInstalledOptions{{"Option1", "None"}});
    const auto asked = std::make_shared<const ReportedDeviceStatus>(
        ofAsked, std::vector<std::string>(), OrbCSToldEntries{"InstalledOptions"});
    const auto both = statusWithInstalledOptions(others, asked);
    EXPECT_TRUE(both->statusValueForKey<OrbCSLinTable>(kTkCSLinTableKey));
    EXPECT_TRUE(both->statusValueForKey<OrbCSInstalledOptions>(kTkCSInstalledOptionsKey));
    EXPECT_EQ(OrbCSPartialStatus::toldEntriesOf(*both),
              (OrbCSToldEntries{"LinTable", "InstalledOptions"}));
    EXPECT_EQ(statusWithInstalledOptions(nullptr, asked), asked);
    const auto silent = std::make_shared<const ReportedDeviceStatus>(
        ReportedDeviceStatus::Values(), std::vector<std::string>(), OrbCSToldEntries());
    EXPECT_EQ(statusWithInstalledOptions(others, silent), others);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
