#include "tools/RunFacts.h"

#include <gtest/gtest.h>

#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

TEST(RunFacts, TheTimeIsUTCToTheSecond) {
    const CoreInterfaceScope scope;
    const std::vector<std::pair<double, std::string>> table = {
        {0, "2001-01-01T00:00:00Z"},
        {252532800.9, "2009-01-01T20:00:00Z"},
        {-0.5, "2000-12-31T23:59:59Z"},
        {86400.0 * 59, "2001-03-01T00:00:00Z"},
    };
    for (const auto& [seconds, text] : table) {
        OrbCoreInterface::setClock(std::make_shared<const FakeClock>(seconds));
        EXPECT_EQ(timestampNow(), text) << seconds;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
