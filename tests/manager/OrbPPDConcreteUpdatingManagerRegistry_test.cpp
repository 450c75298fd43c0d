#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <set>
#include <string_view>
#include <vector>

#include "manager/OrbClassTable.h"
#include "tests/manager/ManagerTestSupport.h"

namespace TkPPDUpdating {
namespace {

using Testing::NotAnUpdater;

class UpdaterRegistry : public Testing::ManagerTest {};

TEST_F(UpdaterRegistry, StartsWithEveryClassOfTheTable) {
    // Which these are, and that nobody forgot one, is told by the table of the documentation.
    const OrbPPDConcreteUpdatingManager fresh;
    EXPECT_EQ(fresh.registeredClasses().size(), OrbClassTable().size());
    std::set<std::string_view> names;
    for (const OrbClass* each : OrbClassTable()) {
        EXPECT_TRUE(names.insert(each->name()).second) << each->name() << " stands there twice";
        EXPECT_EQ(OrbClassFromName(each->name()), each);
        EXPECT_EQ(fresh.registeredClasses().count(each), 1U) << each->name();
    }
}

TEST_F(UpdaterRegistry, TakesAClassThatConforms) {
    EXPECT_TRUE(manager.registerUpdaterClass(&OrbClassOf<A>()));
    EXPECT_EQ(manager.registeredClasses().count(&OrbClassOf<A>()), 1U);
    EXPECT_EQ(manager.registeredClasses().size(), 1U);
}

TEST_F(UpdaterRegistry, KeepsOneEntryForAClassRegisteredTwice) {
    EXPECT_TRUE(manager.registerUpdaterClass(&OrbClassOf<A>()));
    EXPECT_TRUE(manager.registerUpdaterClass(&OrbClassOf<A>()));
    EXPECT_EQ(manager.registeredClasses().size(), 1U);
    manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p");
    EXPECT_EQ(A::script.timesRun, 1);
}

TEST_F(UpdaterRegistry, RefusesAClassThatDoesNotDeclareTheContract) {
    ASSERT_TRUE(manager.registerUpdaterClass(&OrbClassOf<A>()));
    EXPECT_FALSE(manager.registerUpdaterClass(&OrbClassOf<NotAnUpdater>()));
    EXPECT_EQ(manager.registeredClasses().size(), 1U);
    EXPECT_EQ(manager.registeredClasses().count(&OrbClassOf<NotAnUpdater>()), 0U);
}

TEST_F(UpdaterRegistry, RefusesNoClass) {
    ASSERT_TRUE(manager.registerUpdaterClass(&OrbClassOf<A>()));
    EXPECT_FALSE(manager.registerUpdaterClass(nullptr));
    EXPECT_EQ(manager.registeredClasses().size(), 1U);
}

TEST_F(UpdaterRegistry, RefusesANameWithoutAClassQuietly) {
    EXPECT_FALSE(manager.registerUpdaterClass(OrbClassFromName("OrbPPDNoSuchUpdater")));
    EXPECT_TRUE(manager.registeredClasses().empty());
}

TEST_F(UpdaterRegistry, TakesTwoClassesOfTheSameNameAsTwo) {
    struct Twin : Testing::ScriptedUpdater<'A'> {
        using Testing::ScriptedUpdater<'A'>::ScriptedUpdater;
    };
    ASSERT_EQ(OrbClassOf<Twin>().name(), OrbClassOf<A>().name());
    EXPECT_TRUE(manager.registerUpdaterClass(&OrbClassOf<A>()));
    EXPECT_TRUE(manager.registerUpdaterClass(&OrbClassOf<Twin>()));
    EXPECT_EQ(manager.registeredClasses().size(), 2U);
    manager.unregisterUpdaterClass(&OrbClassOf<A>());
    EXPECT_EQ(manager.registeredClasses().size(), 1U);
    EXPECT_EQ(manager.registeredClasses().count(&OrbClassOf<Twin>()), 1U);
}

TEST_F(UpdaterRegistry, IsOrderedByNameTheGreatestFirstWhereverTheClassesStand) {
    const OrbClass::Maker maker = [] { return std::unique_ptr<ITkPPDUpdater>(); };
    const std::array<OrbClass, 3> ascending = {{{"a", maker}, {"b", maker}, {"c", maker}}};
    const std::array<OrbClass, 3> descending = {{{"c", maker}, {"b", maker}, {"a", maker}}};
    for (const auto* classes : {&ascending, &descending}) {
        OrbPPDConcreteUpdatingManager::Classes ordered;
        std::vector<std::string_view> names;
        for (const OrbClass& each : *classes) {
            ordered.insert(&each);
        }
        for (const OrbClass* each : ordered) {
            names.push_back(each->name());
        }
        EXPECT_EQ(names, (std::vector<std::string_view>{"c", "b", "a"}));
    }
}

TEST_F(UpdaterRegistry, ForgetsAClassThatIsUnregistered) {
    useUpdaters<A, B>();
    manager.unregisterUpdaterClass(&OrbClassOf<A>());
    EXPECT_EQ(manager.registeredClasses().count(&OrbClassOf<A>()), 0U);
    EXPECT_EQ(manager.registeredClasses().count(&OrbClassOf<B>()), 1U);
    manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p");
    EXPECT_EQ(A::script.instancesMade, 0);
    EXPECT_EQ(B::script.timesRun, 1);
}

TEST_F(UpdaterRegistry, DoesNothingWhenAClassThatIsNotRegisteredIsUnregistered) {
    useUpdaters<A>();
    manager.unregisterUpdaterClass(&OrbClassOf<B>());
    manager.unregisterUpdaterClass(&OrbClassOf<NotAnUpdater>());
    manager.unregisterUpdaterClass(nullptr);
    EXPECT_EQ(manager.registeredClasses(),
              (OrbPPDConcreteUpdatingManager::Classes{&OrbClassOf<A>()}));
}

TEST_F(UpdaterRegistry, TakesAClassAgainAfterItWasUnregistered) {
    useUpdaters<A>();
    manager.unregisterUpdaterClass(&OrbClassOf<A>());
    EXPECT_TRUE(manager.registerUpdaterClass(&OrbClassOf<A>()));
    EXPECT_EQ(manager.registeredClasses().size(), 1U);
}

TEST_F(UpdaterRegistry, RunsABuiltInUpdaterOfAFreshManagerNoMoreOnceUnregistered) {
    OrbPPDConcreteUpdatingManager fresh;
    const OrbClass* pageSize = OrbClassFromName("OrbPPDDefaultPageSizeUpdater");
    ASSERT_NE(pageSize, nullptr);
    ASSERT_EQ(fresh.registeredClasses().count(pageSize), 1U);
    const Testing::OneOptionPPDFile letterPPD("none");
    EXPECT_EQ(fresh.applicableUpdatersForPPDFile(&letterPPD).size(), 1U);
    fresh.unregisterUpdaterClass(pageSize);
    EXPECT_TRUE(fresh.applicableUpdatersForPPDFile(&letterPPD).empty());
}

TEST_F(UpdaterRegistry, OfOneManagerIsNotThatOfAnother) {
    useUpdaters<A>();
    EXPECT_EQ(OrbPPDConcreteUpdatingManager().registeredClasses().count(&OrbClassOf<A>()), 0U);
}

class ApplicableUpdaters : public Testing::ManagerTest {};

TEST_F(ApplicableUpdaters, AreFreshInstancesOfTheClassesThatApply) {
    useUpdaters<A, B>();
    const OrbPPDFile* asked = nullptr;
    A::script.isApplicable = [&](const OrbPPDFile* PPDFile) {
        asked = PPDFile;
        return true;
    };
    B::script.isApplicable = [](const OrbPPDFile*) { return false; };
    {
        const auto updaters = manager.applicableUpdatersForPPDFile(file.get());
        ASSERT_EQ(updaters.size(), 1U);
        EXPECT_NE(dynamic_cast<A*>(updaters[0].get()), nullptr);
        EXPECT_EQ(asked, file.get());
        EXPECT_EQ(A::script.instancesAlive, 1);
        EXPECT_EQ(B::script.instancesMade, 1);
        EXPECT_EQ(B::script.instancesAlive, 0) << "an inapplicable instance is destroyed at once";
        const auto others = manager.applicableUpdatersForPPDFile(file.get());
        ASSERT_EQ(others.size(), 1U);
        EXPECT_NE(others[0], updaters[0]);
    }
    EXPECT_EQ(A::script.instancesMade, 2);
    EXPECT_EQ(A::script.timesAskedIfApplicable, 2);
}

TEST_F(ApplicableUpdaters, AreThoseOfTheOtherClassesWhenOneGivesNoInstance) {
    static const OrbClass barren("BarrenUpdater",
                                 []() -> std::unique_ptr<ITkPPDUpdater> { return nullptr; });
    useUpdaters<A>();
    EXPECT_TRUE(manager.registerUpdaterClass(&barren));
    EXPECT_EQ(manager.registeredClasses().size(), 2U);
    EXPECT_EQ(manager.applicableUpdatersForPPDFile(file.get()).size(), 1U);
    A::script.updateFromDevice = [](const PPDText&, auto, auto*) { return makePPDText("device"); };
    A::script.updateFromPPD = [](const PPDText&, auto*, auto*) { return makePPDText("queue"); };
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_deviceURI(path, "ipp://p")), "device");
    EXPECT_EQ(textOf(manager.updatedPPDContentsForFile_queueName(path, "office")), "queue");
    EXPECT_EQ(manager.PPDUpdatingValuesForQueueWithName_deviceURI("office", "ipp://p"),
              OrbPPDUpdatingValues());
}

TEST_F(ApplicableUpdaters, AreNoneWithoutRegisteredClasses) {
    EXPECT_TRUE(manager.applicableUpdatersForPPDFile(file.get()).empty());
}

}  // namespace
}  // namespace TkPPDUpdating
