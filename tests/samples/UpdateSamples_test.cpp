// Each sample printer in each of its states, from the PPD to the updated PPD.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "core_interface/OrbDictionary.h"
#include "manager/OrbClassTable.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "tests/samples/SamplePrinters.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using Texts = std::vector<std::string>;

/// The state of a printer that gives no status at all.
constexpr const char* kUnreachable = "unreachable";

std::string deviceURIOf(const std::string& printer, const std::string& state) {
    return "file://" + recordingPathOf(printer, state);
}

std::string updated(const std::string& path, const std::string& deviceURI) {
    const PPDText text =
        OrbPPDConcreteUpdatingManager().updatedPPDContentsForFile_deviceURI(path, deviceURI);
    return text ? *text : "no text";
}

struct SampleRun {
    std::string printer;
    std::string state;
    /// Lines that the result has and those that it has not (parts of lines where no line feed
    /// stands), beside what every result has.
    Texts present;
    Texts absent;
};

void PrintTo(const SampleRun& run, std::ostream* stream) {
    *stream << run.printer << " " << run.state;
}

const Texts kOfficeWithDuplex = {"\n*ZrDeviceCapabilities: Detected\n",
                                 "\n*ZrAutoDuplexCapability: True\n",
                                 "\n*OpenGroup: ZrTwoSidedPrinting/",
                                 "\n*UIConstraints: *Duplex DuplexTumble *MediaType Labels\n",
                                 "\n*OpenUI *ZrAutoDuplexerInstalled/",
                                 "\n*DefaultZrAutoDuplexerInstalled: True\n",
                                 "\n*ja.ZrAutoDuplexerInstalled True/"};

const Texts kNoTraceOfDuplex = {"*Duplex ",           "*Duplex\n",
                                "*Duplex:",           "*Duplex/",
                                ".Duplex ",           "*DefaultDuplex:",
                                "ZrTwoSidedPrinting", ".ZrDuplex",
                                "% Duplex <->",       "ZrAutoDuplexerInstalled"};

const Texts kBlankPens = {"\n*ZrPensConfigName: \n",        "\n*ZrPenDyes: \n",
                          "\n*ZrPenDropVolumes: \n",        "\n*ZrPenEverydayStatus: \n",
                          "\n*ZrPenFamilyIDs: \n",          "\n*ZrPenActualDropVolumes: \n",
                          "\n*ZrPenNominalDropVolumes: \n", "\n*ZrPenBriskDropVolumes: \n",
                          "\n*ZrPenInkSufficient: \n",      "\n*ZrPenHasPrintheadDefect: \n"};

Texts operator+(Texts left, const Texts& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

const std::vector<SampleRun> kRuns = {
    {"zr-inkjet",
     "all",
     {"\n*DefaultZrAutoDuplexerInstalled: True\n",
      "\n*DefaultZrLowerTrayInstalled: True\n",
      "\n*DefaultZrPenConfig: SixPens\n",
      "\n*DefaultZrPenConfigOptions: SixPens\n",
      "\n*BPECalibrationDue: False\n",
      "\n*ZrMaxSupportedResolution: 1200\n",
      "\n*ZrEPRInfoSupported: True\n",
      "\n*ZrEPRPageTypes: Text,Photo\n",
      "\n*ZrEPRMinPageCounts: 150,40\n",
      "\n*ZrEPRMaxPageCounts: 300,90\n",
      "\n*ZrEPRStates: 0,1\n",
      "\n*ZrEPRLastUpdate: 252532800\n",
      "\n*ZrPensConfigName: SixPens\n",
      "\n*ZrPenDyes: C,M,Y,K,c,m\n",
      "\n*ZrPenFamilyIDs: 40,40,40,41,42,42\n",
      "\n*ZrPenHasPrintheadDefect: 0,0,0,0,0,1\n",
      "\n*MediaType custom1/Glossy Brochure: \"<</MediaType(custom1)>>setpagedevice\"\n",
      "\n*MediaType custom2: \"<</MediaType(custom2)>>setpagedevice\"\n",
      "\n*ja.MediaType custom2/Büttenpapier: \"\"\n",
      "\n*cupsICCProfile ..zrgloss/gloss: \"/usr/share/color/icc/zr/gloss.icc\"\n",
      "\n*cupsICCProfile ..41/fine canvas: \"/usr/share/color/icc/zr/fine canvas.icc\"\n",
      "\n*ZrICCProfileId2 41/fine canvas: \"\"\n",
      "\n*ZrChoiceProperties MediaType.custom2: \"MediaID=1202;ParentMediaID=1;\"\n",
      "\n*ZrMediaTypeCategory custom/Custom: \"custom1 custom2 custom3\"\n"},
     {}},
    {"zr-inkjet",
     "none",
     {"\n*DefaultZrAutoDuplexerInstalled: False\n", "\n*DefaultZrLowerTrayInstalled: False\n",
      "\n*DefaultZrPenConfig: BlackPen\n", "\n*DefaultZrPenConfigOptions: BlackPen\n",
      "\n*BPECalibrationDue: True\n", "\n*ZrMaxSupportedResolution: 600\n",
      "\n*ZrEPRPageTypes: Text\n", "\n*ZrEPRMinPageCounts: 5\n", "\n*ZrPenDyes: K\n"},
     {"custom"}},
    {"zr-inkjet",
     "calibrated",
     {"\n*BPECalibrationDue: False\n", "\n*DefaultZrAutoDuplexerInstalled: True\n",
      "\n*DefaultZrLowerTrayInstalled: False\n", "\n*DefaultZrPenConfig: FourPens\n",
      "\n*ZrEPRLastUpdate: 0\n"},
     {}},
    {"zr-inkjet",
     "uncalibrated",
     {"\n*BPECalibrationDue: True\n", "\n*DefaultZrAutoDuplexerInstalled: True\n"},
     {}},
    {"zr-inkjet",
     "silent",
     Texts{"\n*BPECalibrationDue: True\n", "\n*ZrMaxSupportedResolution: 600\n",
           "\n*ZrEPRLastUpdate: 0\n", "\n*DefaultZrAutoDuplexerInstalled: False\n",
           "\n*DefaultZrPenConfig: FourPens\n"} +
         kBlankPens,
     {}},
    {"zr-inkjet",
     kUnreachable,
     {"\n*BPECalibrationDue: False\n", "\n*ZrPenDyes: C,M,Y,K\n",
      "\n*DefaultZrAutoDuplexerInstalled: False\n", "\n*ZrMaxSupportedResolution: 600\n"},
     {}},
    {"zr-office",
     "all",
     kOfficeWithDuplex + Texts{"\n*DefaultZrLowerTrayInstalled: True\n",
                               "\n*ZrMaxSupportedResolution: 1200\n",
                               "\n*ZrEPRMinPageCounts: 1800\n"},
     {}},
    {"zr-office",
     "none",
     {"\n*ZrDeviceCapabilities: Detected\n", "\n*ZrAutoDuplexCapability: False\n",
      "\n*DefaultZrLowerTrayInstalled: False\n",
      "\n*UIConstraints: *DuplexUnitFan Quiet *MediaType Thick\n",
      "\n*% DuplexUnitFan <-> MediaType\n",
      "\n*UIConstraints: *InputSlot Lower *MediaType Labels\n", "\n*OpenUI *DuplexUnitFan/"},
     kNoTraceOfDuplex},
    {"zr-office", "silent", kOfficeWithDuplex + Texts{"\n*ZrMaxSupportedResolution: 600\n"}, {}},
    {"zr-office", kUnreachable, kOfficeWithDuplex, {}},
    {"zr-compact",
     "all",
     {"\n*ZrNonInstallableDuplex: Installed\n", "\n*BPECalibrationDue: False\n",
      "\n*OpenGroup: ZrTwoSidedPrinting/", "\n*PageSize A4.ZrDuplex/",
      "\n*UIConstraints: *Duplex DuplexTumble *MediaType Thick\n"},
     {"ZrAutoDuplexerInstalled"}},
    {"zr-compact",
     "none",
     {"\n*ZrNonInstallableDuplex: Not Installed\n", "\n*BPECalibrationDue: True\n",
      "\n*PageSize A5/", "\n*UIConstraints: *cupsPrintQuality Draft *MediaType PhotoGlossy\n"},
     kNoTraceOfDuplex},
    {"zr-compact",
     "silent",
     {"\n*ZrNonInstallableDuplex: Not Detected\n", "\n*BPECalibrationDue: True\n",
      "\n*OpenGroup: ZrTwoSidedPrinting/", "\n*PageSize A4.ZrDuplex/",
      "\n*OpenUI *ZrAutoDuplexerInstalled/", "\n*DefaultZrAutoDuplexerInstalled: False\n"},
     {}},
    {"zr-compact",
     kUnreachable,
     {"\n*ZrNonInstallableDuplex: Not Detected\n", "\n*BPECalibrationDue: False\n",
      "\n*OpenUI *ZrAutoDuplexerInstalled/"},
     {}},
};

class UpdatedSample : public ::testing::TestWithParam<SampleRun> {
  protected:
    const SampleWorld world_;
    const std::string deviceURI_ = deviceURIOf(GetParam().printer, GetParam().state);
    const std::string text_ = updated(PPDPathOf(GetParam().printer), deviceURI_);
};

TEST_P(UpdatedSample, FollowsItsPrinterAndItsUser) {
    for (const std::string keyword :
         {"PageSize", "PageRegion", "ImageableArea", "PaperDimension"}) {
        EXPECT_THAT(text_, HasSubstr("\n*Default" + keyword + ": A4\n"));
    }
    for (const std::string& line : GetParam().present) {
        EXPECT_THAT(text_, HasSubstr(line));
    }
    for (const std::string& part : GetParam().absent) {
        EXPECT_THAT(text_, Not(HasSubstr(part)));
    }
}

TEST_P(UpdatedSample, HasNoErrorForCupstestppd) {
    ProgramSurroundings surroundings;
    surroundings.standardInput = text_;
    const ProgramResult result = runProgram({"cupstestppd", "-"}, surroundings);
    std::istringstream lines(result.standardOutput);
    bool failsAllowed = false;
    for (std::string line; std::getline(lines, line);) {
        // The profiles of the recording name files that no system has.
        const bool isMissingProfile =
            line.find("Missing cupsICCProfile file \"/usr/share/color/icc/zr/") !=
            std::string::npos;
        failsAllowed = failsAllowed || isMissingProfile;
        EXPECT_TRUE(line.find("**FAIL**") == std::string::npos || isMissingProfile) << line;
    }
    EXPECT_EQ(failsAllowed, GetParam().printer == "zr-inkjet" && GetParam().state == "all");
    EXPECT_EQ(result.exitStatus, failsAllowed ? 4 : 0) << result.standardOutput;
}

TEST_P(UpdatedSample, StaysAsItIsWhenItIsUpdatedAgain) {
    const TemporaryDirectory folder;
    EXPECT_EQ(updated(folder.write("again.ppd", text_), deviceURI_), text_);
}

TEST_P(UpdatedSample, IsTheSameButForLineEndsAndTheBlockWhenThePPDEndsItsLinesTheWindowsWay) {
    std::string windows;
    for (const char character : textOfFile(PPDPathOf(GetParam().printer))) {
        windows += character == '\n' ? "\r\n" : std::string(1, character);
    }
    const TemporaryDirectory folder;
    std::string result = updated(folder.write("windows.ppd", windows), deviceURI_);
    EXPECT_THAT(result, HasSubstr("\r\n"));
    std::erase(result, '\r');
    // A carriage return belongs to an unquoted value, and there is no block for the CUPS version
    // that ends in one. What is appended follows an empty line, the only one of the text.
    const std::size_t emptyLine = text_.find("\n\n");
    EXPECT_EQ(result, emptyLine == std::string::npos ? text_ : text_.substr(0, emptyLine + 1));
}

INSTANTIATE_TEST_SUITE_P(Samples, UpdatedSample, ::testing::ValuesIn(kRuns), [](const auto& each) {
    return each.param.printer.substr(3) + "_" + each.param.state;
});

/// The classes for which the samples are made.
constexpr const char* kSampledUpdaters[] = {
    "OrbPPDDefaultPageSizeUpdater",      "OrbPPDDuplexerInstalledUpdater",
    "OrbPPDLowerTrayInstalledUpdater",   "OrbPPDPenConfigUpdater",
    "OrbPPDEstimatedPagesUpdater",       "OrbPPDLinTablesUpdater",
    "OrbPPDMaxResolutionUpdater",        "OrbPPDPensConfigAdditionalInfoUpdater",
    "OrbPPDPensConfigCSLInfoUpdater",    "OrbPPDPensConfigFamilyIDUpdater",
    "OrbPPDPensConfigNameUpdater",       "OrbPPDDeviceCapabilitiesUpdater",
    "OrbPPDNonInstallableDuplexUpdater", "OrbPPDCustomMediaUpdater",
};

class UpdaterOfSamples : public ::testing::TestWithParam<const char*> {};

TEST_P(UpdaterOfSamples, ChangesOneOfThem) {
    const SampleWorld world;
    const OrbClass* const updaterClass = OrbClassFromName(GetParam());
    ASSERT_NE(updaterClass, nullptr);
    std::size_t changed = 0;
    for (const auto& [printer, states] : sampleStates()) {
        const PPDText before = PPDTextWithContentsOfFile(PPDPathOf(printer));
        const auto file = OrbPPDFile::PPDFileWithContentsOfFile(PPDPathOf(printer));
        for (const std::string& state : states) {
            const auto updater = updaterClass->newInstance();
            OrbDictionary context;
            if (!updater->isApplicableForPPDFile(file.get())) {
                continue;
            }
            const PPDText after = updater->updatedPPDContentsForContents_deviceURI_context(
                before, deviceURIOf(printer, state), &context);
            changed += after && *after != *before ? 1U : 0U;
        }
    }
    EXPECT_GT(changed, 0U);
}

INSTANTIATE_TEST_SUITE_P(Samples, UpdaterOfSamples, ::testing::ValuesIn(kSampledUpdaters),
                         [](const auto& each) { return std::string(each.param); });

}  // namespace
}  // namespace TkPPDUpdating::Testing
