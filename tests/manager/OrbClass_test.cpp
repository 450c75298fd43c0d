#include "manager/OrbClass.h"

#include <gtest/gtest.h>

#include <set>

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

TEST(OrbClassTable, FindsEveryClassByItsName) {
    std::set<std::string_view> names;
    for (const OrbClass* each : OrbClassTable()) {
        EXPECT_EQ(OrbClassFromName(each->name()), each) << each->name();
        EXPECT_TRUE(each->conformsToITkPPDUpdater()) << each->name();
        EXPECT_TRUE(names.insert(each->name()).second) << each->name();
    }
    EXPECT_FALSE(names.empty());
}

TEST(OrbClassTable, HasNoClassForAnotherName) {
    EXPECT_EQ(OrbClassFromName("OrbPPDNoSuchUpdater"), nullptr);
    EXPECT_EQ(OrbClassFromName(""), nullptr);
    EXPECT_EQ(OrbClassFromName("ScriptedA"), nullptr);
    EXPECT_EQ(OrbClassFromName("orbppddefaultpagesizeupdater"), nullptr);
}

}  // namespace
}  // namespace TkPPDUpdating
