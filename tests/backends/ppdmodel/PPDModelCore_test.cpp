#include "backends/ppdmodel/PPDModelCore.h"

#include <gtest/gtest.h>

namespace TkPPDUpdating {
namespace {

TEST(PPDModelCore, WritesTheQualifierOfASpecifierInDecimal) {
    const PPDModelCore core;
    EXPECT_EQ(core.specifierVer2WithProfileID(0)->CUPSQualifier(), "0");
    EXPECT_EQ(core.specifierVer2WithProfileID(18446744073709551615U)->CUPSQualifier(),
              "18446744073709551615");
}

}  // namespace
}  // namespace TkPPDUpdating
