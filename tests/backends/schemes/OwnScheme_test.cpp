// An application's own scheme, as docs/adding-a-scheme.md explains it.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCoreInterface.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "ppd/PPDTextSafety.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

/// What the printer at a USB port says of itself.
struct USBReply {
    bool hasLowerTray = false;
    std::string inkName;
};

/// Stands in for a wire: replies by device URI.
class USBWire {
  public:
    explicit USBWire(std::map<std::string, USBReply> replies) : replies_(std::move(replies)) {}

    std::optional<USBReply> ask(const std::string& deviceURI) const {
        const auto reply = replies_.find(deviceURI);
        return reply == replies_.end() ? std::nullopt : std::optional(reply->second);
    }

  private:
    std::map<std::string, USBReply> replies_;
};

std::shared_ptr<const OrbCSDeviceStatus> statusOverUSB(const USBWire& wire,
                                                       const std::string& deviceURI,
                                                       OrbCSError& error) {
    const auto reply = wire.ask(deviceURI);
    if (!reply) {
        error = {OrbCSError::Cause::noConnection, "nothing is plugged in there"};
        return nullptr;
    }
    ReportedDeviceStatus::Values values;
    std::vector<std::string> dropped;
    values.emplace(
        kTkCSDeviceAccessoriesKey,
        OrbCSDeviceAccessories{{std::string(kTkCSDeviceAccessoryTray2), reply->hasLowerTray}});
    if (const auto reason =
            reasonPrinterTextIsRefused(PrinterText::unquotedValue, reply->inkName)) {
        dropped.push_back("ink name: " + *reason);
    } else {
        OrbCSPensConfiguration pens;
        pens.PPDAttributeValues.emplace(kTkCSPPDPenDyesKey, reply->inkName);
        values.emplace(kTkCSInstalledPensConfigurationKey, std::move(pens));
    }
    return std::make_shared<const ReportedDeviceStatus>(values, dropped);
}

class OwnScheme : public testing::Test {
  protected:
    void SetUp() override {
        const auto wire = std::make_shared<const USBWire>(std::map<std::string, USBReply>{
            {"usb://Zr/Inkjet?serial=1", {true, "C,M,Y,K"}},
            {"usb://Zr/Inkjet?serial=2", {true, "ink\"\n*cupsFilter: x"}}});
        auto schemes = std::make_shared<DeviceStatusSchemes>();
        schemes->registerScheme(
            "usb", [wire](const std::string& deviceURI, const OrbDictionary*, OrbCSError& error) {
                return statusOverUSB(*wire, deviceURI, error);
            });
        OrbCoreInterface::setCommunicationServices(schemes);
        OrbCoreInterface::setCore(std::make_shared<const PPDModelCore>());
    }

    CoreInterfaceScope scope_;
};

TEST_F(OwnScheme, UpdatesAPPD) {
    const PPDText text = OrbPPDConcreteUpdatingManager().updatedPPDContentsForFile_deviceURI(
        TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-inkjet.ppd", "usb://Zr/Inkjet?serial=1");
    ASSERT_NE(text, nullptr);
    EXPECT_NE(text->find("\n*DefaultZrLowerTrayInstalled: True\n"), std::string::npos);
    EXPECT_NE(text->find("\n*ZrPenDyes: C,M,Y,K\n"), std::string::npos);
}

TEST_F(OwnScheme, LeavesOutATextThatCouldNotStandInAPPDLine) {
    const PPDText text = OrbPPDConcreteUpdatingManager().updatedPPDContentsForFile_deviceURI(
        TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-inkjet.ppd", "usb://Zr/Inkjet?serial=2");
    ASSERT_NE(text, nullptr);
    EXPECT_NE(text->find("\n*DefaultZrLowerTrayInstalled: True\n"), std::string::npos);
    EXPECT_EQ(text->find("cupsFilter: x"), std::string::npos);
}

TEST_F(OwnScheme, TellsWhichTextItLeftOut) {
    const auto status = OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(
        "usb://Zr/Inkjet?serial=2", nullptr, nullptr);
    ASSERT_NE(status, nullptr);
    EXPECT_EQ(ReportedDeviceStatus::droppedValuesOf(*status),
              std::vector<std::string>{"ink name: has the character U+0022 at byte 3"});
}

TEST_F(OwnScheme, SaysWhyThereIsNoStatus) {
    OrbCSError error;
    EXPECT_EQ(
        OrbCSDeviceStatus::deviceStatusWithURI_parameters_error("usb://Zr/Other", nullptr, &error),
        nullptr);
    EXPECT_EQ(error.reason, "nothing is plugged in there");
    EXPECT_EQ(OrbCSDeviceStatus::deviceStatusWithURI_parameters_error("socket://printer", nullptr,
                                                                      &error),
              nullptr);
    EXPECT_EQ(error.reason, "no backend for the scheme \"socket\"");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
