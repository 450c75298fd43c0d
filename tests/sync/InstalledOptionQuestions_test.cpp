#include "sync/InstalledOptionQuestions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <map>
#include <string>

#include "tests/support/ParsedPPD.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::ElementsAre;

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

TEST(InstalledOptionQuestions, AreNotAboutOptionsThatAreNotSetByTheAnswer) {
    const auto questions = questionsOf(
        "*OpenGroup: General\n"
        "*OpenUI *Option3/Stapler: Boolean\n*DefaultOption3: False\n"
        "*Option3 False/No: \"\"\n*Option3 True/Yes: \"\"\n*CloseUI: *Option3\n"
        "*CloseGroup: General\n"
        "*OpenGroup: InstallableOptions\n"
        "*OpenUI *Option3/Stapler: Boolean\n*?Option3: \"(True) =\"\n*CloseUI: *Option3\n"
        "*OpenUI *ZrAutoDuplexerInstalled/Duplexer: Boolean\n"
        "*ZrAutoDuplexerInstalled False/No: \"\"\n*ZrAutoDuplexerInstalled True/Yes: \"\"\n"
        "*?ZrAutoDuplexerInstalled: \"(True) =\"\n*CloseUI: *ZrAutoDuplexerInstalled\n"
        "*CloseGroup: InstallableOptions\n" +
        std::string(kOptions));
    ASSERT_TRUE(questions);
    ASSERT_EQ(questions->questions.size(), 2U);
    EXPECT_EQ(questions->questions[0].option, "Option1");
    EXPECT_EQ(questions->questions[1].option, "Option2");
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

TEST(InstalledOptionQuestions, OfPPDsThatAreNoneAreNotAsked) {
    std::string text = std::string("*PPD-Adobe: \"4.3\"\n") + kOptions;
    EXPECT_NE(PPDModelFile::fileWithText(makePPDText(text)), nullptr);
    EXPECT_EQ(PPDModelFile::fileWithText(makePPDText(text + "*?Option9: \"never closed\n")),
              nullptr);
    text.insert(text.find("currentpagedevice"), 1, '\0');
    EXPECT_EQ(PPDModelFile::fileWithText(makePPDText(text)), nullptr);
}

TEST(InstalledOptionQuestions, WithManyOptionsCostNoMoreThanTheirLines) {
    std::string lines = "*OpenGroup: InstallableOptions\n";
    constexpr int kOptionCount = 20'000;
    for (int number = 0; number < kOptionCount; ++number) {
        const std::string name = "Option" + std::to_string(number);
        lines += "*OpenUI *" + name + ": Boolean\n*" + name + " True/Yes: \"\"\n*?" + name +
                 ": \"(True) =\"\n*?OID" + name + ": \"1.3.6.1\"\n*OID" + name +
                 " True: \"1\"\n*CloseUI: *" + name + "\n";
    }
    const auto PPD = parsedPPD(lines + "*CloseGroup: InstallableOptions\n");
    std::string reason;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(postScriptQuestionsOfPPD(*PPD, reason)->questions.size(), 20'000U);
    EXPECT_EQ(SNMPQuestionsOfPPD(*PPD)->questions.size(), 20'000U);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

constexpr const char* kObjects =
    "*OpenGroup: InstallableOptions/Installable Options\n"
    "*OpenUI *OptDuplex/Duplex: Boolean\n"
    "*DefaultOptDuplex: False\n"
    "*OptDuplex False/No: \"\"\n"
    "*OptDuplex True/Yes: \"\"\n"
    "*?OIDOptDuplex: \".1.3.6.1.4.1.99.1.0\"\n"
    "*OIDOptDuplex False: \"not there\"\n"
    "*OIDOptDuplex True: \".*\"\n"
    "*CloseUI: *OptDuplex\n"
    "*OpenUI *Memory/Memory: PickOne\n"
    "*DefaultMemory: 1Meg\n"
    "*Memory 1Meg/1 MB: \"\"\n"
    "*Memory 2Meg/2 MB: \"\"\n"
    "*?OIDMemory: \"1.3.6.1.4.1.99.2.0\"\n"
    "*OIDMemory 1024: \"1Meg\"\n"
    "*OIDMemory 2048: \"2Meg\"\n"
    "*OIDMemory 4096: \"4Meg\"\n"
    "*OIDMemory 2Meg: \"2 MB\"\n"
    "*?OIDMemory: \"1.3.6.1.4.1.99.3.0\"\n"
    "*CloseUI: *Memory\n"
    "*CloseGroup: InstallableOptions\n"
    "*?OIDElsewhere: \"1.3.6.1.4.1.99.4.0\"\n";

TEST(InstalledOptionQuestions, ThatObjectsAnswerHaveWhatTheAnswersMean) {
    const auto questions = SNMPQuestionsOfPPD(*parsedPPD(kObjects));
    ASSERT_TRUE(questions);
    ASSERT_EQ(questions->questions.size(), 2U);
    using Meanings = std::map<std::string, std::string, std::less<>>;
    EXPECT_EQ(questions->questions[0].option, "OptDuplex");
    EXPECT_EQ(questions->questions[0].identifier, ".1.3.6.1.4.1.99.1.0");
    EXPECT_EQ(questions->questions[0].choices, (Meanings{{"not there", "False"}}));
    EXPECT_EQ(questions->questions[0].choiceForOthers, "True");
    EXPECT_EQ(questions->questions[1].identifier, "1.3.6.1.4.1.99.2.0");
    EXPECT_EQ(questions->questions[1].choices,
              (Meanings{{"1024", "1Meg"}, {"2048", "2Meg"}, {"2 MB", "2Meg"}}));
    EXPECT_EQ(questions->questions[1].choiceForOthers, "");
    EXPECT_EQ(SNMPQuestionsOfPPD(*parsedPPD(kOptions)), nullptr);
    EXPECT_EQ(SNMPQuestionsOfPPD(*parsedPPD("*?OIDOption1: \"1.3.6\"\n")), nullptr);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
