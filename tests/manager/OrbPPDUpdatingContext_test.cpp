#include "manager/OrbPPDUpdatingContext.h"

#include <gtest/gtest.h>

#include <any>
#include <memory>
#include <string>

#include "core_interface/TkCSKeys.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating {
namespace {

using Testing::CoreInterfaceScope;
using Testing::FakeCommunicationServices;
using Testing::FakeDeviceStatus;

const std::string kStatusKey = "TkDeviceStatusInstance";

std::shared_ptr<const OrbCSDeviceStatus> statusIn(const OrbDictionary& context) {
    const auto entry = context.find(kStatusKey);
    return entry == context.end()
               ? nullptr
               : std::any_cast<std::shared_ptr<const OrbCSDeviceStatus>>(entry->second);
}

TEST(UpdatingContext, IsEmptyWithoutStatusAndParameters) {
    EXPECT_TRUE(
        OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(nullptr, nullptr).empty());
}

TEST(UpdatingContext, IsACopyOfTheParametersWithoutAStatus) {
    const OrbDictionary parameters{{"Hint", std::string("slow")}, {"Number", 7}};
    const OrbDictionary context =
        OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(nullptr, &parameters);
    EXPECT_EQ(context.size(), 2U);
    EXPECT_EQ(std::any_cast<std::string>(context.at("Hint")), "slow");
    EXPECT_EQ(std::any_cast<int>(context.at("Number")), 7);
    EXPECT_EQ(context.count(kStatusKey), 0U);
}

TEST(UpdatingContext, HoldsTheStatusUnderItsKey) {
    const auto status = std::make_shared<FakeDeviceStatus>();
    const OrbDictionary context =
        OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(status, nullptr);
    EXPECT_EQ(context.size(), 1U);
    EXPECT_EQ(statusIn(context), status);
}

TEST(UpdatingContext, HoldsTheStatusBesideTheParameters) {
    const auto status = std::make_shared<FakeDeviceStatus>();
    const OrbDictionary parameters{{"Hint", std::string("slow")}};
    const OrbDictionary context =
        OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(status, &parameters);
    EXPECT_EQ(context.size(), 2U);
    EXPECT_EQ(statusIn(context), status);
    EXPECT_EQ(std::any_cast<std::string>(context.at("Hint")), "slow");
}

TEST(UpdatingContext, PutsTheStatusInPlaceOfOneThatCameWithTheParameters) {
    const std::shared_ptr<const OrbCSDeviceStatus> earlier = std::make_shared<FakeDeviceStatus>();
    const auto status = std::make_shared<FakeDeviceStatus>();
    const OrbDictionary parameters{{kStatusKey, earlier}};
    const OrbDictionary context =
        OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(status, &parameters);
    EXPECT_EQ(context.size(), 1U);
    EXPECT_EQ(statusIn(context), status);
}

TEST(UpdatingContext, KeepsAStatusThatCameWithTheParametersWhenNoneIsGiven) {
    const std::shared_ptr<const OrbCSDeviceStatus> earlier = std::make_shared<FakeDeviceStatus>();
    const OrbDictionary parameters{{kStatusKey, earlier}};
    OrbDictionary context =
        OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(nullptr, &parameters);
    EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://p", &context), earlier);
}

TEST(UpdatingContext, DoesNotChangeTheCallersParameters) {
    const OrbDictionary parameters{{"Hint", std::string("slow")}};
    OrbDictionary context = OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(
        std::make_shared<FakeDeviceStatus>(), &parameters);
    context["More"] = 1;
    context["Hint"] = std::string("fast");
    EXPECT_EQ(parameters.size(), 1U);
    EXPECT_EQ(std::any_cast<std::string>(parameters.at("Hint")), "slow");
}

class DeviceStatusInContext : public testing::Test {
  protected:
    void printerAnswers(std::shared_ptr<const OrbCSDeviceStatus> status) {
        services = std::make_shared<FakeCommunicationServices>(std::move(status));
        OrbCoreInterface::setCommunicationServices(services);
    }

    CoreInterfaceScope scope;
    std::shared_ptr<FakeCommunicationServices> services;
};

TEST_F(DeviceStatusInContext, IsCreatedOnceAndTheSameObjectEvenForAnotherURI) {
    const auto status = std::make_shared<FakeDeviceStatus>();
    printerAnswers(status);
    OrbDictionary context;
    EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://p", &context), status);
    EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://p", &context), status);
    EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://q", &context), status);
    EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext(std::nullopt, &context), status);
    ASSERT_EQ(services->requests.size(), 1U);
    EXPECT_EQ(services->requests[0].deviceURI, "ipp://p");
    EXPECT_EQ(statusIn(context), status);
}

TEST_F(DeviceStatusInContext, IsNotCreatedWhenTheContextHoldsOne) {
    printerAnswers(std::make_shared<FakeDeviceStatus>());
    const auto held = std::make_shared<FakeDeviceStatus>();
    OrbDictionary context =
        OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(held, nullptr);
    EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://p", &context), held);
    EXPECT_TRUE(services->requests.empty());
}

TEST_F(DeviceStatusInContext, IsCreatedWhenTheContextHoldsNullOrSomethingElseInItsPlace) {
    const auto status = std::make_shared<FakeDeviceStatus>();
    printerAnswers(status);
    for (const std::any& held :
         {std::any(std::shared_ptr<const OrbCSDeviceStatus>()), std::any(std::string("status"))}) {
        OrbDictionary context{{kStatusKey, held}};
        EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://p", &context), status);
        EXPECT_EQ(statusIn(context), status);
    }
    EXPECT_EQ(services->requests.size(), 2U);
}

TEST_F(DeviceStatusInContext, IsCreatedWithTheContextAsParametersAndNoErrorSlot) {
    printerAnswers(std::make_shared<FakeDeviceStatus>());
    OrbDictionary context{{std::string(kTkCSIsCUPSFilterModeKey), true},
                          {"Hint", std::string("slow")}};
    OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://p", &context);
    ASSERT_EQ(services->requests.size(), 1U);
    ASSERT_TRUE(services->requests[0].parameters.has_value());
    const OrbDictionary& parameters = *services->requests[0].parameters;
    EXPECT_EQ(parameters.size(), 2U);
    EXPECT_TRUE(std::any_cast<bool>(parameters.at(std::string(kTkCSIsCUPSFilterModeKey))));
    EXPECT_EQ(std::any_cast<std::string>(parameters.at("Hint")), "slow");
    EXPECT_FALSE(services->requests[0].hadErrorSlot);
}

TEST_F(DeviceStatusInContext, IsNullAndLeavesTheContextAloneWhenCreationFails) {
    printerAnswers(nullptr);
    OrbDictionary context{{"Hint", std::string("slow")}};
    EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://p", &context), nullptr);
    EXPECT_EQ(context.count(kStatusKey), 0U);
    EXPECT_EQ(context.size(), 1U);
}

TEST_F(DeviceStatusInContext, IsTriedAgainAfterAFailure) {
    printerAnswers(nullptr);
    OrbDictionary context;
    EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://p", &context), nullptr);
    EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://p", &context), nullptr);
    EXPECT_EQ(services->requests.size(), 2U);
    const auto status = std::make_shared<FakeDeviceStatus>();
    printerAnswers(status);
    EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://p", &context), status);
    EXPECT_EQ(statusIn(context), status);
}

TEST_F(DeviceStatusInContext, IsCreatedWithoutParametersAndNotKeptForANullContext) {
    const auto status = std::make_shared<FakeDeviceStatus>();
    printerAnswers(status);
    EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://p", nullptr), status);
    EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://p", nullptr), status);
    ASSERT_EQ(services->requests.size(), 2U);
    EXPECT_FALSE(services->requests[0].parameters.has_value());
    EXPECT_FALSE(services->requests[1].parameters.has_value());
}

TEST_F(DeviceStatusInContext, IsNullForANullContextWhenCreationFails) {
    printerAnswers(nullptr);
    EXPECT_EQ(OrbPPDUpdatingContext::deviceStatusForURI_inContext("ipp://p", nullptr), nullptr);
}

TEST_F(DeviceStatusInContext, IsReleasedWithTheContext) {
    std::weak_ptr<const OrbCSDeviceStatus> watched;
    {
        auto status = std::make_shared<FakeDeviceStatus>();
        watched = status;
        const OrbDictionary context =
            OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(std::move(status), nullptr);
        EXPECT_FALSE(watched.expired());
    }
    EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace TkPPDUpdating
