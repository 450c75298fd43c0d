#include "tools/OneAnswerServices.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>

#include "core_interface/TkCSKeys.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

std::shared_ptr<const FakeCommunicationServices> silentDevice() {
    return std::make_shared<const FakeCommunicationServices>(
        OrbCSError{OrbCSError::Cause::noConnection, "switched off"});
}

TEST(OneAnswerServicesTest, AsksADeviceOnceAndGivesTheSameStatusAgain) {
    const auto status = std::make_shared<const FakeDeviceStatus>();
    const auto device = std::make_shared<const FakeCommunicationServices>(status);
    const OneAnswerServices services(device);
    EXPECT_EQ(services.deviceStatusWithURI_parameters_error("x:1", nullptr, nullptr), status);
    EXPECT_EQ(services.deviceStatusWithURI_parameters_error("x:1", nullptr, nullptr), status);
    EXPECT_EQ(device->requests.size(), 1U);
    EXPECT_EQ(services.deviceStatusWithURI_parameters_error("x:2", nullptr, nullptr), status);
    EXPECT_EQ(device->requests.size(), 2U);
}

TEST(OneAnswerServicesTest, AsksASilentDeviceOnceAndKeepsTheReason) {
    const auto device = silentDevice();
    const OneAnswerServices services(device);
    OrbCSError error;
    EXPECT_EQ(services.deviceStatusWithURI_parameters_error("x:1", nullptr, nullptr), nullptr);
    EXPECT_EQ(services.deviceStatusWithURI_parameters_error("x:1", nullptr, &error), nullptr);
    EXPECT_EQ(error.reason, "switched off");
    EXPECT_EQ(error.cause, OrbCSError::Cause::noConnection);
    EXPECT_EQ(device->requests.size(), 1U);
    ASSERT_TRUE(services.answerOfDevice("x:1"));
    EXPECT_EQ(services.answerOfDevice("x:1")->error.reason, "switched off");
}

TEST(OneAnswerServicesTest, AnAnswerToALimitedWaitIsForNobodyElse) {
    const auto device = silentDevice();
    const OneAnswerServices services(device);
    const OrbDictionary limited = {{std::string(kTkCSTimeLimitKey), std::chrono::milliseconds(1)}};
    OrbCSError error;
    for (const std::size_t requests : {1U, 2U}) {
        EXPECT_EQ(services.deviceStatusWithURI_parameters_error("x:1", &limited, &error), nullptr);
        EXPECT_EQ(device->requests.size(), requests);
        EXPECT_EQ(error.reason, "switched off");
    }
    EXPECT_FALSE(services.answerOfDevice("x:1"));
    EXPECT_EQ(services.deviceStatusWithURI_parameters_error("x:1", nullptr, nullptr), nullptr);
    EXPECT_EQ(device->requests.size(), 3U);
}

TEST(OneAnswerServicesTest, TellsThatADeviceHasNotBeenAsked) {
    const OneAnswerServices services(silentDevice());
    EXPECT_FALSE(services.answerOfDevice("x:1"));
}

TEST(OneAnswerServicesTest, PassesParametersOnAndARequestWithoutAURI) {
    const auto device = std::make_shared<const FakeCommunicationServices>(nullptr);
    const OneAnswerServices services(device);
    const OrbDictionary parameters = {{"key", true}};
    (void)services.deviceStatusWithURI_parameters_error("x:1", &parameters, nullptr);
    (void)services.deviceStatusWithURI_parameters_error(std::nullopt, nullptr, nullptr);
    ASSERT_EQ(device->requests.size(), 2U);
    EXPECT_EQ(device->requests[0].parameters->count("key"), 1U);
    EXPECT_FALSE(device->requests[1].deviceURI);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
