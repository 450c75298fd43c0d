#include "sync/PPDUpdateStep.h"

#include <gmock/gmock.h>

#include <cstdint>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbPPDToldRule.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "tests/support/ApplicationUpdaters.h"
#include "tests/support/ParsedPPD.h"

namespace TkPPDUpdating::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::string_view kLines =
    "*ZrMaxSupportedResolution: 600\n"
    "*ZrPenDyes: K\n"
    "*ZrPenDropVolumes: 18\n"
    "*ZrPenEverydayStatus: 1\n"
    "*OpenUI *ZrAutoDuplexerInstalled/Duplexer: Boolean\n"
    "*DefaultZrAutoDuplexerInstalled: False\n"
    "*ZrAutoDuplexerInstalled True/Installed: \"\"\n"
    "*ZrAutoDuplexerInstalled False/Not Installed: \"\"\n"
    "*CloseUI: *ZrAutoDuplexerInstalled\n";

const OrbCSStatusSource kSides = {"DeviceAccessories.Duplexer", "sides-supported",
                                  "one-sided,two-sided-long-edge"};

PPDUpdateAnswer answerWith(ReportedDeviceStatus::Values values,
                           std::optional<OrbCSToldEntries> told = std::nullopt) {
    auto status = std::make_shared<const ReportedDeviceStatus>(
        std::move(values), std::vector<std::string>(), std::move(told),
        std::vector<OrbCSStatusSource>{kSides});
    return {status, status};
}

std::vector<PPDUpdateStep> steps(std::string_view lines, const PPDUpdateAnswer& answer) {
    return explainedPPDUpdate(OrbPPDConcreteUpdatingManager(), *parsedPPD(lines), "my:printer",
                              answer)
        .steps;
}

ReportedDeviceStatus::Values valuesWithDuplexer() {
    ReportedDeviceStatus::Values values;
    values.emplace(kTkCSDeviceAccessoriesKey, OrbCSDeviceAccessories{{"Duplexer", true}});
    values.emplace(kTkCSMaxSupportedResolutionKey, OrbCSNumberOrString(std::int64_t{1200}));
    return values;
}

TEST(PPDUpdateStep, AStepNamesUpdaterStatusEntryAttributeAndLines) {
    const auto all = steps(
        "*ZrMaxSupportedResolution: 1200\n" + std::string(kLines.substr(kLines.find("*OpenUI"))),
        answerWith(valuesWithDuplexer()));
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].updater, "OrbPPDDuplexerInstalledUpdater");
    ASSERT_EQ(all[0].readings.size(), 1U);
    EXPECT_EQ(all[0].readings[0].entry, "DeviceAccessories.Duplexer");
    EXPECT_EQ(all[0].readings[0].value, "installed");
    EXPECT_THAT(all[0].readings[0].sources, ElementsAre(kSides));
    EXPECT_THAT(all[0].removedLines, ElementsAre("*DefaultZrAutoDuplexerInstalled: False"));
    EXPECT_THAT(all[0].addedLines, ElementsAre("*DefaultZrAutoDuplexerInstalled: True"));
}

TEST(PPDUpdateStep, StepsComeInTheOrderOfTheManagerEachOnTheTextOfTheOneBefore) {
    ReportedDeviceStatus::Values values = valuesWithDuplexer();
    values.emplace(kTkCSInstalledPensConfigurationKey,
                   OrbCSPensConfiguration{std::nullopt, {{"ZrPenDyes", "C,M"}}});
    const auto all = steps(kLines, answerWith(std::move(values)));
    std::vector<std::string> updaters;
    for (const PPDUpdateStep& step : all) {
        updaters.push_back(step.updater);
    }
    EXPECT_THAT(updaters,
                ElementsAre("OrbPPDPensConfigCSLInfoUpdater", "OrbPPDMaxResolutionUpdater",
                            "OrbPPDDuplexerInstalledUpdater"));
    EXPECT_THAT(all[0].removedLines,
                ElementsAre("*ZrPenDyes: K", "*ZrPenDropVolumes: 18", "*ZrPenEverydayStatus: 1"));
    EXPECT_THAT(all[0].addedLines,
                ElementsAre("*ZrPenDyes: C,M", "*ZrPenDropVolumes: ", "*ZrPenEverydayStatus: "));
    EXPECT_THAT(all[1].readings[0].sources, IsEmpty());
}

TEST(PPDUpdateStep, AValueThatWasCompletedFromThePPDSaysSo) {
    ReportedDeviceStatus::Values values;
    values.emplace(kTkCSInstalledPensConfigurationKey,
                   OrbCSPensConfiguration{std::nullopt, {{"ZrPenDyes", "C,M"}}});
    PPDUpdateAnswer answer =
        answerWith(std::move(values), OrbCSToldEntries{"InstalledPensConfiguration.ZrPenDyes"});
    answer.completed = OrbPPDToldRule::completedStatus(
        answer.status, {{"ZrPenDropVolumes", "18"}, {"ZrPenEverydayStatus", "1"}});
    const auto all = steps(kLines.substr(kLines.find("*ZrPenDyes"), 60), answer);
    ASSERT_EQ(all.size(), 1U);
    EXPECT_THAT(all[0].addedLines, ElementsAre("*ZrPenDyes: C,M"));
    ASSERT_EQ(all[0].readings.size(), 3U);
    EXPECT_EQ(all[0].readings[0].value, "C,M");
    EXPECT_EQ(all[0].readings[1].value, "18 (from the PPD: the printer did not tell)");
}

TEST(PPDUpdateStep, TheTextIsThatOfTheManagersOperation) {
    OrbPPDConcreteUpdatingManager manager;
    const PPDUpdateAnswer answer = answerWith(valuesWithDuplexer());
    for (const char* sample : {"inkjet", "office", "compact"}) {
        const auto PPD = PPDModelFile::fileWithContentsOfFile(
            std::string(TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-") + sample + ".ppd");
        ASSERT_TRUE(PPD) << sample;
        const PPDText expected = manager.updatedPPDContentsForContents_PPDFile_deviceURI_context(
            PPD->text(), *PPD, "my:printer",
            OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(answer.status, nullptr));
        EXPECT_NE(*expected, *PPD->text()) << sample;
        EXPECT_EQ(*explainedPPDUpdate(manager, *PPD, "my:printer", answer).text, *expected)
            << sample;
    }
}

TEST(PPDUpdateStep, NothingIsExplainedWhereNothingChanges) {
    EXPECT_THAT(steps("*ZrMaxSupportedResolution: 1200\n", answerWith(valuesWithDuplexer())),
                IsEmpty());
    EXPECT_THAT(steps("*ModelName: \"Plain\"\n", {}), IsEmpty());
}

TEST(PPDUpdateStep, AnUpdaterOfTheApplicationIsNamedWithoutReadings) {
    OrbPPDConcreteUpdatingManager manager;
    manager.registerUpdaterClass(&OrbClassOf<OwnUpdater>());
    for (const PPDUpdateAnswer& answer : {PPDUpdateAnswer(), answerWith({})}) {
        const auto all =
            explainedPPDUpdate(manager, *parsedPPD("*A: 1\n"), "my:printer", answer).steps;
        ASSERT_EQ(all.size(), 1U);
        EXPECT_EQ(all[0].updater, "OwnUpdater");
        EXPECT_THAT(all[0].readings, IsEmpty());
        EXPECT_THAT(all[0].removedLines, IsEmpty());
        EXPECT_THAT(all[0].addedLines, ElementsAre("*Own: my:printer"));
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
