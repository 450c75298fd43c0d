#include "sync/InstalledOptionAnswers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDStatements.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::ElementsAre;

constexpr const char* kPPD =
    "*OpenGroup: InstallableOptions/Installable Options\n"
    "*OpenUI *Option1/Tray 2: PickOne\n"
    "*DefaultOption1: None\n"
    "*Option1 None/Not Installed: \"\"\n"
    "*Option1 Tray500/500 Sheets: \"\"\n"
    "*CloseUI: *Option1\n"
    "*OpenUI *Option2/Unit<C3A9>: Boolean\n"
    "*DefaultOption2: False\n"
    "*DefaultOption2: True\n"
    "*Option2 False: \"\"\n"
    "*Option2 True/Yes: \"\"\n"
    "*CloseUI: *Option2\n"
    "*OpenUI *Option3: Boolean\n"
    "*Option3 True/Yes: \"\"\n"
    "*CloseUI: *Option3\n"
    "*CloseGroup: InstallableOptions\n"
    "*OpenUI *Duplex/Two-sided: PickOne\n*Duplex None/Off: \"\"\n*CloseUI: *Duplex\n";

std::shared_ptr<const ReportedDeviceStatus> statusOf(OrbCSInstalledOptions installed,
                                                     std::vector<std::string> reasons = {}) {
    ReportedDeviceStatus::Values values;
    OrbCSToldEntries told;
    if (!installed.empty()) {
        values.emplace(kTkCSInstalledOptionsKey, std::move(installed));
        told.emplace(kTkCSInstalledOptionsKey);
    }
    return std::make_shared<const ReportedDeviceStatus>(std::move(values), std::move(reasons),
                                                        std::move(told));
}

std::vector<std::string> wordsOf(const std::vector<InstalledOptionAnswer>& answers) {
    std::vector<std::string> words;
    for (const InstalledOptionAnswer& answer : answers) {
        words.push_back(answer.words);
    }
    return words;
}

TEST(InstallableOptions, AreThoseOfTheGroup) {
    const auto options = installableOptionsOf(PPDStatementsOfText(kPPD));
    ASSERT_EQ(options.size(), 3U);
    EXPECT_EQ(options[0].text, "Tray 2");
    EXPECT_EQ(options[0].defaultChoice, "None");
    ASSERT_EQ(options[0].choices.size(), 2U);
    EXPECT_EQ(options[0].textOfChoice("Tray500"), "500 Sheets");
    EXPECT_EQ(options[0].choice("Other"), nullptr);
    EXPECT_EQ(options[1].text, "Unit\xC3\xA9");
    EXPECT_EQ(options[1].defaultChoice, "False") << "the first counts";
    EXPECT_EQ(options[1].textOfChoice("False"), "False");
    EXPECT_EQ(options[2].text, "Option3");
    EXPECT_EQ(options[2].defaultChoice, "");
}

TEST(InstalledOptionAnswers, SayHowAndWhatWasAndIsInThePPDsWords) {
    const auto options = installableOptionsOf(PPDStatementsOfText(kPPD));
    const std::vector<std::string> asked = {"Option1", "Option2", "Option3"};
    EXPECT_THAT(
        wordsOf(answersOfStatus(
            options, asked, "PostScript",
            statusOf({{"Option1", "Tray500"}, {"Option2", "False"}, {"Option3", "True"}}).get(),
            "")),
        ElementsAre("Tray 2: asked over PostScript: Not Installed -> 500 Sheets",
                    "Unit\xC3\xA9: asked over PostScript: False, as before",
                    "Option3: asked over PostScript: Yes"));
    EXPECT_THAT(
        wordsOf(answersOfStatus(options, asked, "SNMP",
                                statusOf({}, {"Option1: the printer does not know"}).get(), "")),
        ElementsAre(
            "Tray 2: asked over SNMP, no answer: the printer does not know; stays Not Installed",
            "Unit\xC3\xA9: asked over SNMP, no answer: the printer tells nothing; stays False",
            "Option3: asked over SNMP, no answer: the printer tells nothing"));
    EXPECT_THAT(wordsOf(answersOfStatus(options, std::vector<std::string>{"Option1", "Duplex"},
                                        "SNMP", nullptr, "gone")),
                ElementsAre("Tray 2: asked over SNMP, no answer: gone; stays Not Installed"));
}

TEST(InstalledOptionAnswers, HaveTheirKeywordsForPrograms) {
    const auto options = installableOptionsOf(PPDStatementsOfText(kPPD));
    const InstalledOptionAnswer answer = answeredOption(options[0], "duplexer", "Tray500");
    EXPECT_EQ(answer.option, "Option1");
    EXPECT_EQ(answer.way, "duplexer");
    EXPECT_EQ(answer.before, "None");
    EXPECT_EQ(answer.after, "Tray500");
    EXPECT_EQ(answer.words, "Tray 2: as its duplexer: Not Installed -> 500 Sheets");
    EXPECT_EQ(unansweredOption(options[0], "SNMP", "gone").after, "");
    EXPECT_EQ(unansweredOption(options[0], "SNMP", "gone").reason, "gone");
}

TEST(InstalledOptionAnswers, JoinWhatAStatusTells) {
    ReportedDeviceStatus::Values values;
    values.emplace(kTkCSLinTableKey, OrbCSLinTable());
    values.emplace(kTkCSInstalledOptionsKey,
                   OrbCSInstalledOptions{{"Option1", "None"}, {"Option2", "False"}});
    const auto others = std::make_shared<const ReportedDeviceStatus>(
        values, std::vector<std::string>(), OrbCSToldEntries{"LinTable"});
    const auto both = statusWithInstalledOptions(others, {{"Option1", "Tray500"}});
    EXPECT_TRUE(both->statusValueForKey<OrbCSLinTable>(kTkCSLinTableKey));
    EXPECT_EQ(*installedOptionsOf(*both),
              (OrbCSInstalledOptions{{"Option1", "Tray500"}, {"Option2", "False"}}));
    EXPECT_EQ(OrbCSPartialStatus::toldEntriesOf(*both),
              (OrbCSToldEntries{"LinTable", "InstalledOptions"}));
    const auto alone = statusWithInstalledOptions(nullptr, {{"Option1", "Tray500"}});
    EXPECT_EQ(OrbCSPartialStatus::toldEntriesOf(*alone), OrbCSToldEntries{"InstalledOptions"});
    EXPECT_EQ(alone->statusValueForKey<OrbCSLinTable>(kTkCSLinTableKey), nullptr);
    EXPECT_EQ(statusWithInstalledOptions(others, {}), others);
    EXPECT_EQ(statusWithInstalledOptions(nullptr, {}), nullptr);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
