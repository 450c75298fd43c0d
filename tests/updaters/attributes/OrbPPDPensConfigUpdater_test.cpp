#include "updaters/attributes/OrbPPDPensConfigUpdater.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core_interface/TkCSKeys.h"
#include "tests/updaters/attributes/AttributeUpdaterRuns.h"

namespace TkPPDUpdating::Testing {
namespace {

using Names = std::vector<std::string_view>;
using PenValues = std::map<std::string, std::string, std::less<>>;

Names namesOf(const OrbPPDAttributesUpdater& updater) {
    const auto names = updater.attributeNames();
    return {names.begin(), names.end()};
}

std::shared_ptr<const OrbCSDeviceStatus> statusWithPens(PenValues values) {
    return statusWith(kTkCSInstalledPensConfigurationKey,
                      OrbCSPensConfiguration{"FourPens", std::move(values)});
}

class UpdaterWithoutNames : public OrbPPDPensConfigUpdater {
  public:
    std::span<const std::string_view> attributeNames() const override { return {}; }
};

TEST(OrbPPDPensConfigUpdater, EachUpdaterNamesTheAttributesOfItsGroupInOrder) {
    EXPECT_EQ(namesOf(OrbPPDPensConfigNameUpdater()), Names{"ZrPensConfigName"});
    EXPECT_EQ(namesOf(OrbPPDPensConfigCSLInfoUpdater()),
              (Names{"ZrPenDyes", "ZrPenDropVolumes", "ZrPenEverydayStatus"}));
    EXPECT_EQ(namesOf(OrbPPDPensConfigFamilyIDUpdater()), Names{"ZrPenFamilyIDs"});
    EXPECT_EQ(namesOf(OrbPPDPensConfigAdditionalInfoUpdater()),
              (Names{"ZrPenActualDropVolumes", "ZrPenNominalDropVolumes", "ZrPenBriskDropVolumes",
                     "ZrPenInkSufficient", "ZrPenHasPrintheadDefect"}));
}

TEST(OrbPPDPensConfigUpdater, TakesTheValueOfEachOfItsKeywords) {
    const auto status = statusWithPens({{"ZrPensConfigName", "FourPens"},
                                        {"ZrPenDyes", "C,M,Y,K"},
                                        {"ZrPenDropVolumes", "4,4,4,12"},
                                        {"ZrPenEverydayStatus", "1,1,1,0"},
                                        {"ZrPenFamilyIDs", "7,7,7,9"},
                                        {"ZrPenActualDropVolumes", "3.9,4,4,11"},
                                        {"ZrPenNominalDropVolumes", "4,4,4,12"},
                                        {"ZrPenBriskDropVolumes", "5,5,5,14"},
                                        {"ZrPenInkSufficient", "1,1,0,1"},
                                        {"ZrPenHasPrintheadDefect", "0,0,0,1"}});
    OrbPPDPensConfigNameUpdater name;
    EXPECT_EQ(valuesFrom(name, status), (OrbPPDUpdatingValues{{"ZrPensConfigName", "FourPens"}}));
    OrbPPDPensConfigCSLInfoUpdater info;
    EXPECT_EQ(valuesFrom(info, status), (OrbPPDUpdatingValues{{"ZrPenDyes", "C,M,Y,K"},
                                                              {"ZrPenDropVolumes", "4,4,4,12"},
                                                              {"ZrPenEverydayStatus", "1,1,1,0"}}));
    OrbPPDPensConfigFamilyIDUpdater family;
    EXPECT_EQ(valuesFrom(family, status), (OrbPPDUpdatingValues{{"ZrPenFamilyIDs", "7,7,7,9"}}));
    OrbPPDPensConfigAdditionalInfoUpdater additional;
    EXPECT_EQ(valuesFrom(additional, status),
              (OrbPPDUpdatingValues{{"ZrPenActualDropVolumes", "3.9,4,4,11"},
                                    {"ZrPenNominalDropVolumes", "4,4,4,12"},
                                    {"ZrPenBriskDropVolumes", "5,5,5,14"},
                                    {"ZrPenInkSufficient", "1,1,0,1"},
                                    {"ZrPenHasPrintheadDefect", "0,0,0,1"}}));
}

TEST(OrbPPDPensConfigUpdater, AKeywordThatTheDeviceDoesNotReportIsBlanked) {
    OrbPPDPensConfigCSLInfoUpdater updater;
    const auto status = statusWithPens({{"ZrPenDyes", "C,M,Y,K"}});
    EXPECT_EQ(valuesFrom(updater, status), (OrbPPDUpdatingValues{{"ZrPenDyes", "C,M,Y,K"},
                                                                 {"ZrPenDropVolumes", ""},
                                                                 {"ZrPenEverydayStatus", ""}}));
    EXPECT_EQ(
        textUpdatedFrom(updater, "*ZrPenEverydayStatus: 1\n*ZrPenDropVolumes: 4\n*ZrPenDyes: K\n",
                        status),
        "*ZrPenEverydayStatus: \n*ZrPenDropVolumes: \n*ZrPenDyes: C,M,Y,K\n");
}

TEST(OrbPPDPensConfigUpdater, WithoutPensConfigurationAllItsAttributesAreBlanked) {
    OrbPPDPensConfigFamilyIDUpdater family;
    EXPECT_EQ(valuesFrom(family, statusWithoutValues()),
              (OrbPPDUpdatingValues{{"ZrPenFamilyIDs", ""}}));
    OrbPPDPensConfigCSLInfoUpdater info;
    EXPECT_EQ(textUpdatedFrom(info, "*ZrPenDyes: K\n*Two: 2\n", statusWithoutValues()),
              "*ZrPenDyes: \n*Two: 2\n*ZrPenDropVolumes: \n*ZrPenEverydayStatus: \n");
}

TEST(OrbPPDPensConfigUpdater, AValueOfAnotherTypeCountsAsNoPensConfiguration) {
    OrbPPDPensConfigNameUpdater updater;
    EXPECT_EQ(valuesFrom(updater, statusWith(kTkCSInstalledPensConfigurationKey, OrbCSLinTable{})),
              (OrbPPDUpdatingValues{{"ZrPensConfigName", ""}}));
}

TEST(OrbPPDPensConfigUpdater, EntriesThatNoUpdaterNamesAreIgnored) {
    OrbPPDPensConfigNameUpdater updater;
    const auto status = statusWithPens({{"ZrPensConfigName", "Two"}, {"cupsFilter", "x"}});
    EXPECT_EQ(valuesFrom(updater, status), (OrbPPDUpdatingValues{{"ZrPensConfigName", "Two"}}));
    EXPECT_EQ(textUpdatedFrom(updater, "*ZrPensConfigName: One\n*cupsFilter: old\n", status),
              "*ZrPensConfigName: Two\n*cupsFilter: old\n");
}

TEST(OrbPPDPensConfigUpdater, TheNameComesFromTheAttributeValuesAndNotFromTheCodeName) {
    OrbPPDPensConfigNameUpdater updater;
    EXPECT_EQ(valuesFrom(updater, statusWithPens({})),
              (OrbPPDUpdatingValues{{"ZrPensConfigName", ""}}));
}

TEST(OrbPPDPensConfigUpdater, WithoutStatusThereAreNoValuesAndEveryLineStays) {
    OrbPPDPensConfigCSLInfoUpdater updater;
    EXPECT_EQ(valuesFrom(updater, nullptr), std::nullopt);
    EXPECT_EQ(textUpdatedFrom(updater, "*ZrPenDyes: K\n*ZrPenDropVolumes: 4\n", nullptr),
              "*ZrPenDyes: K\n*ZrPenDropVolumes: 4\n");
}

TEST(OrbPPDPensConfigUpdater, WithoutAttributeNamesThereAreNoValues) {
    UpdaterWithoutNames updater;
    EXPECT_EQ(valuesFrom(updater, statusWithPens({{"ZrPenDyes", "K"}})), std::nullopt);
}

TEST(OrbPPDPensConfigUpdater, AValueTooLongForALineLosesTheLine) {
    OrbPPDPensConfigFamilyIDUpdater updater;
    EXPECT_EQ(textUpdatedFrom(updater, "*ZrPenFamilyIDs: 7\n*Two: 2\n",
                              statusWithPens({{"ZrPenFamilyIDs", std::string(300, '7')}})),
              "*Two: 2\n");
}

TEST(OrbPPDPensConfigUpdater, ReadsTheValueOfEachOfItsAttributes) {
    EXPECT_EQ(OrbPPDPensConfigCSLInfoUpdater().statusEntriesRead(),
              (std::vector<std::string>{"InstalledPensConfiguration.ZrPenDyes",
                                        "InstalledPensConfiguration.ZrPenDropVolumes",
                                        "InstalledPensConfiguration.ZrPenEverydayStatus"}));
}

TEST(OrbPPDPensConfigUpdater, OnlyTheUpdaterWhoseGroupAPPDCarriesApplies) {
    const auto PPDFile = parsedPPD(ppdOfLines({"*ZrPenFamilyIDs: 7"}));
    ASSERT_TRUE(PPDFile);
    EXPECT_TRUE(OrbPPDPensConfigFamilyIDUpdater().isApplicableForPPDFile(PPDFile.get()));
    EXPECT_FALSE(OrbPPDPensConfigNameUpdater().isApplicableForPPDFile(PPDFile.get()));
    EXPECT_FALSE(OrbPPDPensConfigCSLInfoUpdater().isApplicableForPPDFile(PPDFile.get()));
    EXPECT_FALSE(OrbPPDPensConfigAdditionalInfoUpdater().isApplicableForPPDFile(PPDFile.get()));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
