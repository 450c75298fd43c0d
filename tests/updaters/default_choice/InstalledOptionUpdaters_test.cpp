#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/updaters/default_choice/DefaultChoiceTestSupport.h"
#include "updaters/default_choice/OrbPPDDuplexerInstalledUpdater.h"
#include "updaters/default_choice/OrbPPDLowerTrayInstalledUpdater.h"
#include "updaters/default_choice/OrbPPDPenConfigUpdater.h"

namespace TkPPDUpdating {
namespace {

using Testing::contextWithAccessories;
using Testing::contextWithPens;
using Testing::contextWithSilentDevice;
using Testing::parsedPPD;
using Testing::textOf;

using StatusValue = OrbPPDStatusBasedOptionsUpdater::StatusValue;

std::optional<OrbPPDDefaultChoices> choicesOf(OrbPPDStatusBasedOptionsUpdater& updater,
                                              OrbDictionary context) {
    return updater.defaultChoicesFromDeviceWithURI_context("ipp://p", &context);
}

PPDText updated(OrbPPDStatusBasedOptionsUpdater& updater, const std::string& contents,
                OrbDictionary context) {
    return updater.updatedPPDContentsForContents_deviceURI_context(makePPDText(contents), "ipp://p",
                                                                   &context);
}

std::optional<OrbPPDUpdatingValues> valuesOf(OrbPPDStatusBasedOptionsUpdater& updater,
                                             const std::string& lines, OrbDictionary context) {
    return updater.PPDUpdatingValuesForPPDFile_deviceURI_context(parsedPPD(lines).get(), "ipp://p",
                                                                 &context);
}

std::string booleanOption(const std::string& name, const std::string& defaultChoice) {
    return "*OpenUI *" + name + "/N: Boolean\n*Default" + name + ": " + defaultChoice + "\n*" +
           name + " True/Yes: \"\"\n*" + name + " False/No: \"\"\n*CloseUI: *" + name + "\n";
}

std::string pickOption(const std::string& name, const std::string& defaultChoice,
                       const std::vector<std::string>& choices) {
    std::string lines =
        "*OpenUI *" + name + "/N: PickOne\n*Default" + name + ": " + defaultChoice + "\n";
    for (const std::string& choice : choices) {
        lines.append("*").append(name).append(" ").append(choice).append("/Pens: \"\"\n");
    }
    return lines + "*CloseUI: *" + name + "\n";
}

// ---- duplexer

TEST(DuplexerInstalled, IsAnsweredForItsOneOption) {
    OrbPPDDuplexerInstalledUpdater updater;
    EXPECT_EQ(updater.optionNames(), std::vector<std::string>{"ZrAutoDuplexerInstalled"});
    for (const char* name : {"ZrAutoDuplexerInstalled", "AnyOtherName"}) {
        EXPECT_EQ(updater.statusKeyForOptionWithName(name), std::nullopt);
        EXPECT_EQ(updater.accessoryNameForOptionWithName(name), "Duplexer");
    }
    EXPECT_EQ(updater.PPDChoiceTextForStatusValue(true), "True");
    EXPECT_EQ(updater.PPDChoiceTextForStatusValue(false), "False");
    const OrbCSStatusValue text = OrbCSNumberOrString(std::string("True"));
    EXPECT_EQ(updater.PPDChoiceTextForStatusValue(StatusValue(&text)), "False");
    EXPECT_THAT(updater.statusEntriesRead(), testing::ElementsAre("DeviceAccessories.Duplexer"));
}

TEST(DuplexerInstalled, IsTrueForADuplexerThatIsInstalled) {
    OrbPPDDuplexerInstalledUpdater updater;
    EXPECT_EQ(choicesOf(updater, contextWithAccessories({{"Tray2", false}, {"Duplexer", true}})),
              (OrbPPDDefaultChoices{{"ZrAutoDuplexerInstalled", "True"}}));
}

TEST(DuplexerInstalled, IsFalseForADuplexerThatIsNotInstalled) {
    OrbPPDDuplexerInstalledUpdater updater;
    EXPECT_EQ(choicesOf(updater, contextWithAccessories({{"Tray2", true}, {"Duplexer", false}})),
              (OrbPPDDefaultChoices{{"ZrAutoDuplexerInstalled", "False"}}));
}

TEST(DuplexerInstalled, IsTakenFromTheFirstOfTwoDuplexers) {
    OrbPPDDuplexerInstalledUpdater updater;
    EXPECT_EQ(choicesOf(updater, contextWithAccessories({{"Duplexer", false}, {"Duplexer", true}})),
              (OrbPPDDefaultChoices{{"ZrAutoDuplexerInstalled", "False"}}));
}

TEST(DuplexerInstalled, IsNotKnownOfADeviceThatReportsNothing) {
    OrbPPDDuplexerInstalledUpdater updater;
    EXPECT_EQ(choicesOf(updater, contextWithSilentDevice()), std::nullopt);
    EXPECT_EQ(updated(updater, "*P\n" + booleanOption("ZrAutoDuplexerInstalled", "False"),
                      contextWithSilentDevice()),
              nullptr);
    EXPECT_EQ(valuesOf(updater, booleanOption("ZrAutoDuplexerInstalled", "False"),
                       contextWithSilentDevice()),
              std::nullopt);
}

TEST(DuplexerInstalled, BecomesTheDefaultOfTheOption) {
    OrbPPDDuplexerInstalledUpdater updater;
    EXPECT_EQ(textOf(updated(updater, "*P\n" + booleanOption("ZrAutoDuplexerInstalled", "False"),
                             contextWithAccessories({{"Duplexer", true}}))),
              "*P\n" + booleanOption("ZrAutoDuplexerInstalled", "True"));
    EXPECT_EQ(textOf(updated(updater, "*P\n" + booleanOption("ZrAutoDuplexerInstalled", "True"),
                             contextWithAccessories({{"Duplexer", false}}))),
              "*P\n" + booleanOption("ZrAutoDuplexerInstalled", "False"));
}

TEST(DuplexerInstalled, IsNotSetWhenTheChoiceHasNoTranslation) {
    OrbPPDDuplexerInstalledUpdater updater;
    EXPECT_EQ(updated(updater,
                      "*P\n*DefaultZrAutoDuplexerInstalled: False\n"
                      "*ZrAutoDuplexerInstalled True: \"\"\n"
                      "*ZrAutoDuplexerInstalled False/No: \"\"\n",
                      contextWithAccessories({{"Duplexer", true}})),
              nullptr);
}

TEST(DuplexerInstalled, IsToldAsAValue) {
    OrbPPDDuplexerInstalledUpdater updater;
    EXPECT_EQ(valuesOf(updater, booleanOption("ZrAutoDuplexerInstalled", "False"),
                       contextWithAccessories({{"Duplexer", true}})),
              (OrbPPDUpdatingValues{{"DefaultZrAutoDuplexerInstalled", "True"}}));
}

TEST(DuplexerInstalled, AppliesToAPPDWithTheOptionOnly) {
    OrbPPDDuplexerInstalledUpdater updater;
    EXPECT_TRUE(updater.isApplicableForPPDFile(
        parsedPPD(booleanOption("ZrAutoDuplexerInstalled", "True")).get()));
    EXPECT_FALSE(updater.isApplicableForPPDFile(
        parsedPPD(booleanOption("ZrLowerTrayInstalled", "True")).get()));
}

// ---- lower tray

const char* const kSensor = "*ZrLowerTrayHasSensor: \"True\"\n";
const char* const kNoSensor = "*ZrLowerTrayHasSensor: \"False\"\n";

std::string tray(const std::string& defaultChoice) {
    return booleanOption("ZrLowerTrayInstalled", defaultChoice);
}

TEST(LowerTrayInstalled, IsAnsweredForItsOneOption) {
    OrbPPDLowerTrayInstalledUpdater updater;
    EXPECT_EQ(updater.optionNames(), std::vector<std::string>{"ZrLowerTrayInstalled"});
    for (const char* name : {"ZrLowerTrayInstalled", "AnyOtherName"}) {
        EXPECT_EQ(updater.statusKeyForOptionWithName(name), std::nullopt);
        EXPECT_EQ(updater.accessoryNameForOptionWithName(name), "Tray2");
    }
    EXPECT_EQ(updater.PPDChoiceTextForStatusValue(true), "True");
    EXPECT_EQ(updater.PPDChoiceTextForStatusValue(false), "False");
    const OrbCSStatusValue text = OrbCSNumberOrString(std::string("True"));
    EXPECT_EQ(updater.PPDChoiceTextForStatusValue(StatusValue(&text)), "False");
    EXPECT_THAT(updater.statusEntriesRead(), testing::ElementsAre("DeviceAccessories.Tray2"));
}

TEST(LowerTrayInstalled, IsTrueOrFalseAsTheAccessorySays) {
    OrbPPDLowerTrayInstalledUpdater updater;
    EXPECT_EQ(choicesOf(updater, contextWithAccessories({{"Duplexer", false}, {"Tray2", true}})),
              (OrbPPDDefaultChoices{{"ZrLowerTrayInstalled", "True"}}));
    EXPECT_EQ(choicesOf(updater, contextWithAccessories({{"Duplexer", true}, {"Tray2", false}})),
              (OrbPPDDefaultChoices{{"ZrLowerTrayInstalled", "False"}}));
}

TEST(LowerTrayInstalled, GivesNullWithoutTheTrayAmongTheAccessories) {
    OrbPPDLowerTrayInstalledUpdater updater;
    EXPECT_EQ(
        updated(updater, "*P\n" + tray("False"), contextWithAccessories({{"Duplexer", true}})),
        nullptr);
}

TEST(LowerTrayInstalled, ValuesAreToldForATrayWithASensor) {
    OrbPPDLowerTrayInstalledUpdater updater;
    EXPECT_EQ(valuesOf(updater, kSensor + tray("False"), contextWithAccessories({{"Tray2", true}})),
              (OrbPPDUpdatingValues{{"DefaultZrLowerTrayInstalled", "True"}}));
}

TEST(LowerTrayInstalled, ValuesAreNothingForATrayWhoseSensorIsFalse) {
    OrbPPDLowerTrayInstalledUpdater updater;
    EXPECT_EQ(
        valuesOf(updater, kNoSensor + tray("False"), contextWithAccessories({{"Tray2", true}})),
        std::nullopt);
}

TEST(LowerTrayInstalled, ValuesAreNothingWithoutASensorAttribute) {
    OrbPPDLowerTrayInstalledUpdater updater;
    EXPECT_EQ(valuesOf(updater, tray("False"), contextWithAccessories({{"Tray2", true}})),
              std::nullopt);
}

TEST(LowerTrayInstalled, ValuesAreNothingUnlessTheSensorIsExactlyTrue) {
    OrbPPDLowerTrayInstalledUpdater updater;
    for (const char* value : {"true", "TRUE", "\"True \"", "Yes", "1", "\"\"", ""}) {
        EXPECT_EQ(
            valuesOf(updater, "*ZrLowerTrayHasSensor: " + std::string(value) + "\n" + tray("False"),
                     contextWithAccessories({{"Tray2", true}})),
            std::nullopt)
            << value;
    }
}

TEST(LowerTrayInstalled, ValuesLookAtTheFirstSensorAttributeOnly) {
    OrbPPDLowerTrayInstalledUpdater updater;
    EXPECT_EQ(valuesOf(updater, std::string(kNoSensor) + kSensor + tray("False"),
                       contextWithAccessories({{"Tray2", true}})),
              std::nullopt);
    EXPECT_EQ(valuesOf(updater, std::string(kSensor) + kNoSensor + tray("False"),
                       contextWithAccessories({{"Tray2", true}})),
              (OrbPPDUpdatingValues{{"DefaultZrLowerTrayInstalled", "True"}}));
}

TEST(LowerTrayInstalled, ValuesAreEmptyForATrayWithASensorInAPPDWithoutTheChoice) {
    OrbPPDLowerTrayInstalledUpdater updater;
    EXPECT_EQ(valuesOf(updater, kSensor + pickOption("ZrLowerTrayInstalled", "False", {"False"}),
                       contextWithAccessories({{"Tray2", true}})),
              OrbPPDUpdatingValues());
}

TEST(LowerTrayInstalled, ValuesAreNothingWithASensorWhenTheDeviceDoesNotReportTheTray) {
    OrbPPDLowerTrayInstalledUpdater updater;
    EXPECT_EQ(valuesOf(updater, kSensor + tray("False"), contextWithSilentDevice()), std::nullopt);
}

TEST(LowerTrayInstalled, ValuesAreNothingWithoutAPPD) {
    OrbPPDLowerTrayInstalledUpdater updater;
    OrbDictionary context = contextWithAccessories({{"Tray2", true}});
    EXPECT_EQ(updater.PPDUpdatingValuesForPPDFile_deviceURI_context(nullptr, "ipp://p", &context),
              std::nullopt);
}

TEST(LowerTrayInstalled, TextIsUpdatedWhateverTheSensor) {
    OrbPPDLowerTrayInstalledUpdater updater;
    for (const std::string sensor : {"", kSensor, kNoSensor}) {
        EXPECT_EQ(textOf(updated(updater, "*P\n" + sensor + tray("False"),
                                 contextWithAccessories({{"Tray2", true}}))),
                  "*P\n" + sensor + tray("True"));
    }
}

TEST(LowerTrayInstalled, AppliesWhateverTheSensor) {
    OrbPPDLowerTrayInstalledUpdater updater;
    for (const std::string sensor : {"", kSensor, kNoSensor}) {
        EXPECT_TRUE(updater.isApplicableForPPDFile(parsedPPD(sensor + tray("False")).get()))
            << sensor;
    }
    EXPECT_FALSE(updater.isApplicableForPPDFile(parsedPPD(kSensor).get()));
}

// ---- pens

std::string pens(const std::string& config, const std::string& configOptions) {
    return pickOption("ZrPenConfig", config, {"C1", "C2"}) +
           pickOption("ZrPenConfigOptions", configOptions, {"C1", "C2"});
}

TEST(PenConfig, IsAnsweredForBothItsOptions) {
    OrbPPDPenConfigUpdater updater;
    EXPECT_EQ(updater.optionNames(),
              (std::vector<std::string>{"ZrPenConfig", "ZrPenConfigOptions"}));
    for (const char* name : {"ZrPenConfig", "ZrPenConfigOptions", "AnyOtherName"}) {
        EXPECT_EQ(updater.statusKeyForOptionWithName(name), "InstalledPensConfiguration");
        EXPECT_EQ(updater.accessoryNameForOptionWithName(name), std::nullopt);
    }
}

TEST(PenConfig, ChoiceIsTheCodeNameOfTheValue) {
    OrbPPDPenConfigUpdater updater;
    const OrbCSStatusValue named = OrbCSPensConfiguration{"C1", {}};
    const OrbCSStatusValue unnamed = OrbCSPensConfiguration{};
    EXPECT_EQ(updater.PPDChoiceTextForStatusValue(StatusValue(&named)), "C1");
    EXPECT_EQ(updater.PPDChoiceTextForStatusValue(StatusValue(&unnamed)), std::nullopt);
}

TEST(PenConfig, ChoiceIsNothingForAValueThatIsNoPensConfiguration) {
    OrbPPDPenConfigUpdater updater;
    const OrbCSStatusValue scalar = OrbCSNumberOrString(std::string("C1"));
    EXPECT_EQ(updater.PPDChoiceTextForStatusValue(StatusValue(&scalar)), std::nullopt);
    EXPECT_EQ(updater.PPDChoiceTextForStatusValue(StatusValue(true)), std::nullopt);
}

TEST(PenConfig, GivesBothOptionsTheCodeName) {
    OrbPPDPenConfigUpdater updater;
    EXPECT_EQ(choicesOf(updater, contextWithPens("C1")),
              (OrbPPDDefaultChoices{{"ZrPenConfig", "C1"}, {"ZrPenConfigOptions", "C1"}}));
    EXPECT_EQ(textOf(updated(updater, "*P\n" + pens("C2", "C2"), contextWithPens("C1"))),
              "*P\n" + pens("C1", "C1"));
}

TEST(PenConfig, GivesNullWhenOneOfTheTwoOptionsHasNoTranslatedChoice) {
    OrbPPDPenConfigUpdater updater;
    const std::string config = pickOption("ZrPenConfig", "C2", {"C1", "C2"});
    const std::string configOptions = pickOption("ZrPenConfigOptions", "C2", {"C1", "C2"});
    const std::string untranslated =
        "*DefaultZrPenConfigOptions: C2\n*ZrPenConfigOptions C1: \"\"\n";
    EXPECT_EQ(updated(updater, "*P\n" + config, contextWithPens("C1")), nullptr);
    EXPECT_EQ(updated(updater, "*P\n" + configOptions, contextWithPens("C1")), nullptr);
    EXPECT_EQ(updated(updater, "*P\n" + config + untranslated, contextWithPens("C1")), nullptr);
}

TEST(PenConfig, WithoutACodeNameLeavesBothOptionsOutAndTheTextAsItIs) {
    OrbPPDPenConfigUpdater updater;
    EXPECT_EQ(choicesOf(updater, contextWithPens(std::nullopt)), OrbPPDDefaultChoices());
    EXPECT_EQ(textOf(updated(updater, "*P\n" + pens("C2", "C2"), contextWithPens(std::nullopt))),
              "*P\n" + pens("C2", "C2"));
    EXPECT_EQ(valuesOf(updater, pens("C2", "C2"), contextWithPens(std::nullopt)),
              OrbPPDUpdatingValues());
}

TEST(PenConfig, IsNothingOfADeviceThatReportsNoPens) {
    OrbPPDPenConfigUpdater updater;
    EXPECT_EQ(choicesOf(updater, contextWithAccessories({{"C1", true}})), std::nullopt);
    EXPECT_EQ(updated(updater, "*P\n" + pens("C2", "C2"), contextWithSilentDevice()), nullptr);
    EXPECT_EQ(valuesOf(updater, pens("C2", "C2"), contextWithSilentDevice()), std::nullopt);
}

TEST(PenConfig, ValuesHoldTheOptionsWhoseChoiceThePPDHas) {
    OrbPPDPenConfigUpdater updater;
    EXPECT_EQ(
        valuesOf(updater, pens("C2", "C2"), contextWithPens("C1")),
        (OrbPPDUpdatingValues{{"DefaultZrPenConfig", "C1"}, {"DefaultZrPenConfigOptions", "C1"}}));
    EXPECT_EQ(
        valuesOf(updater, pickOption("ZrPenConfig", "C2", {"C1", "C2"}), contextWithPens("C1")),
        (OrbPPDUpdatingValues{{"DefaultZrPenConfig", "C1"}}));
}

TEST(PenConfig, AppliesToAPPDWithEitherOption) {
    OrbPPDPenConfigUpdater updater;
    EXPECT_TRUE(
        updater.isApplicableForPPDFile(parsedPPD(pickOption("ZrPenConfig", "C1", {"C1"})).get()));
    EXPECT_TRUE(updater.isApplicableForPPDFile(
        parsedPPD(pickOption("ZrPenConfigOptions", "C1", {"C1"})).get()));
    EXPECT_FALSE(updater.isApplicableForPPDFile(parsedPPD(tray("True")).get()));
}

}  // namespace
}  // namespace TkPPDUpdating
