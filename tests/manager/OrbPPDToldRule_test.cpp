#include "manager/OrbPPDToldRule.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core_interface/TkCSKeys.h"
#include "manager/ITkPPDLineOwnership.h"
#include "manager/ITkPPDStatusReading.h"
#include "manager/OrbClassTable.h"
#include "tests/support/ApplicationUpdaters.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

using Kind = OrbPPDToldDecision::Kind;
using Entries = std::vector<std::string>;

const ReadingUpdater kTwoPenValues({"InstalledPensConfiguration.ZrPenDyes",
                                    "InstalledPensConfiguration.ZrPenDropVolumes"});
const OrbCSToldEntries kDyesAlone = {"InstalledPensConfiguration.ZrPenDyes"};

TEST(OrbPPDToldRuleTest, WhatEachBuiltInUpdaterReads) {
    const std::string pens = "InstalledPensConfiguration.";
    const std::map<std::string_view, Entries> expected = {
        {"OrbPPDDefaultPageSizeUpdater", {}},
        {"OrbPPDDuplexerInstalledUpdater", {"DeviceAccessories.Duplexer"}},
        {"OrbPPDLowerTrayInstalledUpdater", {"DeviceAccessories.Tray2"}},
        {"OrbPPDPenConfigUpdater", {pens + "codeName"}},
        {"OrbPPDEstimatedPagesUpdater", {"RemainingPagesEstimations"}},
        {"OrbPPDLinTablesUpdater", {"LinTable"}},
        {"OrbPPDMaxResolutionUpdater", {"MaxSupportedResolution"}},
        {"OrbPPDPensConfigAdditionalInfoUpdater",
         {pens + "ZrPenActualDropVolumes", pens + "ZrPenNominalDropVolumes",
          pens + "ZrPenBriskDropVolumes", pens + "ZrPenInkSufficient",
          pens + "ZrPenHasPrintheadDefect"}},
        {"OrbPPDPensConfigCSLInfoUpdater",
         {pens + "ZrPenDyes", pens + "ZrPenDropVolumes", pens + "ZrPenEverydayStatus"}},
        {"OrbPPDPensConfigFamilyIDUpdater", {pens + "ZrPenFamilyIDs"}},
        {"OrbPPDPensConfigNameUpdater", {pens + "ZrPensConfigName"}},
        {"OrbPPDDeviceCapabilitiesUpdater", {"DeviceAccessories.Duplexer"}},
        {"OrbPPDNonInstallableDuplexUpdater", {"DeviceAccessories.Duplexer"}},
        {"OrbPPDCustomMediaUpdater", {"CustomMediaTypes"}},
    };
    for (const auto& [name, entries] : expected) {
        const OrbClass* const updaterClass = OrbClassFromName(name);
        ASSERT_NE(updaterClass, nullptr) << name;
        const auto updater = updaterClass->newInstance();
        const auto* const reading = dynamic_cast<const ITkPPDStatusReading*>(updater.get());
        ASSERT_NE(reading, nullptr) << name;
        EXPECT_EQ(reading->statusEntriesRead(), entries) << name;
    }
}

TEST(OrbPPDToldRuleTest, EveryBuiltInUpdaterSaysWhatItReadsAndWhatItOwns) {
    for (const OrbClass* updaterClass : OrbClassTable()) {
        const auto updater = updaterClass->newInstance();
        EXPECT_NE(dynamic_cast<const ITkPPDStatusReading*>(updater.get()), nullptr)
            << updaterClass->name();
        EXPECT_NE(dynamic_cast<const ITkPPDLineOwnership*>(updater.get()), nullptr)
            << updaterClass->name();
    }
}

TEST(OrbPPDToldRuleTest, ReadsAStatusUnlessItSaysThatItReadsNothing) {
    EXPECT_TRUE(OrbPPDToldRule::readsStatus(QuietUpdater()));
    EXPECT_TRUE(OrbPPDToldRule::readsStatus(ReadingUpdater({"LinTable"})));
    EXPECT_FALSE(OrbPPDToldRule::readsStatus(ReadingUpdater({})));
}

TEST(OrbPPDToldRuleTest, RunsWhenEverythingWasTold) {
    EXPECT_EQ(OrbPPDToldRule::decision(kTwoPenValues, std::nullopt, "").kind, Kind::run);
    EXPECT_EQ(
        OrbPPDToldRule::decision(kTwoPenValues, OrbCSToldEntries{"InstalledPensConfiguration"}, "")
            .kind,
        Kind::run);
    EXPECT_EQ(
        OrbPPDToldRule::decision(ReadingUpdater({"LinTable"}), OrbCSToldEntries{"LinTable"}, "")
            .kind,
        Kind::run);
}

TEST(OrbPPDToldRuleTest, RunsOnAnyAnswerWhatDoesNotSayWhatItReadsOrReadsNothing) {
    EXPECT_EQ(OrbPPDToldRule::decision(QuietUpdater(), OrbCSToldEntries(), "").kind, Kind::run);
    EXPECT_EQ(OrbPPDToldRule::decision(ReadingUpdater({}), OrbCSToldEntries(), "").kind, Kind::run);
}

TEST(OrbPPDToldRuleTest, KeepsWhatWasNotToldAndNamesIt) {
    const ReadingUpdater updater({"MaxSupportedResolution", "LinTable", "CustomMediaTypes"});
    const auto decision =
        OrbPPDToldRule::decision(updater, OrbCSToldEntries{"LinTable"}, "*LinTable: 1\n");
    EXPECT_EQ(decision.kind, Kind::keep);
    EXPECT_EQ(decision.notTold, (Entries{"MaxSupportedResolution", "CustomMediaTypes"}));
    EXPECT_TRUE(decision.completedPenValues.empty());
}

TEST(OrbPPDToldRuleTest, CompletesThePensValuesFromThePPD) {
    const auto decision = OrbPPDToldRule::decision(
        kTwoPenValues, kDyesAlone, "*PPD-Adobe: \"4.3\"\n*ZrPenDropVolumes: 5,5,5\n*End\n");
    EXPECT_EQ(decision.kind, Kind::runCompleted);
    EXPECT_EQ(decision.notTold, Entries{"InstalledPensConfiguration.ZrPenDropVolumes"});
    EXPECT_EQ(decision.completedPenValues, (OrbPPDUpdatingValues{{"ZrPenDropVolumes", "5,5,5"}}));
}

/// A PPD's text, and the value that is completed from it; nothing when the updater may not run.
struct Completion {
    std::string contents;
    std::optional<std::string> value;
};

TEST(OrbPPDToldRuleTest, CompletesOnlyFromExactlyOneUnquotedLine) {
    const std::vector<Completion> completions = {
        {"*ZrPenDropVolumes: 5", "5"},
        {"*ZrPenDropVolumes:5,6 7  \r\n", "5,6 7"},
        {"*ZrPenDropVolumes: \n", ""},
        {"*ZrPenDropVolumes:\n", ""},
        {"*%ZrPenDropVolumes: 1\n*ZrPenDropVolumes: 5\n*ZrPenDropVolumesX: 6\n", "5"},
        {"*zrPENdropVolumes: 5\n", "5"},
        {"*ZrPenDropVolumes: " + std::string(236, '5') + "\n", std::string(236, '5')},
        {"*ZrPenDropVolumes: " + std::string(237, '5') + "\n", std::nullopt},
        {"", std::nullopt},
        {"*ZrPenDropVolumes: \"5\"\n", std::nullopt},
        {"*ZrPenDropVolumes: 5\"6\n", std::nullopt},
        {"*ZrPenDropVolumes: 5\n*ZrPenDropVolumes: 6\n", std::nullopt},
        {"*ZrPenDropVolumes: 5\n*zrpendropvolumes: 5\n", std::nullopt},
        {"*ZrPenDropVolumes: 5\n*ZrPenDropVolumes a: 6\n", std::nullopt},
        {"*ZrPenDropVolumes a: 5\n", std::nullopt},
        {"*ZrPenDropVolumes/Text: 5\n", std::nullopt},
        {"ZrPenDropVolumes: 5\n", std::nullopt},
        {"*ZrPenDropVolumes:\t5\t\n", "5"},
        {"*ZrPenDropVolumes: 5\n*ZrPenDropVolumes\ta: 6\n", std::nullopt},
        {"*ZrPenDropVolumes: 5\n*ZrPenDropVolumes/Text: 6\n", std::nullopt},
        {"*ZrPenDropVolumes: 5\n-ZrPenDropVolumes a: 6\n", "5"},
        {"*ZrPenDropVolumes\n*ZrPenDropVolumes: 5\n", "5"},
        {"*ZrPenDropVolumes: 5\n*ZrPenDropVolumes/\n", std::nullopt},
        {"*ZrPenDropVolumes: 5\n*ZrPenDropVolumen: 6\n", "5"},
    };
    for (const Completion& completion : completions) {
        SCOPED_TRACE(completion.contents);
        const auto decision =
            OrbPPDToldRule::decision(kTwoPenValues, kDyesAlone, completion.contents);
        EXPECT_EQ(decision.kind, completion.value ? Kind::runCompleted : Kind::keep);
        if (completion.value) {
            EXPECT_EQ(decision.completedPenValues,
                      (OrbPPDUpdatingValues{{"ZrPenDropVolumes", *completion.value}}));
        }
    }
}

TEST(OrbPPDToldRuleTest, CompletesFromThePPDAloneWhateverStandsBehindItInMemory) {
    const std::string_view memory = "*ZrPenDropVolumes: 5\n*ZrPenDropVolumes/";
    const auto ofThePart =
        OrbPPDToldRule::decision(kTwoPenValues, kDyesAlone, memory.substr(0, memory.size() - 1));
    EXPECT_EQ(ofThePart.kind, Kind::runCompleted);
    EXPECT_EQ(ofThePart.completedPenValues, (OrbPPDUpdatingValues{{"ZrPenDropVolumes", "5"}}));
}

TEST(OrbPPDToldRuleTest, CompletesAValueWhoseKeywordHasOneLetter) {
    const ReadingUpdater updater(
        {"InstalledPensConfiguration.ZrPenDyes", "InstalledPensConfiguration.X"});
    const auto decision = OrbPPDToldRule::decision(updater, kDyesAlone, "*X: 5\n");
    EXPECT_EQ(decision.kind, Kind::runCompleted);
    EXPECT_EQ(decision.completedPenValues, (OrbPPDUpdatingValues{{"X", "5"}}));
}

TEST(OrbPPDToldRuleTest, KeepsThePensValuesWhenNoneOfThemWasTold) {
    const auto decision = OrbPPDToldRule::decision(kTwoPenValues, OrbCSToldEntries{"LinTable"},
                                                   "*ZrPenDyes: C\n*ZrPenDropVolumes: 5\n");
    EXPECT_EQ(decision.kind, Kind::keep);
    EXPECT_EQ(decision.notTold.size(), 2U);
}

TEST(OrbPPDToldRuleTest, CompletesNothingButThePensValues) {
    const std::string contents = "*codeName: Four\n*Duplexer: True\n*ZrPenDyes: C\n";
    const ReadingUpdater withCodeName(
        {"InstalledPensConfiguration.ZrPenDyes", "InstalledPensConfiguration.codeName"});
    EXPECT_EQ(OrbPPDToldRule::decision(withCodeName, kDyesAlone, contents).kind, Kind::keep);
    const ReadingUpdater withAccessory(
        {"InstalledPensConfiguration.ZrPenDyes", "DeviceAccessories.Duplexer"});
    EXPECT_EQ(OrbPPDToldRule::decision(withAccessory, kDyesAlone, contents).kind, Kind::keep);
    const ReadingUpdater withTheWhole(
        {"InstalledPensConfiguration.ZrPenDyes", "InstalledPensConfiguration"});
    EXPECT_EQ(OrbPPDToldRule::decision(withTheWhole, kDyesAlone, contents).kind, Kind::keep);
}

TEST(OrbPPDToldRuleTest, OnlyAnEntryOfThePensNamesAValueThatCanBeCompleted) {
    const std::string contents = "*ZrPenDropVolumes: 5\n*: 5\n";
    for (const char* entry :
         {"InstalledPensConfiguration.", "InstalledPensConfigurationXZrPenDropVolumes",
          "InstalledPensConfigurations.ZrPenDropVolumes",
          "InstalledPensDescriptions_.ZrPenDropVolumes"}) {
        const ReadingUpdater updater({"InstalledPensConfiguration.ZrPenDyes", entry});
        EXPECT_EQ(OrbPPDToldRule::decision(updater, kDyesAlone, contents).kind, Kind::keep)
            << entry;
    }
}

TEST(OrbPPDToldRuleTest, SomeMediaTypesAreToBeCompleted) {
    const ReadingUpdater updater({"CustomMediaTypes"});
    const auto some =
        OrbPPDToldRule::decision(updater, OrbCSToldEntries{"CustomMediaTypes.reported"}, "");
    EXPECT_EQ(some.kind, Kind::runCompleted);
    EXPECT_TRUE(some.completesMediaTypes);
    const auto none = OrbPPDToldRule::decision(updater, OrbCSToldEntries(), "");
    EXPECT_EQ(none.kind, Kind::keep);
    EXPECT_FALSE(none.completesMediaTypes);
    const auto other = OrbPPDToldRule::decision(ReadingUpdater({"LinTable"}),
                                                OrbCSToldEntries{"CustomMediaTypes.reported"}, "");
    EXPECT_EQ(other.kind, Kind::keep);
    EXPECT_FALSE(other.completesMediaTypes);
    EXPECT_FALSE(OrbPPDToldRule::decision(updater, OrbCSToldEntries{"CustomMediaTypes"}, "")
                     .completesMediaTypes);
}

TEST(OrbPPDToldRuleTest, TheCompletedStatusHasPensOfItsOwnWhereNoneWereTold) {
    const auto status = std::make_shared<const FakeDeviceStatus>(FakeDeviceStatus::Values{});
    const auto completed = OrbPPDToldRule::completedStatus(status, {{"ZrPenDyes", "C"}});
    OrbCSPensConfiguration pens;
    pens.PPDAttributeValues = {{"ZrPenDyes", "C"}};
    EXPECT_EQ(
        *completed->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey),
        pens);
}

TEST(OrbPPDToldRuleTest, TheCompletedStatusHasTheAddedValuesAndAllOthers) {
    OrbCSPensConfiguration pens;
    pens.codeName = "Four";
    pens.PPDAttributeValues = {{"ZrPenDyes", "C,M"}};
    const auto status = std::make_shared<const FakeDeviceStatus>(FakeDeviceStatus::Values{
        {std::string(kTkCSInstalledPensConfigurationKey), pens},
        {std::string(kTkCSMaxSupportedResolutionKey), OrbCSNumberOrString(std::int64_t{600})}});
    EXPECT_EQ(OrbPPDToldRule::completedStatus(status, {}), status);
    const auto completed = OrbPPDToldRule::completedStatus(status, {{"ZrPenDropVolumes", "5"}});
    pens.PPDAttributeValues.emplace("ZrPenDropVolumes", "5");
    EXPECT_EQ(
        *completed->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey),
        pens);
    EXPECT_EQ(completed->statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey)
                  ->stringValue(),
              "600");
    EXPECT_EQ(completed->statusValueForKey_error(kTkCSLinTableKey, nullptr), nullptr);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
