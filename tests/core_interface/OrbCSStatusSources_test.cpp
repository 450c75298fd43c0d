#include "core_interface/OrbCSStatusSources.h"

#include <gmock/gmock.h>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const OrbCSStatusSource kSides = {"DeviceAccessories.Duplexer", "sides-supported", "one-sided"};
const OrbCSStatusSource kTrays = {"DeviceAccessories.Tray2", "media-source-supported", "main"};
const OrbCSStatusSource kMarkers = {"InstalledPensConfiguration", "marker-names", "Black"};

std::vector<OrbCSStatusSource> sourcesOf(std::string_view entry) {
    return OrbCSStatusSources::sourcesOf(
        ReportedDeviceStatus({}, {}, std::nullopt, {kSides, kTrays, kMarkers}), entry);
}

TEST(OrbCSStatusSourcesTest, AreThoseOfTheEntryItsPartsAndItsKey) {
    EXPECT_THAT(sourcesOf("DeviceAccessories.Duplexer"), ElementsAre(kSides));
    EXPECT_THAT(sourcesOf("DeviceAccessories"), ElementsAre(kSides, kTrays));
    EXPECT_THAT(sourcesOf("InstalledPensConfiguration.ZrPenDyes"), ElementsAre(kMarkers));
    EXPECT_THAT(sourcesOf("DeviceAccessories.Dup"), IsEmpty());
    EXPECT_THAT(sourcesOf("LinTable"), IsEmpty());
}

TEST(OrbCSStatusSourcesTest, AStatusThatDoesNotKnowHasNone) {
    EXPECT_THAT(OrbCSStatusSources::sourcesOf(FakeDeviceStatus(), "LinTable"), IsEmpty());
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
