#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "backends/ppdmodel/PPDModelCore.h"
#include "core_interface/OrbCoreInterface.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/updaters/default_choice/DefaultChoiceTestSupport.h"
#include "updaters/default_choice/OrbPPDDefaultPageSizeUpdater.h"
#include "updaters/default_choice/OrbPPDDuplexerInstalledUpdater.h"
#include "updaters/default_choice/OrbPPDLowerTrayInstalledUpdater.h"
#include "updaters/default_choice/OrbPPDPenConfigUpdater.h"

namespace TkPPDUpdating {
namespace {

using Testing::FakeCommunicationServices;
using Testing::FakeDeviceStatus;
using Testing::textOf;

/// The defaults of the small PPD that the tests write.
struct Defaults {
    std::string duplexer = "False";
    std::string tray = "False";
    std::string pens = "C2";
    std::string paper = "A4";
};

std::string pageKeyword(const std::string& keyword, const std::string& paper) {
    return "*Default" + keyword + ": " + paper + "\n*" + keyword + " A4/A4: \"a\"\n*" + keyword +
           " Letter/US Letter: \"l\"\n";
}

std::string option(const std::string& keyword, const std::string& type,
                   const std::string& defaultLines, const std::string& choiceLines) {
    return "*OpenUI *" + keyword + "/Name: " + type + "\n" + defaultLines + choiceLines +
           "*CloseUI: *" + keyword + "\n";
}

std::string installable(const std::string& keyword, const std::string& defaultChoice,
                        const std::string& one, const std::string& other) {
    return option(
        keyword, "PickOne", "*Default" + keyword + ": " + defaultChoice + "\n",
        "*" + keyword + " " + one + "/One: \"\"\n*" + keyword + " " + other + "/Other: \"\"\n");
}

std::string smallPPD(const Defaults& defaults) {
    return "*PPD-Adobe: \"4.3\"\n*ModelName: \"Zr Small\"\n*ZrLowerTrayHasSensor: True\n" +
           option("PageSize", "PickOne", "", pageKeyword("PageSize", defaults.paper)) +
           option("PageRegion", "PickOne", "", pageKeyword("PageRegion", defaults.paper)) +
           pageKeyword("ImageableArea", defaults.paper) +
           pageKeyword("PaperDimension", defaults.paper) +
           installable("ZrAutoDuplexerInstalled", defaults.duplexer, "True", "False") +
           installable("ZrLowerTrayInstalled", defaults.tray, "True", "False") +
           installable("ZrPenConfig", defaults.pens, "C1", "C2") +
           installable("ZrPenConfigOptions", defaults.pens, "C1", "C2");
}

/// What one updater makes of the small PPD when the printer has everything and the user is in the
/// United States.
struct UpdaterCase {
    const char* name;
    const OrbClass* updaterClass;
    Defaults after;
    OrbPPDUpdatingValues values;
    bool asksTheDevice;
};

void PrintTo(const UpdaterCase& each, std::ostream* stream) {
    *stream << each.name;
}

class DefaultChoiceUpdatersInOneRun : public testing::Test {
  protected:
    DefaultChoiceUpdatersInOneRun() {
        FakeDeviceStatus::Values values;
        values.emplace(kTkCSDeviceAccessoriesKey,
                       OrbCSDeviceAccessories{{"Duplexer", true}, {"Tray2", true}});
        values.emplace(kTkCSInstalledPensConfigurationKey, OrbCSPensConfiguration{"C1", {}});
        status = std::make_shared<FakeDeviceStatus>(std::move(values));
        services = std::make_shared<FakeCommunicationServices>(status);
        OrbCoreInterface::setCore(std::make_shared<PPDModelCore>());
        OrbCoreInterface::setCommunicationServices(services);
        OrbCoreInterface::setEnvironment(
            std::make_shared<Testing::FakeEnvironment>(std::map<std::string, std::string>{
                {"CUPS_SERVERROOT", directory.path().string()}, {"LANG", "en_US.UTF-8"}}));
    }

    /// Leaves the manager only the class under test.
    void useOnly(const OrbClass* updaterClass) {
        for (const OrbClass* each : std::vector<const OrbClass*>(
                 manager.registeredClasses().begin(), manager.registeredClasses().end())) {
            if (each != updaterClass) {
                manager.unregisterUpdaterClass(each);
            }
        }
        ASSERT_EQ(manager.registeredClasses().count(updaterClass), 1U)
            << "the class is not one of the built-in ones";
    }

    Testing::CoreInterfaceScope scope;
    Testing::TemporaryDirectory directory;
    std::shared_ptr<const OrbCSDeviceStatus> status;
    std::shared_ptr<FakeCommunicationServices> services;
    OrbPPDConcreteUpdatingManager manager;
};

class DefaultChoiceUpdatersThroughManager : public DefaultChoiceUpdatersInOneRun,
                                            public testing::WithParamInterface<UpdaterCase> {};

TEST_P(DefaultChoiceUpdatersThroughManager, UpdateAPPDFromTheDevice) {
    useOnly(GetParam().updaterClass);
    const std::string path = directory.write("small.ppd", smallPPD({}));
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p")),
              smallPPD(GetParam().after));
    EXPECT_EQ(services->requests.size(), GetParam().asksTheDevice ? 1U : 0U);
}

TEST_P(DefaultChoiceUpdatersThroughManager, UpdateAPPDFromTheDefaultsOfAQueue) {
    useOnly(GetParam().updaterClass);
    const std::string path = directory.write("small.ppd", smallPPD({}));
    // The queue's PPD has all four kinds of default changed; an updater copies its own only.
    directory.write("ppd/office.ppd", smallPPD({"True", "True", "C1", "Letter"}));
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_queueName(path, "office")),
              smallPPD(GetParam().after));
    EXPECT_TRUE(services->requests.empty());
}

TEST_P(DefaultChoiceUpdatersThroughManager, ChangeNothingFurtherInTheirOwnResult) {
    useOnly(GetParam().updaterClass);
    const std::string path = directory.write("small.ppd", smallPPD(GetParam().after));
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p")),
              smallPPD(GetParam().after));
}

TEST_P(DefaultChoiceUpdatersThroughManager, TellTheirValuesForAQueue) {
    useOnly(GetParam().updaterClass);
    directory.write("ppd/office.ppd", smallPPD({}));
    EXPECT_EQ(manager.PPDUpdatingValuesForQueueWithName_deviceURI("office", "ipp://p"),
              GetParam().values);
}

TEST_P(DefaultChoiceUpdatersThroughManager, TellTheirValuesForAStatus) {
    useOnly(GetParam().updaterClass);
    const auto file = PPDModelFile::fileWithText(makePPDText(smallPPD({})));
    EXPECT_EQ(
        manager.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(status, "ipp://p", file.get()),
        GetParam().values);
    EXPECT_TRUE(services->requests.empty());
}

TEST_P(DefaultChoiceUpdatersThroughManager, LeaveAPPDWithoutTheirOptionsAsItIs) {
    useOnly(GetParam().updaterClass);
    const std::string other =
        "*PPD-Adobe: \"4.3\"\n" + installable("ZrOther", "True", "True", "False");
    const std::string path = directory.write("other.ppd", other);
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p")), other);
    EXPECT_TRUE(services->requests.empty());
}

INSTANTIATE_TEST_SUITE_P(Each, DefaultChoiceUpdatersThroughManager,
                         testing::ValuesIn(std::vector<UpdaterCase>{
                             {"DuplexerInstalled",
                              &OrbClassOf<OrbPPDDuplexerInstalledUpdater>(),
                              {.duplexer = "True"},
                              {{"DefaultZrAutoDuplexerInstalled", "True"}},
                              true},
                             {"LowerTrayInstalled",
                              &OrbClassOf<OrbPPDLowerTrayInstalledUpdater>(),
                              {.tray = "True"},
                              {{"DefaultZrLowerTrayInstalled", "True"}},
                              true},
                             {"PenConfig",
                              &OrbClassOf<OrbPPDPenConfigUpdater>(),
                              {.pens = "C1"},
                              {{"DefaultZrPenConfig", "C1"}, {"DefaultZrPenConfigOptions", "C1"}},
                              true},
                             {"DefaultPageSize",
                              &OrbClassOf<OrbPPDDefaultPageSizeUpdater>(),
                              {.paper = "Letter"},
                              {},
                              false},
                         }),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

TEST_F(DefaultChoiceUpdatersInOneRun, AskTheDeviceOnce) {
    for (const OrbClass* each : std::vector<const OrbClass*>(manager.registeredClasses().begin(),
                                                             manager.registeredClasses().end())) {
        manager.unregisterUpdaterClass(each);
    }
    for (const OrbClass* each :
         {&OrbClassOf<OrbPPDDuplexerInstalledUpdater>(),
          &OrbClassOf<OrbPPDLowerTrayInstalledUpdater>(), &OrbClassOf<OrbPPDPenConfigUpdater>(),
          &OrbClassOf<OrbPPDDefaultPageSizeUpdater>()}) {
        ASSERT_TRUE(manager.registerUpdaterClass(each));
    }
    const std::string path = directory.write("small.ppd", smallPPD({}));
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p")),
              smallPPD({"True", "True", "C1", "Letter"}));
    EXPECT_EQ(services->requests.size(), 1U);
}

TEST_F(DefaultChoiceUpdatersInOneRun, LeaveTheTextAsItIsWhenTheTrayIsNotAmongTheAccessories) {
    useOnly(&OrbClassOf<OrbPPDLowerTrayInstalledUpdater>());
    FakeDeviceStatus::Values values;
    values.emplace(kTkCSDeviceAccessoriesKey, OrbCSDeviceAccessories{{"Duplexer", true}});
    OrbCoreInterface::setCommunicationServices(std::make_shared<FakeCommunicationServices>(
        std::make_shared<FakeDeviceStatus>(std::move(values))));
    const std::string path = directory.write("small.ppd", smallPPD({}));
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p")), smallPPD({}));
}

}  // namespace
}  // namespace TkPPDUpdating
