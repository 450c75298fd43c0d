#include "core_interface/OrbCSPartialStatus.h"

#include <gtest/gtest.h>

#include "core_interface/TkCSKeys.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

TEST(OrbCSPartialStatusTest, AStatusWithoutTheInterfaceTellsEverything) {
    EXPECT_EQ(OrbCSPartialStatus::toldEntriesOf(FakeDeviceStatus()), std::nullopt);
}

TEST(OrbCSPartialStatusTest, NamesAPartBehindItsKey) {
    EXPECT_EQ(OrbCSPartialStatus::entryForPart(kTkCSInstalledPensConfigurationKey, "ZrPenDyes"),
              "InstalledPensConfiguration.ZrPenDyes");
}

TEST(OrbCSPartialStatusTest, WithoutASetEverythingIsTold) {
    EXPECT_TRUE(OrbCSPartialStatus::isTold(std::nullopt, "LinTable"));
}

TEST(OrbCSPartialStatusTest, AKeyTellsAllOfItsPartsAndAPartOnlyItself) {
    const std::optional<OrbCSToldEntries> key = OrbCSToldEntries{"DeviceAccessories"};
    EXPECT_TRUE(OrbCSPartialStatus::isTold(key, "DeviceAccessories"));
    EXPECT_TRUE(OrbCSPartialStatus::isTold(key, "DeviceAccessories.Duplexer"));
    EXPECT_FALSE(OrbCSPartialStatus::isTold(key, "DeviceAccessoriesDuplexer"));
    EXPECT_FALSE(OrbCSPartialStatus::isTold(key, "LinTable"));
    const std::optional<OrbCSToldEntries> part = OrbCSToldEntries{"DeviceAccessories.Duplexer"};
    EXPECT_TRUE(OrbCSPartialStatus::isTold(part, "DeviceAccessories.Duplexer"));
    EXPECT_FALSE(OrbCSPartialStatus::isTold(part, "DeviceAccessories.Tray2"));
    EXPECT_FALSE(OrbCSPartialStatus::isTold(part, "DeviceAccessories"));
}

TEST(OrbCSPartialStatusTest, InAnEmptySetNothingIsTold) {
    EXPECT_FALSE(OrbCSPartialStatus::isTold(OrbCSToldEntries(), "LinTable"));
    EXPECT_FALSE(OrbCSPartialStatus::isTold(OrbCSToldEntries(), ""));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
