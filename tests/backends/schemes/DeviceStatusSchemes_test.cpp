#include "backends/schemes/DeviceStatusSchemes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <any>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core_interface/OrbCoreInterface.h"
#include "core_interface/TkCSKeys.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A backend that always gives `status`, and remembers the URIs that it was asked for.
DeviceStatusSchemes::Backend remembering(std::vector<std::string>& URIs,
                                         const std::shared_ptr<const OrbCSDeviceStatus>& status) {
    return [&URIs, status](const std::string& URI, const OrbDictionary* /*parameters*/,
                           OrbCSError& /*error*/) {
        URIs.push_back(URI);
        return status;
    };
}

std::string reasonForURI(const DeviceStatusSchemes& schemes, std::string_view URI) {
    OrbCSError error;
    EXPECT_FALSE(schemes.deviceStatusWithURI_parameters_error(URI, nullptr, &error)) << URI;
    return error.reason;
}

TEST(DeviceStatusSchemes, HandsTheURIUnchangedToTheBackendOfItsScheme) {
    DeviceStatusSchemes schemes;
    std::vector<std::string> fileURIs;
    std::vector<std::string> ippURIs;
    const auto status = std::make_shared<const Testing::FakeDeviceStatus>();
    schemes.registerScheme("file", remembering(fileURIs, nullptr));
    schemes.registerScheme("ipp", remembering(ippURIs, status));
    EXPECT_EQ(schemes.deviceStatusWithURI_parameters_error("IPP://Host/A%20b?c", nullptr, nullptr),
              status);
    EXPECT_THAT(ippURIs, ElementsAre("IPP://Host/A%20b?c"));
    EXPECT_THAT(fileURIs, IsEmpty());
}

TEST(DeviceStatusSchemes, TakesASchemeInAnyCase) {
    DeviceStatusSchemes schemes;
    std::vector<std::string> URIs;
    schemes.registerScheme("X-Own+Scheme.2", remembering(URIs, nullptr));
    for (const char* URI : {"x-own+scheme.2:a", "X-OWN+SCHEME.2:b", "x-Own+scheme.2:"}) {
        schemes.deviceStatusWithURI_parameters_error(URI, nullptr, nullptr);
    }
    EXPECT_THAT(URIs, ElementsAre("x-own+scheme.2:a", "X-OWN+SCHEME.2:b", "x-Own+scheme.2:"));
}

TEST(DeviceStatusSchemes, HandsTheParametersToTheBackend) {
    DeviceStatusSchemes schemes;
    const OrbDictionary* given = nullptr;
    schemes.registerScheme("test",
                           [&given](const std::string&, const OrbDictionary* parameters,
                                    OrbCSError&) -> std::shared_ptr<const OrbCSDeviceStatus> {
                               given = parameters;
                               return nullptr;
                           });
    const OrbDictionary parameters{{std::string(kTkCSIsCUPSFilterModeKey), true}};
    schemes.deviceStatusWithURI_parameters_error("test:", &parameters, nullptr);
    EXPECT_EQ(given, &parameters);
    schemes.deviceStatusWithURI_parameters_error("test:", nullptr, nullptr);
    EXPECT_EQ(given, nullptr);
}

TEST(DeviceStatusSchemes, GivesTheBackendsReasonAndNeedsNoSlotForIt) {
    DeviceStatusSchemes schemes;
    schemes.registerScheme("test",
                           [](const std::string&, const OrbDictionary*,
                              OrbCSError& error) -> std::shared_ptr<const OrbCSDeviceStatus> {
                               error = {OrbCSError::Cause::noConnection, "the printer is off"};
                               return nullptr;
                           });
    EXPECT_EQ(reasonForURI(schemes, "test:printer"), "the printer is off");
    EXPECT_FALSE(schemes.deviceStatusWithURI_parameters_error("test:printer", nullptr, nullptr));
}

TEST(DeviceStatusSchemes, ALaterBackendReplacesTheEarlierOfTheScheme) {
    DeviceStatusSchemes schemes;
    std::vector<std::string> earlier;
    std::vector<std::string> later;
    schemes.registerScheme("test", remembering(earlier, nullptr));
    schemes.registerScheme("TEST", remembering(later, nullptr));
    schemes.deviceStatusWithURI_parameters_error("test:a", nullptr, nullptr);
    EXPECT_THAT(earlier, IsEmpty());
    EXPECT_THAT(later, ElementsAre("test:a"));
    EXPECT_THAT(schemes.schemes(), ElementsAre("test"));
}

TEST(DeviceStatusSchemes, ListsItsSchemesSortedInLowerCase) {
    DeviceStatusSchemes schemes;
    EXPECT_THAT(schemes.schemes(), IsEmpty());
    std::vector<std::string> URIs;
    for (const char* scheme : {"ipps", "File", "ipp"}) {
        schemes.registerScheme(scheme, remembering(URIs, nullptr));
    }
    EXPECT_THAT(schemes.schemes(), ElementsAre("file", "ipp", "ipps"));
}

TEST(DeviceStatusSchemes, ANullBackendTakesTheSchemeAway) {
    DeviceStatusSchemes schemes;
    std::vector<std::string> URIs;
    schemes.registerScheme("test", remembering(URIs, nullptr));
    schemes.registerScheme("Test", nullptr);
    EXPECT_THAT(schemes.schemes(), IsEmpty());
    EXPECT_EQ(reasonForURI(schemes, "test:a"), "no backend for the scheme \"test\"");
}

TEST(DeviceStatusSchemes, GivesNoStatusWithoutAURI) {
    OrbCSError error;
    EXPECT_FALSE(
        DeviceStatusSchemes().deviceStatusWithURI_parameters_error(std::nullopt, nullptr, &error));
    EXPECT_EQ(error.reason, "no device URI is given");
    EXPECT_EQ(error.cause, OrbCSError::Cause::malformedURI);
    EXPECT_FALSE(
        DeviceStatusSchemes().deviceStatusWithURI_parameters_error(std::nullopt, nullptr, nullptr));
}

TEST(DeviceStatusSchemes, GivesNoStatusForAURIWithoutAScheme) {
    const DeviceStatusSchemes schemes;
    for (const char* URI :
         {"", ":", "://host", "printer", "/dev/usb/lp0", "1pp://host", "+ipp://host", "i pp://host",
          "ip_p:host", "ipp", "ipp/host:a", "\xC3\xA9:host", " ipp:host"}) {
        EXPECT_EQ(reasonForURI(schemes, URI), "the device URI has no scheme") << URI;
    }
}

TEST(DeviceStatusSchemes, GivesNoStatusForASchemeWithoutABackend) {
    const DeviceStatusSchemes schemes;
    EXPECT_EQ(reasonForURI(schemes, "usb://Maker/Model?serial=1"),
              "no backend for the scheme \"usb\"");
    EXPECT_EQ(reasonForURI(schemes, "USB:"), "no backend for the scheme \"usb\"");
}

TEST(DeviceStatusSchemes, ShowsOnlyTheStartOfAVeryLongScheme) {
    EXPECT_EQ(reasonForURI(DeviceStatusSchemes(), std::string(100'000, 'a') + ":"),
              "no backend for the scheme \"" + std::string(40, 'a') + "...\"");
}

TEST(DeviceStatusSchemes, ServesTheInterfaceOnceItIsSet) {
    const Testing::CoreInterfaceScope scope;
    const auto schemes = std::make_shared<DeviceStatusSchemes>();
    std::vector<std::string> URIs;
    const auto status = std::make_shared<const Testing::FakeDeviceStatus>();
    schemes->registerScheme("test", remembering(URIs, status));
    OrbCoreInterface::setCommunicationServices(schemes);
    EXPECT_EQ(OrbCSDeviceStatus::deviceStatusWithURI_parameters_error("test:a", nullptr, nullptr),
              status);
}

}  // namespace
}  // namespace TkPPDUpdating
