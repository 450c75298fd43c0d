#include "manager/OrbClass.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string_view>

#include "manager/OrbClassTable.h"
#include "tests/manager/ManagerTestSupport.h"

namespace TkPPDUpdating {
namespace {

using Testing::NotAnUpdater;
using Testing::ScriptedUpdater;

TEST(OrbClass, IsOneObjectForEachClass) {
    EXPECT_EQ(&OrbClassOf<ScriptedUpdater<'A'>>(), &OrbClassOf<ScriptedUpdater<'A'>>());
    EXPECT_NE(&OrbClassOf<ScriptedUpdater<'A'>>(), &OrbClassOf<ScriptedUpdater<'B'>>());
}

TEST(OrbClass, HasTheNameThatTheClassGivesItself) {
    EXPECT_EQ(OrbClassOf<ScriptedUpdater<'A'>>().name(), "ScriptedA");
}

TEST(OrbClass, ConformsWhenTheClassDerivesFromTheContract) {
    EXPECT_TRUE(OrbClassOf<ScriptedUpdater<'A'>>().conformsToITkPPDUpdater());
}

TEST(OrbClass, DoesNotConformByMerelyHavingTheOperations) {
    EXPECT_FALSE(OrbClassOf<NotAnUpdater>().conformsToITkPPDUpdater());
    EXPECT_EQ(OrbClassOf<NotAnUpdater>().newInstance(), nullptr);
}

TEST(OrbClass, MakesAFreshInstanceEachTime) {
    const auto one = OrbClassOf<ScriptedUpdater<'A'>>().newInstance();
    const auto other = OrbClassOf<ScriptedUpdater<'A'>>().newInstance();
    EXPECT_NE(one, nullptr);
    EXPECT_NE(one, other);
}

TEST(OrbClass, MakesInstancesOfItsDescriptionWhenItIsMadeWithOne) {
    static const void* given = nullptr;
    const int description = 7;
    const OrbClass made(
        "Made",
        [](const void* context) -> std::unique_ptr<ITkPPDUpdater> {
            given = context;
            return std::make_unique<ScriptedUpdater<'A'>>();
        },
        &description);
    EXPECT_EQ(made.name(), "Made");
    EXPECT_TRUE(made.conformsToITkPPDUpdater());
    EXPECT_NE(made.newInstance(), nullptr);
    EXPECT_EQ(given, &description);
}

TEST(OrbClassTable, FindsEveryClassByItsName) {
    std::set<std::string_view> names;
    for (const OrbClass* each : OrbClassTable()) {
        EXPECT_EQ(OrbClassFromName(each->name()), each) << each->name();
        EXPECT_TRUE(each->conformsToITkPPDUpdater()) << each->name();
        EXPECT_TRUE(names.insert(each->name()).second) << each->name();
    }
    EXPECT_FALSE(names.empty());
}

TEST(OrbClassTable, FindsTheFurtherClassesAsWell) {
    EXPECT_FALSE(OrbFurtherClassTable().empty());
    for (const OrbClass* each : OrbFurtherClassTable()) {
        EXPECT_EQ(OrbClassFromName(each->name()), each) << each->name();
    }
}

TEST(OrbClassTable, HasNoClassForAnotherName) {
    EXPECT_EQ(OrbClassFromName("OrbPPDNoSuchUpdater"), nullptr);
    EXPECT_EQ(OrbClassFromName(""), nullptr);
    EXPECT_EQ(OrbClassFromName("ScriptedA"), nullptr);
    EXPECT_EQ(OrbClassFromName("orbppddefaultpagesizeupdater"), nullptr);
}

}  // namespace
}  // namespace TkPPDUpdating
