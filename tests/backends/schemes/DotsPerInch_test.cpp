#include "backends/schemes/DotsPerInch.h"

#include <gtest/gtest.h>

#include <map>

namespace TkPPDUpdating::Testing {
namespace {

TEST(DotsPerInch, AMultipleOfFiftyIsFoundAgain) {
    for (std::int64_t resolution = 50; resolution <= 100'000; resolution += 50) {
        const std::int64_t perCentimetre = (resolution * 100 + 127) / 254;
        EXPECT_EQ(dotsPerInchFromCentimetre(perCentimetre), resolution);
    }
}

TEST(DotsPerInch, OtherNumbersBecomeTheNearest) {
    const std::map<std::int64_t, std::int64_t> cases = {{1, 3},     {10, 25},   {80, 203},
                                                        {120, 305}, {160, 406}, {240, 610}};
    for (const auto& [perCentimetre, perInch] : cases) {
        EXPECT_EQ(dotsPerInchFromCentimetre(perCentimetre), perInch) << perCentimetre;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
