// The programs of examples/c, run as a user would.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;

const std::string kOfficePPD = TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-office.ppd";
const std::string kOfficeStatus =
    "file:" TKPPDUPDATING_SOURCE_DIR "/samples/status/zr-office-all.json";

TEST(CExamples, UpdatePPDWritesTheUpdatedPPD) {
    const auto result = runProgram({TKPPDUPDATING_UPDATE_PPD, kOfficePPD, kOfficeStatus});
    EXPECT_EQ(result.exitStatus, 0) << result.standardError;
    EXPECT_THAT(result.standardOutput, HasSubstr("\n*DefaultZrLowerTrayInstalled: True\n"));
    // The library found its data.
    EXPECT_THAT(result.standardOutput, HasSubstr("\n*ZrAutoDuplexCapability: True\n"));
}

TEST(CExamples, UpdatePPDSaysWhatIsWrong) {
    const auto noPrinter = runProgram({TKPPDUPDATING_UPDATE_PPD, kOfficePPD, "pigeon:loft"});
    EXPECT_EQ(noPrinter.exitStatus, 1);
    EXPECT_EQ(noPrinter.standardOutput, "");
    EXPECT_EQ(noPrinter.standardError,
              "update_ppd: device URI: no backend for the scheme \"pigeon\"\n");
    const auto noPPD = runProgram({TKPPDUPDATING_UPDATE_PPD, "/no/such.ppd", kOfficeStatus});
    EXPECT_EQ(noPPD.exitStatus, 1);
    EXPECT_THAT(noPPD.standardError, HasSubstr("/no/such.ppd: "));
}

#ifdef TKPPDUPDATING_HAS_IPP_MODULE
TEST(CExamples, UpdatePPDFindsTheModulesBesideItsLibrary) {
    const auto result =
        runProgram({TKPPDUPDATING_UPDATE_PPD, kOfficePPD, "ipp://127.0.0.1:1/ipp/print"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(result.standardError, HasSubstr("it does not take a connection"));
}
#endif

TEST(CExamples, OwnUpdaterFollowsTheStapler) {
    const TemporaryDirectory directory;
    const std::string PPD =
        directory.write("stapler.ppd", "*PPD-Adobe: \"4.3\"\n*DefaultZrStapler: False\n");
    const std::string recording = directory.write(
        "status.json", R"({"DeviceAccessories": [{"name": "Stapler", "isInstalled": true}]})");
    const auto result = runProgram({TKPPDUPDATING_OWN_UPDATER, PPD, recording});
    EXPECT_EQ(result.exitStatus, 0) << result.standardError;
    EXPECT_EQ(result.standardOutput, "*PPD-Adobe: \"4.3\"\n*DefaultZrStapler: True\n");

    const std::string silent =
        directory.write("silent.json", R"({"Told": ["MaxSupportedResolution"]})");
    const auto kept = runProgram({TKPPDUPDATING_OWN_UPDATER, PPD, silent});
    EXPECT_EQ(kept.standardOutput, "*PPD-Adobe: \"4.3\"\n*DefaultZrStapler: False\n");

    const auto missing = runProgram({TKPPDUPDATING_OWN_UPDATER, PPD, "/no/such.json"});
    EXPECT_EQ(missing.exitStatus, 1);
    EXPECT_EQ(missing.standardError, "own_updater: recording: is empty\n");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
