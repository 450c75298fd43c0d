#include "manager/OrbPPDUpdatingManager.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/manager/ManagerTestSupport.h"
#include "tests/support/InvalidOperation.h"

namespace TkPPDUpdating {
namespace {

TEST(UpdatingManager, IsOneSharedObjectForTheProcess) {
    OrbPPDUpdatingManager& first = OrbPPDUpdatingManager::sharedInstance();
    OrbPPDUpdatingManager& second = OrbPPDUpdatingManager::sharedInstance();
    EXPECT_EQ(&first, &second);
}

TEST(UpdatingManager, IsSharedAsTheConcreteManagerWithItsUpdaters) {
    const auto* shared =
        dynamic_cast<OrbPPDConcreteUpdatingManager*>(&OrbPPDUpdatingManager::sharedInstance());
    ASSERT_NE(shared, nullptr);
    EXPECT_EQ(shared->registeredClasses(), OrbPPDConcreteUpdatingManager().registeredClasses());
}

TEST(UpdatingManager, KeepsARegistrationForAllLaterUsersOfTheSharedObject) {
    using Updater = Testing::ScriptedUpdater<'Z'>;
    const OrbClass* updaterClass = &OrbClassOf<Updater>();
    ASSERT_TRUE(OrbPPDUpdatingManager::sharedInstance().registerUpdaterClass(updaterClass));
    const auto& shared =
        dynamic_cast<OrbPPDConcreteUpdatingManager&>(OrbPPDUpdatingManager::sharedInstance());
    EXPECT_EQ(shared.registeredClasses().count(updaterClass), 1U);
    OrbPPDUpdatingManager::sharedInstance().unregisterUpdaterClass(updaterClass);
    EXPECT_EQ(shared.registeredClasses().count(updaterClass), 0U);
}

struct AbstractOperation {
    const char* name;
    std::function<void(OrbPPDUpdatingManager&)> call;
};

void PrintTo(const AbstractOperation& operation, std::ostream* stream) {
    *stream << operation.name;
}

class AbstractUpdatingManager : public testing::TestWithParam<AbstractOperation> {};

TEST_P(AbstractUpdatingManager, RaisesAnErrorThatNamesTheOperation) {
    OrbPPDUpdatingManager manager;
    EXPECT_EQ(Testing::messageOfInvalidOperation([&] { GetParam().call(manager); }),
              "OrbPPDUpdatingManager does not implement " + std::string(GetParam().name));
}

INSTANTIATE_TEST_SUITE_P(
    Operation, AbstractUpdatingManager,
    testing::ValuesIn(std::vector<AbstractOperation>{
        {"updatedPPDContentsForFile_deviceURI",
         [](auto& manager) { manager.updatedPPDContentsForFile_deviceURI("f.ppd", "ipp://p"); }},
        {"updatedPPDContentsForFile_queueName",
         [](auto& manager) { manager.updatedPPDContentsForFile_queueName("f.ppd", "office"); }},
        {"PPDUpdatingValuesForQueueWithName_deviceURI",
         [](auto& manager) {
             manager.PPDUpdatingValuesForQueueWithName_deviceURI("office", "ipp://p");
         }},
        {"PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile",
         [](auto& manager) {
             manager.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(nullptr, "ipp://p",
                                                                        nullptr);
         }},
        {"registerUpdaterClass", [](auto& manager) { manager.registerUpdaterClass(nullptr); }},
        {"unregisterUpdaterClass", [](auto& manager) { manager.unregisterUpdaterClass(nullptr); }},
    }),
    [](const auto& parameter) { return std::string(parameter.param.name); });

}  // namespace
}  // namespace TkPPDUpdating
