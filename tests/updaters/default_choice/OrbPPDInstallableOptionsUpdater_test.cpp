#include "updaters/default_choice/OrbPPDInstallableOptionsUpdater.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "manager/OrbClassTable.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "manager/OrbPPDToldRule.h"
#include "ppd/PPDStatements.h"
#include "tests/updaters/default_choice/DefaultChoiceTestSupport.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Two installable options, one that the driver's own updaters set, and one outside of the group.
constexpr std::string_view kPPD =
    "*OpenGroup: InstallableOptions/Installable Options\n"
    "*OpenUI *Option1/Tray 2: PickOne\n"
    "*DefaultOption1: None\n"
    "*Option1 None/Not Installed: \"\"\n"
    "*Option1 Tray500/Installed: \"\"\n"
    "*?Option1: \"(None) = flush\"\n"
    "*CloseUI: *Option1\n"
    "*JCLOpenUI *Option2/Duplex Unit: Boolean\n"
    "*DefaultOption2: False\n"
    "*Option2 False/Not Installed: \"\"\n"
    "*Option2 True/Installed: \"\"\n"
    "*JCLCloseUI: *Option2\n"
    "*OpenUI *ZrAutoDuplexerInstalled/Duplexer: Boolean\n"
    "*DefaultZrAutoDuplexerInstalled: False\n"
    "*ZrAutoDuplexerInstalled False/Not Installed: \"\"\n"
    "*ZrAutoDuplexerInstalled True/Installed: \"\"\n"
    "*CloseUI: *ZrAutoDuplexerInstalled\n"
    "*CloseGroup: InstallableOptions\n"
    "*OpenUI *Duplex/Two-sided: PickOne\n"
    "*DefaultDuplex: None\n"
    "*Duplex None/Off: \"\"\n"
    "*Duplex DuplexTumble/On: \"\"\n"
    "*CloseUI: *Duplex\n";

OrbDictionary contextWithOptions(OrbCSInstalledOptions options) {
    FakeDeviceStatus::Values values;
    values.emplace(kTkCSInstalledOptionsKey, std::move(options));
    return OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(
        std::make_shared<FakeDeviceStatus>(std::move(values)), nullptr);
}

std::optional<std::string> updated(OrbCSInstalledOptions options, std::string_view PPD = kPPD) {
    OrbDictionary context = contextWithOptions(std::move(options));
    return textOf(OrbPPDInstallableOptionsUpdater().updatedPPDContentsForContents_deviceURI_context(
        makePPDText("*PPD-Adobe: \"4.3\"\n" + std::string(PPD)), "file:printer", &context));
}

/// The test's PPD with parts of it in other words.
std::string withReplaced(std::initializer_list<std::pair<std::string, std::string>> replacements) {
    std::string text = "*PPD-Adobe: \"4.3\"\n" + std::string(kPPD);
    for (const auto& [old, replacement] : replacements) {
        text.replace(text.find(old), old.size(), replacement);
    }
    return text;
}

TEST(OrbPPDInstallableOptionsUpdater, AppliesToAPPDWithTheGroup) {
    OrbPPDInstallableOptionsUpdater updater;
    EXPECT_TRUE(updater.isApplicableForPPDFile(parsedPPD(kPPD).get()));
    EXPECT_TRUE(updater.isApplicableForPPDFile(
        parsedPPD("*OpenGroup: General\n*OpenGroup: InstallableOptions\n").get()));
    for (const char* PPD : {"*OpenGroup: General/InstallableOptions\n",
                            "*OpenGroup: InstallableOptionsOfMine/Options\n", "*OpenGroup:\n",
                            "*CloseGroup: InstallableOptions\n"}) {
        EXPECT_FALSE(updater.isApplicableForPPDFile(parsedPPD(PPD).get())) << PPD;
    }
    EXPECT_FALSE(updater.isApplicableForPPDFile(nullptr));
}

TEST(OrbPPDInstallableOptionsUpdater, SetsTheDefaultsOfOptionsOfTheGroup) {
    EXPECT_EQ(updated({{"Option1", "Tray500"}, {"Option2", "True"}}),
              withReplaced({{"DefaultOption1: None", "DefaultOption1: Tray500"},
                            {"DefaultOption2: False", "DefaultOption2: True"}}));
}

TEST(OrbPPDInstallableOptionsUpdater, LeavesOptionsOutsideOfTheGroupAndThoseOfOtherUpdaters) {
    EXPECT_EQ(
        updated(
            {{"Duplex", "DuplexTumble"}, {"ZrAutoDuplexerInstalled", "True"}, {"Unknown", "True"}}),
        withReplaced({}));
}

TEST(OrbPPDInstallableOptionsUpdater, AnOptionThatFailsKeepsNoneOfTheOthers) {
    for (const char* choice : {"Tray250", "", "None/Not", "Tray500\n*Option1 Evil/x"}) {
        EXPECT_EQ(updated({{"Option1", choice}, {"Option2", "True"}}),
                  withReplaced({{"DefaultOption2: False", "DefaultOption2: True"}}))
            << choice;
    }
}

TEST(OrbPPDInstallableOptionsUpdater, LeavesAnOptionThatStandsElsewhereFirst) {
    const std::string PPD =
        "*OpenGroup: General\n*OpenUI *Option1/Tray 2: PickOne\n*CloseUI: *Option1\n"
        "*CloseGroup: General\n" +
        std::string(kPPD);
    EXPECT_EQ(updated({{"Option1", "Tray500"}}, PPD), "*PPD-Adobe: \"4.3\"\n" + PPD);
    OrbDictionary context = contextWithOptions({{"Option1", "Tray500"}});
    EXPECT_THAT(*OrbPPDInstallableOptionsUpdater().PPDUpdatingValuesForPPDFile_deviceURI_context(
                    parsedPPD(PPD).get(), "file:printer", &context),
                IsEmpty());
}

TEST(OrbPPDInstallableOptionsUpdater, ThousandsOfOptionsAreSetInTime) {
    constexpr int kCount = 4000;
    std::string PPD = "*OpenGroup: InstallableOptions/Installable Options\n";
    OrbCSInstalledOptions options;
    for (int number = 0; number < kCount; ++number) {
        const std::string name = "Option" + std::to_string(number);
        PPD += "*OpenUI *" + name + "/Tray: Boolean\n*Default" + name + ": False\n*" + name +
               " False/No: \"\"\n*" + name + " True/Yes: \"\"\n*CloseUI: *" + name + "\n";
        options.emplace(name, number % 2 == 0 ? "True" : "Maybe");
    }
    PPD += "*CloseGroup: InstallableOptions\n";
    const auto start = std::chrono::steady_clock::now();
    const auto text = updated(options, PPD);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    ASSERT_TRUE(text);
    EXPECT_NE(text->find("*DefaultOption3998: True\n"), std::string::npos);
    EXPECT_NE(text->find("*DefaultOption3999: False\n"), std::string::npos);
}

TEST(OrbPPDInstallableOptionsUpdater, ChangesNothingWhenNothingIsTold) {
    OrbDictionary context = contextWithSilentDevice();
    OrbPPDInstallableOptionsUpdater updater;
    EXPECT_EQ(updater.updatedPPDContentsForContents_deviceURI_context(
                  makePPDText(std::string(kPPD)), "file:printer", &context),
              nullptr);
    EXPECT_EQ(updater.PPDUpdatingValuesForPPDFile_deviceURI_context(parsedPPD(kPPD).get(),
                                                                    "file:printer", &context),
              std::nullopt);
    context = contextWithOptions({{"Option1", "Tray500"}});
    EXPECT_EQ(
        updater.updatedPPDContentsForContents_deviceURI_context(nullptr, "file:printer", &context),
        nullptr);
}

TEST(OrbPPDInstallableOptionsUpdater, TellsTheValuesThatItWouldWrite) {
    OrbDictionary context = contextWithOptions({{"Option1", "Tray500"},
                                                {"Option2", "Maybe"},
                                                {"Duplex", "DuplexTumble"},
                                                {"ZrAutoDuplexerInstalled", "True"}});
    const auto values =
        OrbPPDInstallableOptionsUpdater().PPDUpdatingValuesForPPDFile_deviceURI_context(
            parsedPPD(kPPD).get(), "file:printer", &context);
    ASSERT_TRUE(values);
    EXPECT_THAT(*values, ElementsAre(Pair("DefaultOption1", "Tray500")));
}

TEST(OrbPPDInstallableOptionsUpdater, TakesTheDefaultsOfAQueuesPPDEachByItself) {
    const auto queue = parsedPPD(
        "*OpenUI *Option1/Tray 2: PickOne\n*DefaultOption1: Gone\n*CloseUI: *Option1\n"
        "*OpenUI *Option2/Duplex Unit: Boolean\n*DefaultOption2: True\n*CloseUI: *Option2\n");
    const PPDText text = makePPDText("*PPD-Adobe: \"4.3\"\n" + std::string(kPPD));
    EXPECT_EQ(
        textOf(OrbPPDInstallableOptionsUpdater().updatedPPDContentsForContents_PPDFile_context(
            text, queue.get(), nullptr)),
        withReplaced({{"DefaultOption2: False", "DefaultOption2: True"}}));
    EXPECT_EQ(OrbPPDInstallableOptionsUpdater().updatedPPDContentsForContents_PPDFile_context(
                  text, nullptr, nullptr),
              nullptr);
    EXPECT_EQ(OrbPPDInstallableOptionsUpdater().updatedPPDContentsForContents_PPDFile_context(
                  nullptr, queue.get(), nullptr),
              nullptr);
}

TEST(OrbPPDInstallableOptionsUpdater, LeavesAnOptionThatAQueuesPPDSaysNothingOf) {
    const PPDText text = makePPDText("*PPD-Adobe: \"4.3\"\n" + std::string(kPPD));
    for (const char* Option1 :
         {"",
          "*OpenUI *Option1/Tray 2: PickOne\n*Option1 Tray500/Installed: \"\"\n"
          "*CloseUI: *Option1\n"}) {
        const auto queue = parsedPPD(std::string(Option1) +
                                     "*OpenUI *Option2/Duplex Unit: Boolean\n"
                                     "*DefaultOption2: True\n*CloseUI: *Option2\n");
        EXPECT_EQ(
            textOf(OrbPPDInstallableOptionsUpdater().updatedPPDContentsForContents_PPDFile_context(
                text, queue.get(), nullptr)),
            withReplaced({{"DefaultOption2: False", "DefaultOption2: True"}}))
            << Option1;
    }
}

TEST(OrbPPDInstallableOptionsUpdater, ChangesNothingWithoutADevice) {
    const CoreInterfaceScope scope;
    OrbCoreInterface::setCommunicationServices(nullptr);
    OrbDictionary context;
    OrbPPDInstallableOptionsUpdater updater;
    EXPECT_EQ(updater.defaultChoicesFromDeviceWithURI_context("file:printer", &context),
              std::nullopt);
    EXPECT_EQ(updater.updatedPPDContentsForContents_deviceURI_context(
                  makePPDText(std::string(kPPD)), "file:printer", &context),
              nullptr);
}

TEST(OrbPPDInstallableOptionsUpdater, FindsAChoiceOfAnOptionOfTheGroupOnly) {
    const auto PPD = parsedPPD(kPPD);
    OrbPPDInstallableOptionsUpdater updater;
    const auto finds = [&](std::string_view choice, std::optional<std::string_view> option,
                           const OrbPPDFile* PPDFile) {
        return updater.containsChoiceWithName_forOptionWithName_inPPDFile(choice, option, PPDFile);
    };
    EXPECT_TRUE(finds("Tray500", "Option1", PPD.get()));
    EXPECT_FALSE(finds("Tray250", "Option1", PPD.get()));
    EXPECT_FALSE(finds("Tray500", "Option3", PPD.get()));
    EXPECT_FALSE(finds("None", "Duplex", PPD.get()));
    EXPECT_FALSE(finds("True", "ZrAutoDuplexerInstalled", PPD.get()));
    EXPECT_FALSE(finds("Tray500", std::nullopt, PPD.get()));
    EXPECT_FALSE(finds("Tray500", "Option1", nullptr));
}

TEST(OrbPPDInstallableOptionsUpdater, OwnsTheDefaultsOfItsOptionsOnly) {
    const std::string text = withReplaced({});
    const auto statements = PPDStatementsOfText(text);
    const auto owned = OrbPPDInstallableOptionsUpdater().ownedLines(statements, statements);
    EXPECT_THAT(owned.defaultsOfOptions, ElementsAre("Option1", "Option2"));
    EXPECT_THAT(owned.attributes, IsEmpty());
    EXPECT_THAT(owned.choices, IsEmpty());
    EXPECT_FALSE(owned.mayAdd || owned.mayTakeAway);
}

TEST(OrbPPDInstallableOptionsUpdater, OwnsEachOptionOnceAndNoneWithoutAName) {
    const auto statements = PPDStatementsOfText(
        "*OpenGroup: InstallableOptions\n*OpenUI: PickOne\n*CloseUI: *\n"
        "*OpenUI *Option1/Tray 2: PickOne\n*CloseUI: *Option1\n"
        "*OpenUI *Option1/Tray 2: PickOne\n*CloseUI: *Option1\n"
        "*CloseGroup: InstallableOptions\n");
    EXPECT_THAT(
        OrbPPDInstallableOptionsUpdater().ownedLines(statements, statements).defaultsOfOptions,
        ElementsAre("Option1"));
}

TEST(OrbPPDInstallableOptionsUpdater, AnOptionIsInTheGroupInWhichItOpens) {
    const auto statements = PPDStatementsOfText(
        "*OpenUI *Option1/Tray 2: PickOne\n*OpenGroup: InstallableOptions\n*CloseUI: *Option1\n"
        "*CloseGroup: InstallableOptions\n"
        "*JCLOpenUI *Option2/Unit: Boolean\n*OpenGroup: InstallableOptions\n"
        "*JCLCloseUI: *Option2\n"
        "*OpenUI *Option3/Tray 3: PickOne\n*CloseGroup: InstallableOptions\n"
        "*CloseUI: *Option3\n");
    EXPECT_THAT(
        OrbPPDInstallableOptionsUpdater().ownedLines(statements, statements).defaultsOfOptions,
        ElementsAre("Option3"));
}

TEST(OrbPPDInstallableOptionsUpdater, IsFoundByItsNameAndInNoFreshManager) {
    const OrbClass* const itself = OrbClassFromName("OrbPPDInstallableOptionsUpdater");
    ASSERT_NE(itself, nullptr);
    EXPECT_EQ(itself, &OrbClassOf<OrbPPDInstallableOptionsUpdater>());
    const OrbPPDConcreteUpdatingManager manager;
    EXPECT_FALSE(manager.registeredClasses().contains(itself));
    EXPECT_EQ(manager.registeredClasses().size(), 14U);
}

TEST(OrbPPDInstallableOptionsUpdater, RunsOnlyWhenWhatIsInstalledWasTold) {
    const OrbPPDInstallableOptionsUpdater updater;
    using Kind = OrbPPDToldDecision::Kind;
    EXPECT_EQ(OrbPPDToldRule::decision(updater, OrbCSToldEntries{"InstalledOptions"}, kPPD).kind,
              Kind::run);
    EXPECT_EQ(OrbPPDToldRule::decision(updater, OrbCSToldEntries{"DeviceAccessories"}, kPPD).kind,
              Kind::keep);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
