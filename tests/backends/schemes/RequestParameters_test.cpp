#include "backends/schemes/RequestParameters.h"

#include <gtest/gtest.h>

#include <string>

namespace TkPPDUpdating::Testing {
namespace {

using std::chrono::milliseconds;

TEST(RequestParameters, TheShortestOfTheLimitsOfTimeCounts) {
    const milliseconds usual(15000);
    const milliseconds filter(3000);
    EXPECT_EQ(requestTime(nullptr, usual, filter), usual);
    OrbDictionary parameters;
    EXPECT_EQ(requestTime(&parameters, usual, filter), usual);
    parameters[std::string(kTkCSTimeLimitKey)] = milliseconds(5000);
    EXPECT_EQ(requestTime(&parameters, usual, filter), milliseconds(5000));
    parameters[std::string(kTkCSIsCUPSFilterModeKey)] = true;
    EXPECT_EQ(requestTime(&parameters, usual, filter), filter);
    parameters[std::string(kTkCSTimeLimitKey)] = milliseconds(100);
    EXPECT_EQ(requestTime(&parameters, usual, filter), milliseconds(100));
}

TEST(RequestParameters, AParameterOfAnotherTypeIsNone) {
    const OrbDictionary parameters = {{std::string(kTkCSTimeLimitKey), 5},
                                      {std::string(kTkCSIsCUPSFilterModeKey), 1}};
    EXPECT_EQ(requestTime(&parameters, milliseconds(15), milliseconds(3)), milliseconds(15));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
