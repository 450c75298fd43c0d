#include "core_interface/OrbCoreInterface.h"

#include <gtest/gtest.h>

#include <any>
#include <memory>
#include <string>

#include "backends/schemes/PlainCustomMediaType.h"
#include "backends/schemes/PlainICCProfile.h"
#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbCUPSICCProfileSpecifier.h"
#include "core_interface/OrbCustomMediaType.h"
#include "core_interface/OrbICCProfile.h"
#include "core_interface/OrbInvalidOperationError.h"
#include "core_interface/TkCSKeys.h"
#include "tests/support/FakeCore.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating {
namespace {

using Testing::FakeCommunicationServices;
using Testing::FakeCore;
using Testing::FakeDeviceStatus;

class CoreInterface : public testing::Test {
  private:
    Testing::CoreInterfaceScope scope_;
};

TEST_F(CoreInterface, HasNoLibrariesUntilTheyAreSet) {
    EXPECT_EQ(OrbCoreInterface::core(), nullptr);
    EXPECT_EQ(OrbCoreInterface::communicationServices(), nullptr);
}

TEST_F(CoreInterface, HasTheProcessEnvironmentAndTheSystemClockAtTheStart) {
    EXPECT_EQ(OrbCoreInterface::environment(), OrbEnvironment::processEnvironment());
    EXPECT_EQ(OrbCoreInterface::clock(), OrbClock::systemClock());
}

TEST_F(CoreInterface, KeepsWhatIsSetUntilItIsReplaced) {
    const auto core = std::make_shared<FakeCore>(FakeCore::Files(), FakeCore::Files());
    const auto services = std::make_shared<FakeCommunicationServices>(nullptr);
    const auto environment = std::make_shared<Testing::FakeEnvironment>(
        std::map<std::string, std::string>{{"LANG", "de_DE"}});
    const auto clock = std::make_shared<Testing::FakeClock>(12.5);
    OrbCoreInterface::setCore(core);
    OrbCoreInterface::setCommunicationServices(services);
    OrbCoreInterface::setEnvironment(environment);
    OrbCoreInterface::setClock(clock);
    EXPECT_EQ(OrbCoreInterface::core(), core);
    EXPECT_EQ(OrbCoreInterface::communicationServices(), services);
    EXPECT_EQ(OrbCoreInterface::environment(), environment);
    EXPECT_EQ(OrbCoreInterface::clock(), clock);

    OrbCoreInterface::setCore(nullptr);
    OrbCoreInterface::setCommunicationServices(nullptr);
    OrbCoreInterface::setEnvironment(nullptr);
    OrbCoreInterface::setClock(nullptr);
    EXPECT_EQ(OrbCoreInterface::core(), nullptr);
    EXPECT_EQ(OrbCoreInterface::communicationServices(), nullptr);
    EXPECT_EQ(OrbCoreInterface::environment(), OrbEnvironment::processEnvironment());
    EXPECT_EQ(OrbCoreInterface::clock(), OrbClock::systemClock());
}

TEST_F(CoreInterface, GivesNothingWithoutACoreLibrary) {
    OrbCoreInterface::setCore(nullptr);
    EXPECT_EQ(OrbPPDFile::PPDFileWithContentsOfFile("/any.ppd"), nullptr);
    EXPECT_EQ(OrbPPDFile::PPDFileForQueueWithName("office"), nullptr);
    EXPECT_EQ(OrbCustomMediaType::customMediaTypeWithPPDParameters({}), nullptr);
    EXPECT_EQ(OrbICCProfile::profileWithPPDParameters({}), nullptr);
    EXPECT_EQ(OrbCUPSICCProfileSpecifier::specifierVer2WithProfileID(7), nullptr);
}

TEST_F(CoreInterface, GivesNoStatusAndTheReasonWithoutACommunicationServicesLibrary) {
    OrbCoreInterface::setCommunicationServices(nullptr);
    OrbCSError error;
    EXPECT_EQ(OrbCSDeviceStatus::deviceStatusWithURI_parameters_error("ipp://p", nullptr, &error),
              nullptr);
    EXPECT_EQ(error.cause, OrbCSError::Cause::noBackend);
    EXPECT_FALSE(error.reason.empty());
    EXPECT_EQ(OrbCSDeviceStatus::deviceStatusWithURI_parameters_error("ipp://p", nullptr, nullptr),
              nullptr);
}

TEST_F(CoreInterface, ParsesPPDsThroughTheCoreLibrary) {
    const auto file = std::make_shared<Testing::EmptyPPDFile>();
    const auto queueFile = std::make_shared<Testing::EmptyPPDFile>();
    const auto core = std::make_shared<FakeCore>(FakeCore::Files{{"/any.ppd", file}},
                                                 FakeCore::Files{{"office", queueFile}});
    OrbCoreInterface::setCore(core);
    EXPECT_EQ(OrbPPDFile::PPDFileWithContentsOfFile("/any.ppd"), file);
    EXPECT_EQ(OrbPPDFile::PPDFileWithContentsOfFile("/other.ppd"), nullptr);
    EXPECT_EQ(OrbPPDFile::PPDFileForQueueWithName("office"), queueFile);
    EXPECT_EQ(OrbPPDFile::PPDFileForQueueWithName("attic"), nullptr);
    EXPECT_EQ(core->askedPaths, (std::vector<std::string>{"/any.ppd", "/other.ppd"}));
    EXPECT_EQ(core->askedQueueNames, (std::vector<std::string>{"office", "attic"}));
}

TEST_F(CoreInterface, MakesMediaTypesProfilesAndSpecifiersThroughTheCoreLibrary) {
    const auto core = std::make_shared<FakeCore>(FakeCore::Files(), FakeCore::Files());
    core->mediaType = std::make_shared<PlainCustomMediaType>("Glossy", "1201", "3", nullptr);
    core->profile = std::make_shared<PlainICCProfile>("file:///p.icc", "q", 7);
    core->specifier = std::make_shared<Testing::FakeSpecifier>("7");
    OrbCoreInterface::setCore(core);
    const OrbDictionary parameters{
        {std::string(kTkPPDCustomMediaTypeNameKey), std::string("Glossy")}};
    EXPECT_EQ(OrbCustomMediaType::customMediaTypeWithPPDParameters(parameters), core->mediaType);
    EXPECT_EQ(OrbICCProfile::profileWithPPDParameters(parameters), core->profile);
    EXPECT_EQ(OrbCUPSICCProfileSpecifier::specifierVer2WithProfileID(18446744073709551615U),
              core->specifier);
    ASSERT_EQ(core->askedMediaTypeParameters.size(), 1U);
    EXPECT_EQ(std::any_cast<std::string>(core->askedMediaTypeParameters[0].at("Name")), "Glossy");
    ASSERT_EQ(core->askedProfileParameters.size(), 1U);
    EXPECT_EQ(std::any_cast<std::string>(core->askedProfileParameters[0].at("Name")), "Glossy");
    EXPECT_EQ(core->askedProfileIDs, std::vector<std::uint64_t>{18446744073709551615U});
}

TEST_F(CoreInterface, AsksTheCommunicationServicesLibraryForAStatusWithWhatItIsGiven) {
    const auto status = std::make_shared<FakeDeviceStatus>();
    const auto services = std::make_shared<FakeCommunicationServices>(status);
    OrbCoreInterface::setCommunicationServices(services);
    const OrbDictionary parameters{{std::string(kTkCSIsCUPSFilterModeKey), true}};
    OrbCSError error;
    EXPECT_EQ(
        OrbCSDeviceStatus::deviceStatusWithURI_parameters_error("ipp://p", &parameters, &error),
        status);
    EXPECT_EQ(
        OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(std::nullopt, nullptr, nullptr),
        status);
    ASSERT_EQ(services->requests.size(), 2U);
    EXPECT_EQ(services->requests[0].deviceURI, "ipp://p");
    ASSERT_TRUE(services->requests[0].parameters.has_value());
    EXPECT_TRUE(std::any_cast<bool>(services->requests[0].parameters->at("IsCUPSFilterMode")));
    EXPECT_TRUE(services->requests[0].hadErrorSlot);
    EXPECT_EQ(services->requests[1].deviceURI, std::nullopt);
    EXPECT_FALSE(services->requests[1].parameters.has_value());
    EXPECT_FALSE(services->requests[1].hadErrorSlot);
}

TEST(DeviceStatus, GivesTheValueUnderAKeyAsItsType) {
    FakeDeviceStatus::Values values;
    values.emplace(kTkCSDeviceAccessoriesKey, OrbCSDeviceAccessories{{"Duplexer", true}});
    const FakeDeviceStatus status(std::move(values));
    const auto* accessories =
        status.statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey);
    ASSERT_NE(accessories, nullptr);
    ASSERT_EQ(accessories->size(), 1U);
    EXPECT_EQ(accessories->front(), (OrbCSDeviceAccessory{"Duplexer", true}));
}

TEST(DeviceStatus, GivesNullForAKeyThatIsNotReportedOrOfAnotherType) {
    FakeDeviceStatus::Values values;
    values.emplace(kTkCSDeviceAccessoriesKey, OrbCSDeviceAccessories{{"Duplexer", true}});
    const FakeDeviceStatus status(std::move(values));
    EXPECT_EQ(status.statusValueForKey<OrbCSLinTable>(kTkCSLinTableKey), nullptr);
    EXPECT_EQ(status.statusValueForKey<OrbCSLinTable>(kTkCSDeviceAccessoriesKey), nullptr);
}

TEST(ICCProfile, EqualsAnotherWithTheSameURLQualifierAndID) {
    const PlainICCProfile profile("file:///p.icc", "q", 7);
    EXPECT_TRUE(profile.isEqual(profile));
    EXPECT_TRUE(profile.isEqual(PlainICCProfile("file:///p.icc", "q", 7)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile("file:///o.icc", "q", 7)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile("file:///p.icc", "r", 7)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile("file:///p.icc", "q", 8)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile(std::nullopt, "q", 7)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile("file:///p.icc", std::nullopt, 7)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile("file:///p.icc", "q", std::nullopt)));
}

TEST(ICCProfile, EqualsAnotherThatLacksTheSameMembers) {
    const PlainICCProfile profile("file:///p.icc", std::nullopt, std::nullopt);
    EXPECT_TRUE(profile.isEqual(PlainICCProfile("file:///p.icc", std::nullopt, std::nullopt)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile("file:///p.icc", "", std::nullopt)));
    EXPECT_FALSE(profile.isEqual(PlainICCProfile("file:///p.icc", std::nullopt, 0)));
}

TEST(InvalidOperationError, NamesTheClassAndTheOperation) {
    const OrbInvalidOperationError error("OrbPPDUpdatingManager", "registerUpdaterClass");
    EXPECT_STREQ(error.what(), "OrbPPDUpdatingManager does not implement registerUpdaterClass");
    EXPECT_NE(dynamic_cast<const std::logic_error*>(&error), nullptr);
}

struct KeyText {
    std::string_view key;
    std::string_view text;
};

TEST(StatusKeys, HaveTheirPublishedTexts) {
    const std::vector<KeyText> texts = {
        {kTkCSDeviceAccessoriesKey, "DeviceAccessories"},
        {kTkCSInstalledPensConfigurationKey, "InstalledPensConfiguration"},
        {kTkCSLinTableKey, "LinTable"},
        {kTkCSMaxSupportedResolutionKey, "MaxSupportedResolution"},
        {kTkCSRemainingPagesEstimationsKey, "RemainingPagesEstimations"},
        {kTkCSCustomMediaTypesKey, "CustomMediaTypes"},
        {kTkCSDeviceAccessoryDuplexer, "Duplexer"},
        {kTkCSDeviceAccessoryTray2, "Tray2"},
        {kTkCSIsCUPSFilterModeKey, "IsCUPSFilterMode"},
        {kTkCSPPDPensConfigNameKey, "ZrPensConfigName"},
        {kTkCSPPDPenDyesKey, "ZrPenDyes"},
        {kTkCSPPDPenDropVolumesKey, "ZrPenDropVolumes"},
        {kTkCSPPDPenEverydayStatusKey, "ZrPenEverydayStatus"},
        {kTkCSPPDPenFamilyIDsKey, "ZrPenFamilyIDs"},
        {kTkCSPPDPenActualDropVolumesKey, "ZrPenActualDropVolumes"},
        {kTkCSPPDPenNominalDropVolumesKey, "ZrPenNominalDropVolumes"},
        {kTkCSPPDPenBriskDropVolumesKey, "ZrPenBriskDropVolumes"},
        {kTkCSPPDPenInkSufficientKey, "ZrPenInkSufficient"},
        {kTkCSPPDPenHasPrintheadDefectKey, "ZrPenHasPrintheadDefect"},
        {kTkPPDCustomMediaTypeCodeNameKey, "CodeName"},
        {kTkPPDCustomMediaTypeNameKey, "Name"},
        {kTkPPDCustomMediaTypeIDKey, "MediaID"},
        {kTkPPDCustomMediaTypeParentIDKey, "ParentMediaID"},
        {kTkPPDCustomMediaTypeICCProfileKey, "ICCProfile"},
        {kTkPPDProfileNameKey, "ProfileName"},
        {kTkPPDProfileURLKey, "ProfileURL"},
        {kTkPPDProfileQualifierVer2Key, "QualifierVer2"},
    };
    for (const KeyText& each : texts) {
        EXPECT_EQ(each.key, each.text);
    }
}

}  // namespace
}  // namespace TkPPDUpdating
