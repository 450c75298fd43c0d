#include <gtest/gtest.h>

#include <any>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "core_interface/TkCSKeys.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "tests/manager/ManagerTestSupport.h"

namespace TkPPDUpdating {
namespace {

using URI = std::optional<std::string_view>;
using Values = std::optional<OrbPPDUpdatingValues>;

bool isFilterMode(const OrbDictionary& context) {
    const auto entry = context.find(kTkCSIsCUPSFilterModeKey);
    return entry != context.end() && std::any_cast<bool>(entry->second);
}

/// The two operations that give values, so that what they share is tested for both.
enum class Source { kQueue, kStatus };

class UpdatingValues : public Testing::ManagerTest, public testing::WithParamInterface<Source> {
  protected:
    Values values(URI deviceURI = "ipp://p") {
        return GetParam() == Source::kQueue
                   ? manager.PPDUpdatingValuesForQueueWithName_deviceURI("office", deviceURI)
                   : manager.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(status, deviceURI,
                                                                                queueFile.get());
    }
};

TEST_P(UpdatingValues, AreEmptyAndNotNothingWhenNoUpdaterApplies) {
    EXPECT_EQ(values(), OrbPPDUpdatingValues());
    useUpdaters<A>();
    A::script.isApplicable = [](const OrbPPDFile*) { return false; };
    EXPECT_EQ(values(), OrbPPDUpdatingValues());
    EXPECT_EQ(A::script.timesRun, 0);
}

TEST_P(UpdatingValues, AreEmptyAndNotNothingWhenNoUpdaterHasValues) {
    useUpdaters<A, B>();
    A::script.values = [](const OrbPPDFile*, URI, OrbDictionary*) -> Values { return {}; };
    B::script.values = [](const OrbPPDFile*, URI, OrbDictionary*) -> Values {
        return OrbPPDUpdatingValues();
    };
    EXPECT_EQ(values(), OrbPPDUpdatingValues());
    EXPECT_EQ(A::script.timesRun + B::script.timesRun, 2);
}

TEST_P(UpdatingValues, AreThoseOfAllUpdatersTogether) {
    useUpdaters<A, B, C>();
    A::script.values = [](const OrbPPDFile*, URI, OrbDictionary*) -> Values {
        return {{{"One", "1"}, {"Two", "2"}}};
    };
    B::script.values = [](const OrbPPDFile*, URI, OrbDictionary*) -> Values { return {}; };
    C::script.values = [](const OrbPPDFile*, URI, OrbDictionary*) -> Values {
        return {{{"Three", "3"}}};
    };
    EXPECT_EQ(values(), (OrbPPDUpdatingValues{{"One", "1"}, {"Three", "3"}, {"Two", "2"}}));
}

TEST_P(UpdatingValues, HoldExactlyOneOfTwoValuesOfOneKeyThatOfTheUpdaterThatRanLater) {
    useUpdaters<A, B>();
    std::string later;
    A::script.values = [&](const OrbPPDFile*, URI, OrbDictionary*) -> Values {
        later = "of A";
        return {{{"Key", "of A"}, {"OnlyA", "a"}}};
    };
    B::script.values = [&](const OrbPPDFile*, URI, OrbDictionary*) -> Values {
        later = "of B";
        return {{{"Key", "of B"}, {"OnlyB", "b"}}};
    };
    const Values merged = values();
    EXPECT_EQ(merged, (OrbPPDUpdatingValues{{"Key", later}, {"OnlyA", "a"}, {"OnlyB", "b"}}));
}

TEST_P(UpdatingValues, ComeFromUpdatersThatWereAskedAndRunWithTheParsedPPD) {
    useUpdaters<A>();
    A::script.isApplicable = [this](const OrbPPDFile* PPDFile) {
        EXPECT_EQ(PPDFile, queueFile.get());
        return true;
    };
    A::script.values = [this](const OrbPPDFile* PPDFile, URI, OrbDictionary*) -> Values {
        EXPECT_EQ(PPDFile, queueFile.get());
        return {};
    };
    values();
    EXPECT_EQ(A::script.timesRun, 1);
    EXPECT_TRUE(core->askedPaths.empty()) << "no file is read for values";
}

TEST_P(UpdatingValues, GetTheDeviceURIUnchanged) {
    useUpdaters<A>();
    std::vector<std::optional<std::string>> given;
    A::script.values = [&](const OrbPPDFile*, URI deviceURI, OrbDictionary*) -> Values {
        given.push_back(deviceURI ? std::optional<std::string>(*deviceURI) : std::nullopt);
        return {};
    };
    values("ipp://p");
    values("any text: not checked");
    values("");
    values(std::nullopt);
    EXPECT_EQ(given, (std::vector<std::optional<std::string>>{"ipp://p", "any text: not checked",
                                                              "", std::nullopt}));
}

TEST_P(UpdatingValues, HaveAContextInFilterModeSharedWithinARunAndNotBetweenRuns) {
    useUpdaters<A, B>();
    std::vector<std::size_t> notesSeen;
    A::script.values =
        B::script.values = [&](const OrbPPDFile*, URI, OrbDictionary* context) -> Values {
        EXPECT_TRUE(isFilterMode(*context));
        notesSeen.push_back(context->count("NoteOf0") + context->count("NoteOf1"));
        (*context)["NoteOf" + std::to_string(notesSeen.back())] = 1;
        return {};
    };
    values();
    values();
    EXPECT_EQ(notesSeen, (std::vector<std::size_t>{0, 1, 0, 1}));
}

TEST_P(UpdatingValues, AskNoUpdaterForATextAndChangeNone) {
    useUpdaters<A>();
    A::script.updateFromDevice = [](const PPDText&, URI, OrbDictionary*) -> PPDText {
        ADD_FAILURE();
        return nullptr;
    };
    A::script.updateFromPPD = [](const PPDText&, const OrbPPDFile*, OrbDictionary*) -> PPDText {
        ADD_FAILURE();
        return nullptr;
    };
    values();
    EXPECT_EQ(A::script.timesRun, 1);
}

TEST_P(UpdatingValues, ComeFromFreshUpdatersInEveryOperation) {
    useUpdaters<A>();
    values();
    values();
    EXPECT_EQ(A::script.instancesMade, 2);
    EXPECT_EQ(A::script.instancesAlive, 0);
}

TEST_P(UpdatingValues, ComeFromUpdatersOfWhichEachIsGoneBeforeTheNextRuns) {
    useUpdaters<A, B, C>();
    std::vector<int> alive;
    A::script.values = B::script.values =
        C::script.values = [&](const OrbPPDFile*, URI, OrbDictionary*) -> Values {
        alive.push_back(A::script.instancesAlive + B::script.instancesAlive +
                        C::script.instancesAlive);
        return {};
    };
    values();
    EXPECT_EQ(alive, (std::vector<int>{3, 2, 1}));
}

TEST_P(UpdatingValues, PassOnTheOutOfRangeErrorAndLeaveTheManagerUsable) {
    useUpdaters<A>();
    A::script.values = [](const OrbPPDFile*, URI, OrbDictionary*) -> Values {
        throw std::out_of_range("an attribute ends at its colon");
    };
    EXPECT_THROW(values(), std::out_of_range);
    EXPECT_EQ(A::script.instancesAlive, 0);
    A::script.values = [](const OrbPPDFile*, URI, OrbDictionary*) -> Values {
        return {{{"One", "1"}}};
    };
    EXPECT_EQ(values(), (OrbPPDUpdatingValues{{"One", "1"}}));
}

INSTANTIATE_TEST_SUITE_P(From, UpdatingValues, testing::Values(Source::kQueue, Source::kStatus),
                         [](const auto& parameter) {
                             return parameter.param == Source::kQueue ? "Queue" : "DeviceStatus";
                         });

class UpdatingValuesForAQueue : public Testing::ManagerTest {};

TEST_F(UpdatingValuesForAQueue, AreNothingWithoutAQueueName) {
    useUpdaters<A>();
    EXPECT_EQ(manager.PPDUpdatingValuesForQueueWithName_deviceURI(std::nullopt, "ipp://p"),
              std::nullopt);
    EXPECT_TRUE(core->askedQueueNames.empty());
    EXPECT_EQ(A::script.instancesMade, 0);
}

TEST_F(UpdatingValuesForAQueue, AreNothingForAQueueWithoutAPPD) {
    useUpdaters<A>();
    EXPECT_EQ(manager.PPDUpdatingValuesForQueueWithName_deviceURI("attic", "ipp://p"),
              std::nullopt);
    EXPECT_EQ(core->askedQueueNames, std::vector<std::string>{"attic"});
    EXPECT_EQ(A::script.instancesMade, 0);
}

TEST_F(UpdatingValuesForAQueue, AreNothingForAQueueWithoutAPPDAlsoWithoutUpdaters) {
    EXPECT_EQ(manager.PPDUpdatingValuesForQueueWithName_deviceURI("attic", "ipp://p"),
              std::nullopt);
    EXPECT_EQ(core->askedQueueNames, std::vector<std::string>{"attic"});
}

TEST_F(UpdatingValuesForAQueue, AreNothingWithoutACoreLibrary) {
    OrbCoreInterface::setCore(nullptr);
    EXPECT_EQ(manager.PPDUpdatingValuesForQueueWithName_deviceURI("office", "ipp://p"),
              std::nullopt);
}

TEST_F(UpdatingValuesForAQueue, StartWithNothingInTheContextButFilterMode) {
    useUpdaters<A>();
    A::script.values = [](const OrbPPDFile*, URI, OrbDictionary* context) -> Values {
        EXPECT_EQ(context->size(), 1U);
        EXPECT_TRUE(isFilterMode(*context));
        return {};
    };
    manager.PPDUpdatingValuesForQueueWithName_deviceURI("office", "ipp://p");
    EXPECT_EQ(A::script.timesRun, 1);
    EXPECT_TRUE(services->requests.empty()) << "nobody needed the device";
}

TEST_F(UpdatingValuesForAQueue, AskTheDeviceOnceAndInFilterMode) {
    useUpdaters<A, B>();
    A::script.values = B::script.values = [this](const OrbPPDFile*, URI deviceURI,
                                                 OrbDictionary* context) -> Values {
        EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext(deviceURI, context), status);
        return {};
    };
    manager.PPDUpdatingValuesForQueueWithName_deviceURI("office", "ipp://p");
    ASSERT_EQ(services->requests.size(), 1U);
    EXPECT_EQ(services->requests[0].deviceURI, "ipp://p");
    ASSERT_TRUE(services->requests[0].parameters.has_value());
    EXPECT_TRUE(isFilterMode(*services->requests[0].parameters));
    EXPECT_FALSE(services->requests[0].hadErrorSlot);
}

class UpdatingValuesForAStatus : public Testing::ManagerTest {};

TEST_F(UpdatingValuesForAStatus, AreNothingWithoutAStatusOrAPPD) {
    useUpdaters<A>();
    EXPECT_EQ(manager.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(nullptr, "ipp://p",
                                                                         queueFile.get()),
              std::nullopt);
    EXPECT_EQ(
        manager.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(status, "ipp://p", nullptr),
        std::nullopt);
    EXPECT_EQ(
        manager.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(nullptr, "ipp://p", nullptr),
        std::nullopt);
    EXPECT_EQ(A::script.instancesMade, 0);
}

TEST_F(UpdatingValuesForAStatus, UseTheGivenStatusAndAskNoDevice) {
    useUpdaters<A>();
    const std::shared_ptr<const OrbCSDeviceStatus> given =
        std::make_shared<Testing::FakeDeviceStatus>();
    A::script.values = [&](const OrbPPDFile*, URI deviceURI, OrbDictionary* context) -> Values {
        EXPECT_EQ(context->size(), 2U);
        EXPECT_TRUE(isFilterMode(*context));
        EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext(deviceURI, context), given);
        return {};
    };
    manager.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(given, "ipp://p", queueFile.get());
    EXPECT_EQ(A::script.timesRun, 1);
    EXPECT_TRUE(services->requests.empty());
    EXPECT_TRUE(core->askedQueueNames.empty());
    EXPECT_EQ(given.use_count(), 1) << "the manager keeps nothing between operations";
}

TEST_F(UpdatingValuesForAStatus, NeedNeitherACoreNorADeviceLibrary) {
    useUpdaters<A>();
    OrbCoreInterface::setCore(nullptr);
    OrbCoreInterface::setCommunicationServices(nullptr);
    A::script.values = [](const OrbPPDFile*, URI, OrbDictionary*) -> Values {
        return {{{"One", "1"}}};
    };
    EXPECT_EQ(manager.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(status, std::nullopt,
                                                                         queueFile.get()),
              (OrbPPDUpdatingValues{{"One", "1"}}));
}

}  // namespace
}  // namespace TkPPDUpdating
