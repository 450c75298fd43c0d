#include "backends/schemes/ReportedDeviceStatus.h"

#include <gtest/gtest.h>

namespace TkPPDUpdating::Testing {
namespace {

TEST(ReportedDeviceStatusTest, TellsEverythingUnlessItIsGivenWhatItTold) {
    const ReportedDeviceStatus whole({});
    EXPECT_EQ(OrbCSPartialStatus::toldEntriesOf(whole), std::nullopt);
    const ReportedDeviceStatus nothing({}, {}, OrbCSToldEntries());
    EXPECT_EQ(OrbCSPartialStatus::toldEntriesOf(nothing), OrbCSToldEntries());
    const ReportedDeviceStatus some({}, {"a phrase"}, OrbCSToldEntries{"LinTable"});
    EXPECT_EQ(OrbCSPartialStatus::toldEntriesOf(some), OrbCSToldEntries{"LinTable"});
    EXPECT_EQ(some.droppedValues(), std::vector<std::string>{"a phrase"});
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
