#include "sync/PPDUpdate.h"

#include <gtest/gtest.h>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbClassTable.h"
#include "tests/support/ParsedPPD.h"
#include "tests/support/TestDoubles.h"
#include "tests/sync/CustomMediaPPD.h"

namespace TkPPDUpdating::Testing {
namespace {

using Rule = PPDUpdate::Rule;
using Values = ReportedDeviceStatus::Values;
using Words = std::vector<std::string>;

std::unique_ptr<OrbPPDConcreteUpdatingManager> allButPageSize() {
    auto manager = std::make_unique<OrbPPDConcreteUpdatingManager>();
    manager->unregisterUpdaterClass(OrbClassFromName("OrbPPDDefaultPageSizeUpdater"));
    return manager;
}

PPDUpdate updateOf(std::string_view lines) {
    return {allButPageSize(), parsedPPD(lines)};
}

std::shared_ptr<const ReportedDeviceStatus> partial(Values values, OrbCSToldEntries told) {
    return std::make_shared<const ReportedDeviceStatus>(std::move(values), Words(),
                                                        std::move(told));
}

OrbCSStatusValue dyes(const std::string& value) {
    OrbCSPensConfiguration pens;
    pens.PPDAttributeValues.emplace("ZrPenDyes", value);
    return pens;
}

TEST(PPDUpdateTest, APPDInWhichNothingFollowsThePrinterHasNoUpdaters) {
    const PPDUpdate update = updateOf("*DefaultPageSize: A4\n*PageSize A4/A4: \"\"\n");
    EXPECT_FALSE(update.hasUpdaters());
    EXPECT_FALSE(update.needsStatus());
}

TEST(PPDUpdateTest, ThePageSizeAloneNeedsNoPrinter) {
    const PPDUpdate update(
        std::make_unique<OrbPPDConcreteUpdatingManager>(),
        parsedPPD("*DefaultPageSize: A4\n*PageSize A4/A4: \"\"\n*PageSize Letter/Letter: \"\"\n"));
    EXPECT_TRUE(update.hasUpdaters());
    EXPECT_FALSE(update.needsStatus());
}

TEST(PPDUpdateTest, AnAttributeOfThePrinterNeedsIt) {
    const PPDUpdate update = updateOf("*ZrMaxSupportedResolution: 600\n");
    EXPECT_TRUE(update.hasUpdaters());
    EXPECT_TRUE(update.needsStatus());
}

TEST(PPDUpdateTest, LeavesWhatWasNotToldAndSaysSo) {
    PPDUpdate update = updateOf("*ZrMaxSupportedResolution: 600\n*BPECalibrationDue: False\n");
    update.setStatus(partial({{"MaxSupportedResolution", OrbCSNumberOrString(std::int64_t{1200})}},
                             {"MaxSupportedResolution"}),
                     Rule::whatWasNotToldStays);
    EXPECT_EQ(*update.updatedText("x:"),
              "*PPD-Adobe: \"4.3\"\n*ZrMaxSupportedResolution: 1200\n*BPECalibrationDue: False\n");
    EXPECT_EQ(update.keptEntries(), Words{"LinTable"});
    EXPECT_EQ(update.updatingValues("x:"),
              (OrbPPDUpdatingValues{{"ZrMaxSupportedResolution", "1200"}}));
}

TEST(PPDUpdateTest, ByTheOtherRuleEveryUpdaterRuns) {
    PPDUpdate update = updateOf("*BPECalibrationDue: False\n");
    update.setStatus(partial({}, {}), Rule::allUpdatersRun);
    EXPECT_EQ(*update.updatedText("x:"), "*PPD-Adobe: \"4.3\"\n*BPECalibrationDue: True\n");
    EXPECT_EQ(update.keptEntries(), Words());
}

TEST(PPDUpdateTest, AStatusThatTellsEverythingKeepsNothing) {
    PPDUpdate update = updateOf("*BPECalibrationDue: False\n");
    update.setStatus(std::make_shared<const FakeDeviceStatus>(), Rule::whatWasNotToldStays);
    EXPECT_EQ(*update.updatedText("x:"), "*PPD-Adobe: \"4.3\"\n*BPECalibrationDue: True\n");
    EXPECT_EQ(update.keptEntries(), Words());
}

TEST(PPDUpdateTest, CompletesThePensValuesFromThePPD) {
    PPDUpdate update =
        updateOf("*ZrPenDyes: C,M\n*ZrPenDropVolumes: 5,6\n*ZrPenEverydayStatus: 1,0\n");
    update.setStatus(partial({{"InstalledPensConfiguration", dyes("C,M,Y")}},
                             {"InstalledPensConfiguration.ZrPenDyes"}),
                     Rule::whatWasNotToldStays);
    EXPECT_EQ(*update.updatedText("x:"),
              "*PPD-Adobe: \"4.3\"\n*ZrPenDyes: C,M,Y\n*ZrPenDropVolumes: 5,6\n"
              "*ZrPenEverydayStatus: 1,0\n");
    EXPECT_EQ(update.keptEntries(), (Words{"InstalledPensConfiguration.ZrPenDropVolumes",
                                           "InstalledPensConfiguration.ZrPenEverydayStatus"}));
}

TEST(PPDUpdateTest, LeavesThePensOfWhichOneValueCannotBeCompleted) {
    const std::string lines = "*ZrPenDyes: C,M\n*ZrPenDropVolumes: \"5,6\"\n";
    PPDUpdate update = updateOf(lines);
    update.setStatus(partial({{"InstalledPensConfiguration", dyes("C,M,Y")}},
                             {"InstalledPensConfiguration.ZrPenDyes"}),
                     Rule::whatWasNotToldStays);
    EXPECT_EQ(*update.updatedText("x:"), "*PPD-Adobe: \"4.3\"\n" + lines);
}

TEST(PPDUpdateTest, AMissingAccessoryDeclaresNoDuplexer) {
    const std::string lines =
        "*ZrDeviceCapabilities: Unknown\n*ZrAutoDuplexCapability: Unknown\n*cupsVersion: 2.4\n";
    PPDUpdate update = updateOf(lines);
    update.setStatus(partial({{"DeviceAccessories", OrbCSDeviceAccessories{{"Tray2", true}}}},
                             {"DeviceAccessories.Tray2"}),
                     Rule::whatWasNotToldStays);
    EXPECT_EQ(*update.updatedText("x:"), "*PPD-Adobe: \"4.3\"\n" + lines);
    EXPECT_EQ(update.keptEntries(), Words{"DeviceAccessories.Duplexer"});
}

/// An update by a printer with these types.
PPDUpdate updatedWithTypes(const PPDText& text, OrbCustomMediaTypes types,
                           PPDUpdate::Defaults defaults) {
    PPDUpdate update(allButPageSize(), PPDModelFile::fileWithText(text), defaults);
    update.setStatus(std::make_shared<const FakeDeviceStatus>(
                         FakeDeviceStatus::Values{{"CustomMediaTypes", std::move(types)}}),
                     Rule::whatWasNotToldStays);
    return update;
}

/// Two media types, and a PPD with both in this order, whose default is the second.
struct TwoTypes {
    std::shared_ptr<const OrbCustomMediaType> gloss = mediaType("Gloss", "1");
    std::shared_ptr<const OrbCustomMediaType> canvas = mediaType("Canvas", "2");
    PPDText PPD = updatedWithTypes(parsedPPD(customMediaLines("custom2"))->text(), {gloss, canvas},
                                   PPDUpdate::Defaults::keepTheirMeaning)
                      .updatedText("x:");
};

TEST(PPDUpdateTest, KnownMediaTypesKeepTheirChoiceAndTheDefaultIsToldWhenItsTypeIsGone) {
    const auto& [gloss, canvas, first] = TwoTypes();
    const PPDText turned =
        updatedWithTypes(first, {canvas, gloss}, PPDUpdate::Defaults::keepTheirMeaning)
            .updatedText("x:");
    EXPECT_EQ(*turned, *first);
    PPDUpdate shorter = updatedWithTypes(first, {canvas}, PPDUpdate::Defaults::keepTheirMeaning);
    EXPECT_NE(shorter.updatedText("x:")->find("*DefaultMediaType: custom1\n"), std::string::npos);
    EXPECT_TRUE(shorter.notes().empty());
    PPDUpdate gone = updatedWithTypes(first, {gloss}, PPDUpdate::Defaults::keepTheirMeaning);
    EXPECT_NE(gone.updatedText("x:")->find("*DefaultMediaType: Plain\n"), std::string::npos);
    EXPECT_EQ(gone.notes(),
              Words{"the default Media Type \"Canvas\" is gone: it is \"Plain Paper\" now"});
}

TEST(PPDUpdateTest, AnExplanationGivesTheSameTextAndSaysWhatKeepsTheMeaningOfADefault) {
    const auto& [gloss, canvas, first] = TwoTypes();
    for (const OrbCustomMediaTypes& types :
         {OrbCustomMediaTypes{canvas}, OrbCustomMediaTypes{gloss}}) {
        PPDUpdate update = updatedWithTypes(first, types, PPDUpdate::Defaults::keepTheirMeaning);
        const PPDText text = update.updatedText("x:");
        const Words notes = update.notes();
        const ExplainedPPDUpdate explained = update.explainedText("x:");
        EXPECT_EQ(*explained.text, *text);
        EXPECT_EQ(update.notes(), notes);
        ASSERT_EQ(explained.steps.size(), 2U);
        EXPECT_EQ(explained.steps[0].updater, "OrbPPDCustomMediaUpdater");
        EXPECT_EQ(explained.steps[1].updater, "tkppdupdate");
        EXPECT_EQ(explained.steps[1].removedLines, Words{"*DefaultMediaType: custom2"});
    }
    PPDUpdate asWritten = updatedWithTypes(first, {canvas}, PPDUpdate::Defaults::areAsWritten);
    EXPECT_EQ(asWritten.explainedText("x:").steps.size(), 1U);
}

TEST(PPDUpdateTest, AsWrittenTheTypesAreInThePrintersOrderAndTheDefaultStays) {
    const auto file = parsedPPD(customMediaLines("custom2"));
    const OrbCustomMediaTypes two = {mediaType("Gloss", "1"), mediaType("Canvas", "2")};
    const PPDText first =
        updatedWithTypes(file->text(), two, PPDUpdate::Defaults::areAsWritten).updatedText("x:");
    const PPDText turned =
        updatedWithTypes(first, {two[1], two[0]}, PPDUpdate::Defaults::areAsWritten)
            .updatedText("x:");
    EXPECT_NE(turned->find("*MediaType custom1/Canvas:"), std::string::npos);
    EXPECT_NE(turned->find("*DefaultMediaType: custom2\n"), std::string::npos);
}

TEST(PPDUpdateTest, TypesThatTheAnswerLeftOutAreNotDeleted) {
    const auto file = parsedPPD(customMediaLines("custom1"));
    const PPDText first =
        updatedWithTypes(file->text(), {mediaType("Gloss", "1"), mediaType("Canvas", "2")},
                         PPDUpdate::Defaults::keepTheirMeaning)
            .updatedText("x:");
    PPDUpdate update(allButPageSize(), PPDModelFile::fileWithText(first));
    update.setStatus(partial({{"CustomMediaTypes", OrbCustomMediaTypes{mediaType("New", "3")}}},
                             {"CustomMediaTypes.reported"}),
                     Rule::whatWasNotToldStays);
    const PPDText text = update.updatedText("x:");
    EXPECT_NE(text->find("*MediaType custom1/Gloss:"), std::string::npos);
    EXPECT_NE(text->find("*MediaType custom2/Canvas:"), std::string::npos);
    EXPECT_NE(text->find("*MediaType custom3/New:"), std::string::npos);
    EXPECT_NE(text->find("*DefaultMediaType: custom1\n"), std::string::npos);
    EXPECT_EQ(update.keptEntries(), Words{"CustomMediaTypes"});
}

TEST(PPDUpdateTest, SaysInWordsWhatWasKept) {
    EXPECT_EQ(PPDUpdate::wordsForKeptEntries({}), "");
    EXPECT_EQ(PPDUpdate::wordsForKeptEntries(
                  {"CustomMediaTypes", "DeviceAccessories.Duplexer", "DeviceAccessories.Tray2",
                   "InstalledPensConfiguration.ZrPenDyes", "InstalledPensConfiguration.codeName",
                   "LinTable", "MaxSupportedResolution", "RemainingPagesEstimations", "Other"}),
              "kept: custom media types, duplexer, lower tray, ZrPenDyes, pens configuration, "
              "calibration, highest resolution, pages left, Other, which the printer did not tell");
}

constexpr const char* kDuplexUnit =
    "*OpenGroup: InstallableOptions/Installable Options\n"
    "*OpenUI *Option5/Duplex Unit: Boolean\n*DefaultOption5: False\n"
    "*Option5 False/Not Installed: \"\"\n*Option5 True/Installed: \"\"\n"
    "*CloseUI: *Option5\n*CloseGroup: InstallableOptions\n";

PPDUpdate updateWithInstallableOptions(std::string_view lines) {
    auto manager = allButPageSize();
    manager->registerUpdaterClass(OrbClassFromName("OrbPPDInstallableOptionsUpdater"));
    return {std::move(manager), parsedPPD(lines)};
}

TEST(PPDUpdateTest, AnOptionThatSaysNoMoreThanAnAccessoryFollowsIt) {
    PPDUpdate update = updateWithInstallableOptions(kDuplexUnit);
    EXPECT_TRUE(update.followsAccessories());
    EXPECT_TRUE(update.needsStatus());
    Values values;
    values.emplace(kTkCSDeviceAccessoriesKey, OrbCSDeviceAccessories{{"Duplexer", true}});
    update.setStatus(partial(values, {"DeviceAccessories.Duplexer"}), Rule::whatWasNotToldStays);
    ASSERT_EQ(update.answersOfAccessories().size(), 1U);
    EXPECT_NE(update.updatedText("file:x")->find("\n*DefaultOption5: True\n"), std::string::npos);
    EXPECT_EQ(update.keptEntries(), Words());
}

TEST(PPDUpdateTest, WhatWasSaidOfTheOptionItselfCountsMore) {
    PPDUpdate update = updateWithInstallableOptions(kDuplexUnit);
    Values values;
    values.emplace(kTkCSDeviceAccessoriesKey, OrbCSDeviceAccessories{{"Duplexer", true}});
    values.emplace(kTkCSInstalledOptionsKey, OrbCSInstalledOptions{{"Option5", "False"}});
    update.setStatus(std::make_shared<const ReportedDeviceStatus>(values),
                     Rule::whatWasNotToldStays);
    EXPECT_TRUE(update.answersOfAccessories().empty());
    EXPECT_NE(update.updatedText("file:x")->find("\n*DefaultOption5: False\n"), std::string::npos);
}

TEST(PPDUpdateTest, NoOptionFollowsAnAccessoryWithoutItsUpdater) {
    EXPECT_FALSE(updateOf(kDuplexUnit).followsAccessories());
    EXPECT_FALSE(updateOf(kDuplexUnit).hasUpdaters());
    PPDUpdate left = updateWithInstallableOptions(kDuplexUnit);
    left.leaveInstallableOptions();
    EXPECT_FALSE(left.hasUpdaters());
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
