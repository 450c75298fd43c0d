#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "backends/ppdmodel/PPDModelCore.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbClassTable.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/updaters/attributes/AttributeUpdaterRuns.h"

namespace TkPPDUpdating::Testing {
namespace {

using Number = OrbCSNumberOrString;

/// What one updater makes of a device, from the file to the text, through the manager.
struct Case {
    const char* className;
    /// The lines of the updater's attributes in the PPD.
    std::string oldLines;
    /// What stands there after a run for the device behind the URI.
    std::string linesFromDevice;
    /// What stands there after a run for the queue.
    std::string linesFromQueue;
    /// The values for the device.
    OrbPPDUpdatingValues values;
};

void PrintTo(const Case& theCase, std::ostream* out) {
    *out << theCase.className;
}

std::shared_ptr<const OrbCSDeviceStatus> inkJet() {
    return std::make_shared<FakeDeviceStatus>(FakeDeviceStatus::Values{
        {std::string(kTkCSLinTableKey), OrbCSLinTable{Number(std::int64_t{252532800})}},
        {std::string(kTkCSMaxSupportedResolutionKey), Number(std::int64_t{1200})},
        {std::string(kTkCSRemainingPagesEstimationsKey),
         OrbCSRemainingPagesEstimations{
             {"A", Number(std::int64_t{150}), Number(std::int64_t{300}), Number(std::int64_t{0})},
             {"B", Number(std::int64_t{40}), Number(std::int64_t{90}), Number(std::int64_t{1})}}},
        {std::string(kTkCSInstalledPensConfigurationKey),
         OrbCSPensConfiguration{"FourPens",
                                {{"ZrPensConfigName", "FourPens"},
                                 {"ZrPenDyes", "C,M,Y,K"},
                                 {"ZrPenFamilyIDs", "7,7,7,9"},
                                 {"ZrPenInkSufficient", "1,1,0,1"}}}},
    });
}

/// The PPD that is installed for the queue "ink".
std::string queuePPD() {
    return ppdOfLines({"*BPECalibrationDue: \"Perhaps\"", "*ZrMaxSupportedResolution: 600",
                       "*ZrEPRInfoSupported: \"Queue\"", "*ZrEPRStates: \"5,5\"",
                       "*ZrPensConfigName: \"OnePen\"", "*ZrPenDyes: \"Kk\"",
                       "*ZrPenFamilyIDs:", "*ZrPenInkSufficient: \"0\""});
}

const Case kCases[] = {
    {"OrbPPDLinTablesUpdater",
     "*BPECalibrationDue: True\n",
     "*BPECalibrationDue: False\n",
     "*BPECalibrationDue: Perhaps\n",
     {{"BPECalibrationDue", "False"}}},
    {"OrbPPDMaxResolutionUpdater",
     "*ZrMaxSupportedResolution: \"300\"\n",
     "*ZrMaxSupportedResolution: 1200\n",
     "*ZrMaxSupportedResolution: 600\n",
     {{"ZrMaxSupportedResolution", "1200"}}},
    {"OrbPPDEstimatedPagesUpdater",
     "*ZrEPRInfoSupported: True\n*ZrEPRPageTypes: \"\"\n*ZrEPRMinPageCounts: \"\"\n"
     "*ZrEPRMaxPageCounts: \"\"\n*ZrEPRStates: \"\"\n*ZrEPRLastUpdate: \"\"\n",
     "*ZrEPRInfoSupported: True\n*ZrEPRPageTypes: A,B\n*ZrEPRMinPageCounts: 150,40\n"
     "*ZrEPRMaxPageCounts: 300,90\n*ZrEPRStates: 0,1\n*ZrEPRLastUpdate: 252532800\n",
     "*ZrEPRInfoSupported: Queue\n*ZrEPRPageTypes: \"\"\n*ZrEPRMinPageCounts: \"\"\n"
     "*ZrEPRMaxPageCounts: \"\"\n*ZrEPRStates: 5,5\n*ZrEPRLastUpdate: \"\"\n",
     {{"ZrEPRPageTypes", "A,B"},
      {"ZrEPRMinPageCounts", "150,40"},
      {"ZrEPRMaxPageCounts", "300,90"},
      {"ZrEPRStates", "0,1"},
      {"ZrEPRLastUpdate", "252532800"}}},
    {"OrbPPDPensConfigNameUpdater",
     "*ZrPensConfigName: \"None\"\n",
     "*ZrPensConfigName: FourPens\n",
     "*ZrPensConfigName: OnePen\n",
     {{"ZrPensConfigName", "FourPens"}}},
    {"OrbPPDPensConfigCSLInfoUpdater",
     "*ZrPenDyes: \"K\"\n*ZrPenDropVolumes: \"4\"\n*ZrPenEverydayStatus: \"1\"\n",
     "*ZrPenDyes: C,M,Y,K\n*ZrPenDropVolumes: \n*ZrPenEverydayStatus: \n",
     "*ZrPenDyes: Kk\n*ZrPenDropVolumes: \"4\"\n*ZrPenEverydayStatus: \"1\"\n",
     {{"ZrPenDyes", "C,M,Y,K"}, {"ZrPenDropVolumes", ""}, {"ZrPenEverydayStatus", ""}}},
    {"OrbPPDPensConfigFamilyIDUpdater",
     "*ZrPenFamilyIDs: \"9\"\n",
     "*ZrPenFamilyIDs: 7,7,7,9\n",
     "",
     {{"ZrPenFamilyIDs", "7,7,7,9"}}},
    {"OrbPPDPensConfigAdditionalInfoUpdater",
     "*ZrPenActualDropVolumes: 1\n*ZrPenNominalDropVolumes: 2\n*ZrPenBriskDropVolumes: 3\n"
     "*ZrPenInkSufficient: 4\n*ZrPenHasPrintheadDefect: 5\n",
     "*ZrPenActualDropVolumes: \n*ZrPenNominalDropVolumes: \n*ZrPenBriskDropVolumes: \n"
     "*ZrPenInkSufficient: 1,1,0,1\n*ZrPenHasPrintheadDefect: \n",
     "*ZrPenActualDropVolumes: 1\n*ZrPenNominalDropVolumes: 2\n*ZrPenBriskDropVolumes: 3\n"
     "*ZrPenInkSufficient: 0\n*ZrPenHasPrintheadDefect: 5\n",
     {{"ZrPenActualDropVolumes", ""},
      {"ZrPenNominalDropVolumes", ""},
      {"ZrPenBriskDropVolumes", ""},
      {"ZrPenInkSufficient", "1,1,0,1"},
      {"ZrPenHasPrintheadDefect", ""}}},
};

std::string ppdAround(const std::string& lines) {
    return "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n" + lines + "*NickName: \"Ink Jet\"\n";
}

/// A manager in front of an ink jet in memory and of a queue "ink".
class AllAttributeUpdatersThroughTheManager : public ::testing::Test {
  protected:
    AllAttributeUpdatersThroughTheManager() {
        OrbCoreInterface::setCore(std::make_shared<PPDModelCore>(
            [](const std::string&, std::string&) { return makePPDText(queuePPD()); }));
        OrbCoreInterface::setCommunicationServices(services);
        OrbCoreInterface::setEnvironment(
            std::make_shared<FakeEnvironment>(std::map<std::string, std::string>{}));
        OrbCoreInterface::setClock(std::make_shared<FakeClock>(252532800));
    }

    const CoreInterfaceScope scope;
    const std::shared_ptr<FakeCommunicationServices> services =
        std::make_shared<FakeCommunicationServices>(inkJet());
    const TemporaryDirectory directory;
    OrbPPDConcreteUpdatingManager manager;
};

class AttributeUpdatersThroughTheManager : public AllAttributeUpdatersThroughTheManager,
                                           public ::testing::WithParamInterface<Case> {};

TEST_P(AttributeUpdatersThroughTheManager, TheClassIsRegistered) {
    const OrbClass* updaterClass = OrbClassFromName(GetParam().className);
    ASSERT_TRUE(updaterClass);
    EXPECT_TRUE(updaterClass->conformsToITkPPDUpdater());
    EXPECT_EQ(manager.registeredClasses().count(updaterClass), 1U);
}

TEST_P(AttributeUpdatersThroughTheManager, TheFileGetsTheValuesOfTheDevice) {
    const auto path = directory.write("ink.ppd", ppdAround(GetParam().oldLines));
    const PPDText updated = manager.updatedPPDContentsForFile_deviceURI(path, kAnyURI);
    ASSERT_TRUE(updated);
    EXPECT_EQ(*updated, ppdAround(GetParam().linesFromDevice));

    const auto again = directory.write("again.ppd", *updated);
    EXPECT_EQ(*manager.updatedPPDContentsForFile_deviceURI(again, kAnyURI), *updated);
}

TEST_P(AttributeUpdatersThroughTheManager, TheFileStaysAsItIsWhenTheDeviceIsSilent) {
    OrbCoreInterface::setCommunicationServices(
        std::make_shared<FakeCommunicationServices>(nullptr));
    const std::string text = ppdAround(GetParam().oldLines);
    const auto path = directory.write("ink.ppd", text);
    EXPECT_EQ(*manager.updatedPPDContentsForFile_deviceURI(path, kAnyURI), text);
}

TEST_P(AttributeUpdatersThroughTheManager, TheFileGetsTheValuesOfTheQueue) {
    const auto path = directory.write("ink.ppd", ppdAround(GetParam().oldLines));
    const PPDText updated = manager.updatedPPDContentsForFile_queueName(path, "ink");
    ASSERT_TRUE(updated);
    EXPECT_EQ(*updated, ppdAround(GetParam().linesFromQueue));
    EXPECT_TRUE(services->requests.empty());
}

TEST_P(AttributeUpdatersThroughTheManager, TheValuesAreThoseOfTheDevice) {
    const auto PPDFile = parsedPPD(ppdAround(GetParam().oldLines));
    ASSERT_TRUE(PPDFile);
    EXPECT_EQ(manager.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(inkJet(), kAnyURI,
                                                                         PPDFile.get()),
              GetParam().values);
}

TEST_P(AttributeUpdatersThroughTheManager, APPDWithoutItsAttributesIsLeftAlone) {
    const auto path = directory.write("bare.ppd", ppdAround(""));
    EXPECT_EQ(*manager.updatedPPDContentsForFile_deviceURI(path, kAnyURI), ppdAround(""));
    EXPECT_TRUE(services->requests.empty());
}

INSTANTIATE_TEST_SUITE_P(EachClass, AttributeUpdatersThroughTheManager, ::testing::ValuesIn(kCases),
                         [](const auto& one) { return std::string(one.param.className); });

TEST_F(AllAttributeUpdatersThroughTheManager, ShareOneStatusOfTheDevice) {
    std::string before;
    std::string after;
    for (const Case& theCase : kCases) {
        before += theCase.oldLines;
        after += theCase.linesFromDevice;
    }
    const auto path = directory.write("ink.ppd", ppdAround(before));
    EXPECT_EQ(*manager.updatedPPDContentsForFile_deviceURI(path, kAnyURI), ppdAround(after));
    EXPECT_EQ(services->requests.size(), 1U);
}

TEST_F(AllAttributeUpdatersThroughTheManager, GiveTheirValuesForTheQueueInOneDictionary) {
    OrbPPDUpdatingValues expected;
    for (const Case& theCase : kCases) {
        expected.insert(theCase.values.begin(), theCase.values.end());
    }
    EXPECT_EQ(manager.PPDUpdatingValuesForQueueWithName_deviceURI("ink", kAnyURI), expected);
    EXPECT_EQ(services->requests.size(), 1U);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
