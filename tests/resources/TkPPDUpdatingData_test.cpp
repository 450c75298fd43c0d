// The property list that is shipped: its blocks, and its expression for duplex-only page sizes.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include "backends/ppdmodel/PPDModelFile.h"
#include "resources/PropertyListReader.h"
#include "tests/updaters/capabilities/CapabilitiesTestSupport.h"
#include "updaters/capabilities/OrbPPDDeviceCapabilitiesUpdater.h"
#include "updaters/capabilities/OrbPPDNonInstallableDuplexUpdater.h"
#include "updaters/default_choice/OrbPPDDuplexerInstalledUpdater.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr const char* kPropertyList = TKPPDUPDATING_SOURCE_DIR "/resources/TkPPDUpdatingData.plist";
constexpr std::string_view kOption = "ZrAutoDuplexerInstalled";

/// The releases of CUPS whose PPDs may need a block.
constexpr const char* kVersions[] = {"1.1", "1.2", "1.3", "1.4", "1.5", "1.6",
                                     "1.7", "2.0", "2.1", "2.2", "2.3", "2.4"};

std::optional<std::string> deviceBlock(const std::string& version) {
    return OrbPPDDeviceCapabilitiesUpdater().insertingStringForCUPSVersion(version);
}

std::optional<std::string> nonInstallableBlock(const std::string& version) {
    return OrbPPDNonInstallableDuplexUpdater().insertingStringForCUPSVersion(version);
}

std::shared_ptr<const PPDModelFile> PPDFileWith(const std::string& block) {
    return PPDModelFile::fileWithText(makePPDText("*PPD-Adobe: \"4.3\"\n" + block));
}

class Block : public testing::TestWithParam<const char*> {
  protected:
    static void expectOption(const std::string& block, std::string_view defaultChoice) {
        EXPECT_EQ(block.back(), '\n');
        const auto file = PPDFileWith(block);
        ASSERT_TRUE(file);
        const OrbPPDOption* const option = file->optionForName(kOption);
        ASSERT_TRUE(option);
        EXPECT_EQ(option->defaultChoiceName(), defaultChoice);
        EXPECT_TRUE(option->choiceForName("True"));
        EXPECT_TRUE(option->choiceForName("False"));
    }

    /// The block after the next run, with a device that has that state.
    static std::string afterNextRun(const std::string& block, bool isInstalled) {
        const auto device = DeviceScope::withDuplexer(isInstalled);
        OrbPPDDuplexerInstalledUpdater updater;
        EXPECT_TRUE(updater.isApplicableForPPDFile(PPDFileWith(block).get()));
        OrbDictionary context;
        const PPDText updated = updater.updatedPPDContentsForContents_deviceURI_context(
            makePPDText("\n" + block), "test:", &context);
        return updated ? updated->substr(1) : "no update";
    }
};

TEST_P(Block, OfTheDeviceCapabilitiesUpdaterTakesTheDuplexerForInstalled) {
    const auto block = deviceBlock(GetParam());
    ASSERT_TRUE(block);
    expectOption(*block, "True");
}

TEST_P(Block, OfTheNonInstallableDuplexUpdaterTakesTheDuplexerForMissing) {
    const auto block = nonInstallableBlock(GetParam());
    ASSERT_TRUE(block);
    expectOption(*block, "False");
}

TEST_P(Block, IsSettledByTheDuplexerInstalledUpdaterOnTheNextRun) {
    // The two blocks differ in their default alone, so each settles into the other.
    const std::string installed = deviceBlock(GetParam()).value_or("");
    const std::string missing = nonInstallableBlock(GetParam()).value_or("");
    EXPECT_EQ(afterNextRun(installed, true), installed);
    EXPECT_EQ(afterNextRun(installed, false), missing);
    EXPECT_EQ(afterNextRun(missing, true), installed);
    EXPECT_EQ(afterNextRun(missing, false), missing);
}

TEST_P(Block, HasLanguageLinesSinceCUPS12) {
    const std::string version = GetParam();
    const std::string block = deviceBlock(version).value_or("");
    for (const char* const language : {"de", "fr", "es", "ja"}) {
        const std::string line = std::string("\n*") + language + ".ZrAutoDuplexerInstalled True/";
        EXPECT_EQ(block.find(line) != std::string::npos, version != "1.1") << language;
    }
    // All later versions have one block, each in a copy of its own.
    EXPECT_EQ(block == deviceBlock("2.4"), version != "1.1");
}

TEST_P(Block, FitsTheLimitsOfPPDs) {
    std::istringstream lines(deviceBlock(GetParam()).value_or("") +
                             nonInstallableBlock(GetParam()).value_or(""));
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LT(line.size(), 256U) << line;
        const std::size_t slash = line.find('/');
        const std::size_t colon = line.rfind(':');
        if (slash != std::string::npos && colon > slash) {
            EXPECT_LT(colon - slash - 1, 80U) << line;
        }
    }
}

TEST_P(Block, LeavesWithTheConstraintsOfDuplex) {
    const std::string block = deviceBlock(GetParam()).value_or("");
    const PPDText left =
        OrbPPDDeviceCapabilitiesUpdater::contentsForContents_byRemovingConstraintsForOptionWithName(
            makePPDText(block), "Duplex");
    EXPECT_EQ(left->find("Duplex "), std::string::npos) << *left;
    EXPECT_TRUE(left->ends_with("*CloseGroup: InstallableOptions\n")) << *left;
}

INSTANTIATE_TEST_SUITE_P(PropertyListData, Block, testing::ValuesIn(kVersions),
                         [](const auto& each) {
                             std::string name = each.param;
                             std::replace(name.begin(), name.end(), '.', '_');
                             return "CUPS_" + name;
                         });

TEST(PropertyListData, HoldsTheBlocksAndTheExpressionAndNothingElse) {
    std::string reason;
    const auto data = PropertyListReader::propertyListWithContentsOfFile(kPropertyList, &reason);
    ASSERT_TRUE(data && data->as<PropertyList::Dictionary>()) << reason;
    EXPECT_EQ(data->as<PropertyList::Dictionary>()->size(), 2 * std::size(kVersions) + 1);
}

TEST(PropertyListData, HasNoBlockForOtherVersions) {
    for (const char* const version : {"1.0", "2.5", "3.0", "2", "", "2.4 ", "(null)"}) {
        EXPECT_EQ(deviceBlock(version), std::nullopt) << version;
        EXPECT_EQ(nonInstallableBlock(version), std::nullopt) << version;
    }
}

/// Whether the shipped expression takes the line for one of a duplex-only page size.
bool isDuplexOnly(std::string_view line) {
    const PPDText text = makePPDText(std::string(line) + "\n");
    return OrbPPDNonInstallableDuplexUpdater()
        .contentsByRemovingDuplexSafePageSizesForContents(text)
        ->empty();
}

TEST(DuplexSafeExpression, TakesTheFourKindsOfLinesAndTheirLanguages) {
    for (const char* const line :
         {"*PageSize A4.ZrDuplex/A4 (Two-Sided): \"<</PageSize[595 842]>>setpagedevice\"",
          "*PageRegion Letter.ZrDuplex/US Letter: \"\"", "*ImageableArea A4.ZrDuplex: \"0 0 1 1\"",
          "*PaperDimension A4.ZrDuplex/A4: \"595 842\"", "*PageSize A4.ZrDuplex: \"\"",
          "*PageSize  A4.ZrDuplex/A4: \"\"", "*PageSize\tA4.ZrDuplex/A4: \"\"",
          "*PageSize A4.ZrDuplex : \"\"", "*PageSize A4.Rotated.ZrDuplex/A4: \"\"",
          "*PageSize A4.ZrDuplex/A4: \"\"\r", "*fr.PageSize A4.ZrDuplex/A4 (recto verso): \"\"",
          "*ja.PageSize A4.ZrDuplex/\xE4\xB8\xA1\xE9\x9D\xA2: \"\"",
          "*pt_BR.PageRegion A4.ZrDuplex/A4: \"\"", "*zh-Hant.PageSize A4.ZrDuplex/A4: \"\"",
          "*de.ImageableArea A4.ZrDuplex/A4: \"\"", "*de.PaperDimension A4.ZrDuplex/A4: \"\""}) {
        EXPECT_TRUE(isDuplexOnly(line)) << line;
    }
}

TEST(DuplexSafeExpression, TakesNothingElse) {
    for (const char* const line : {"",
                                   "*PageSize A4/A4: \"\"",
                                   "*PageSize A4/A4.ZrDuplex: \"\"",
                                   "*PageSize A4: \"A4.ZrDuplex/\"",
                                   "*PageSize A4.ZrDuplexed/A4: \"\"",
                                   "*PageSize A4ZrDuplex/A4: \"\"",
                                   "*PageSize .ZrDuplex/A4: \"\"",
                                   "*PageSize A4.zrduplex/A4: \"\"",
                                   "*PageSize A4.ZrDuplex.Rotated/A4: \"\"",
                                   "*PageSize A4 B.ZrDuplex/A4: \"\"",
                                   "*PageSize A4.ZrDuplex",
                                   "*DefaultPageSize: A4.ZrDuplex",
                                   "*PageSize: A4.ZrDuplex/",
                                   "*PageSizes A4.ZrDuplex/A4: \"\"",
                                   "*MediaType A4.ZrDuplex/A4: \"\"",
                                   "*MyPageSize A4.ZrDuplex/A4: \"\"",
                                   "*?PageSize A4.ZrDuplex/A4: \"\"",
                                   " *PageSize A4.ZrDuplex/A4: \"\"",
                                   "*%PageSize A4.ZrDuplex/A4: \"\"",
                                   "*% PageSize A4.ZrDuplex/A4",
                                   "*pagesize A4.ZrDuplex/A4: \"\"",
                                   "*UIConstraints: *PageSize A4.ZrDuplex *InputSlot Lower",
                                   "*cupsUIConstraints x: \"*PageSize A4.ZrDuplex/\"",
                                   "*fr.Translation PageSize/A4.ZrDuplex: \"\"",
                                   "*fr.MediaType A4.ZrDuplex/A4: \"\"",
                                   "*french.PageSize A4.ZrDuplex/A4: \"\"",
                                   "*OpenUI *PageSize/A4.ZrDuplex: PickOne"}) {
        EXPECT_FALSE(isDuplexOnly(line)) << line;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
