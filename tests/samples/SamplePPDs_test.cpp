// The sample PPDs as files: their form, their languages, and what they offer to the updaters.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "ppd/OrbPPDProcessor.h"
#include "tests/samples/SamplePrinters.h"
#include "tests/support/RunProgram.h"

namespace TkPPDUpdating::Testing {
namespace {

using std::filesystem::path;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAreArray;
using Names = std::vector<std::string>;

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

Names namesIn(const std::string& folder) {
    Names names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

class SamplePPD : public ::testing::TestWithParam<std::string> {
  protected:
    const std::string path_ = PPDPathOf(GetParam());
    const std::string text_ = textOfFile(path_);
    const std::shared_ptr<const PPDModelFile> file_ = PPDModelFile::fileWithContentsOfFile(path_);

    /// The value of the first attribute of that name.
    std::string valueOf(std::string_view keyword) const {
        const auto attributes = file_->attributesForName(keyword);
        return attributes.empty() ? "no attribute"
                                  : std::string(attributes.front()->value().value_or("nothing"));
    }
};

TEST_P(SamplePPD, HasNoErrorForCupstestppdAndNoWarningButTheOneOnPurpose) {
    const std::map<std::string, std::string> warnings = {
        {"zr-inkjet", "ZrPenConfig shares a common prefix with ZrPenConfigOptions"},
        {"zr-office", "Duplex shares a common prefix with DuplexUnitFan"}};
    const ProgramResult result = runProgram({"cupstestppd", path_});
    EXPECT_EQ(result.exitStatus, 0);
    Names found;
    for (const std::string& line : linesOf(result.standardOutput)) {
        EXPECT_EQ(line.find("FAIL"), std::string::npos) << line;
        const std::size_t warning = line.find("WARN");
        if (warning != std::string::npos) {
            found.push_back(line.substr(line.find_first_not_of(' ', warning + 4)));
        }
    }
    const auto expected = warnings.find(GetParam());
    EXPECT_EQ(found, expected == warnings.end() ? Names{} : Names{expected->second});
}

TEST_P(SamplePPD, HasLinesOfPPDLengthThatEndInALineFeed) {
    ASSERT_TRUE(text_.ends_with("\n")) << "or it is not UTF-8";
    EXPECT_EQ(text_.find('\r'), std::string::npos);
    for (const std::string& line : linesOf(text_)) {
        EXPECT_LT(line.size(), 256U) << line;
        EXPECT_NE(line, "");
    }
}

TEST_P(SamplePPD, NamesFiveLanguages) {
    OrbPPDProcessor processor;
    processor.setContent(makePPDText(text_));
    EXPECT_THAT(processor.localizations(), ElementsAre("en", "de", "fr", "es", "ja"));
}

/// "PageSize A4" of a line "*PageSize A4/Text: ...", "Translation PageSize" of "*OpenUI
/// *PageSize/Text: ...", "Translation General" of "*OpenGroup: General/Text"; empty for a line
/// without a text to translate.
std::string translatedNameOf(const std::string& line) {
    const std::size_t slash = line.find('/');
    const std::size_t quote = line.find('"');
    if (slash == std::string::npos || slash > quote || line.starts_with("*%") ||
        line.substr(0, slash).find('.') == 3) {
        return {};
    }
    std::string name = line.substr(1, slash - 1);
    for (const std::string_view opening : {"OpenUI *", "OpenGroup: "}) {
        if (name.starts_with(opening)) {
            return "Translation " + name.substr(opening.size());
        }
    }
    return name;
}

TEST_P(SamplePPD, HasEachTextInEachLanguageRightBehindIt) {
    // Counted in the sources: groups, options, choices, each size four times, categories.
    const std::map<std::string, std::size_t> expected = {
        {"zr-compact", 38}, {"zr-inkjet", 49}, {"zr-office", 50}};
    const auto lines = linesOf(text_);
    std::size_t texts = 0;
    for (std::size_t i = 0; i + 4 < lines.size(); ++i) {
        const std::string name = translatedNameOf(lines[i]);
        if (name.empty()) {
            continue;
        }
        ++texts;
        std::size_t next = i;
        for (const std::string language : {"de", "fr", "es", "ja"}) {
            const std::string& line = lines[++next];
            const std::string start =
                std::string("*").append(language).append(".").append(name).append("/");
            EXPECT_TRUE(line.starts_with(start)) << line << " is not " << start;
            EXPECT_TRUE(line.ends_with(": \"\"")) << line;
            const std::size_t length =
                line.size() - start.size() - std::string_view(": \"\"").size();
            EXPECT_GT(length, 0U) << line;
            EXPECT_LT(length, 80U) << line;
        }
    }
    EXPECT_EQ(texts, expected.at(GetParam()));
}

TEST_P(SamplePPD, HasAChoiceWithATextForEachPageSizeKeywordOfLetterAndA4) {
    for (const std::string keyword :
         {"PageSize", "PageRegion", "ImageableArea", "PaperDimension"}) {
        EXPECT_NE(text_.find("\n*" + keyword + " Letter/US Letter: "), std::string::npos);
        EXPECT_NE(text_.find("\n*" + keyword + " A4/A4: "), std::string::npos);
        EXPECT_NE(text_.find("\n*Default" + keyword + ": Letter\n"), std::string::npos);
    }
}

TEST_P(SamplePPD, AppliesToTheUpdatersItIsMadeFor) {
    const std::map<std::string, Names> expected = {
        {"zr-inkjet",
         {"OrbPPDCustomMediaUpdater", "OrbPPDDefaultPageSizeUpdater",
          "OrbPPDDuplexerInstalledUpdater", "OrbPPDEstimatedPagesUpdater", "OrbPPDLinTablesUpdater",
          "OrbPPDLowerTrayInstalledUpdater", "OrbPPDMaxResolutionUpdater", "OrbPPDPenConfigUpdater",
          "OrbPPDPensConfigAdditionalInfoUpdater", "OrbPPDPensConfigCSLInfoUpdater",
          "OrbPPDPensConfigFamilyIDUpdater", "OrbPPDPensConfigNameUpdater"}},
        {"zr-office",
         {"OrbPPDDefaultPageSizeUpdater", "OrbPPDDeviceCapabilitiesUpdater",
          "OrbPPDEstimatedPagesUpdater", "OrbPPDLowerTrayInstalledUpdater",
          "OrbPPDMaxResolutionUpdater"}},
        {"zr-compact",
         {"OrbPPDDefaultPageSizeUpdater", "OrbPPDLinTablesUpdater",
          "OrbPPDNonInstallableDuplexUpdater"}}};
    const SampleWorld world;
    const OrbPPDConcreteUpdatingManager manager;
    Names applicable;
    for (const OrbClass* const updaterClass : manager.registeredClasses()) {
        if (updaterClass->newInstance()->isApplicableForPPDFile(file_.get())) {
            applicable.emplace_back(updaterClass->name());
        }
    }
    EXPECT_THAT(applicable, UnorderedElementsAreArray(expected.at(GetParam())));
}

TEST_P(SamplePPD, IsMadeForACUPSVersionOfItsOwn) {
    const std::map<std::string, std::string> expected = {
        {"zr-compact", "1.5"}, {"zr-inkjet", "2.4"}, {"zr-office", "2.2"}};
    EXPECT_EQ(valueOf("cupsVersion"), expected.at(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Samples, SamplePPD, ::testing::ValuesIn(samplePrinters()),
                         [](const auto& each) { return each.param.substr(3); });

TEST(SampleFolder, HoldsTheSamplesAndNothingElse) {
    Names PPDs;
    Names recordings;
    for (const auto& [printer, states] : sampleStates()) {
        PPDs.push_back(path(PPDPathOf(printer)).filename().string());
        for (const std::string& state : states) {
            recordings.push_back(path(recordingPathOf(printer, state)).filename().string());
        }
    }
    EXPECT_THAT(namesIn(kSamplesFolder + "/ppd"), UnorderedElementsAreArray(PPDs));
    EXPECT_THAT(namesIn(kSamplesFolder + "/status"), UnorderedElementsAreArray(recordings));
}

struct Vendor {
    const char* printer;
    const char* keyword;
    const char* value;
};

class SampleAttribute : public ::testing::TestWithParam<Vendor> {};

TEST_P(SampleAttribute, HasTheValueThatAnUpdaterStartsFrom) {
    const auto file = PPDModelFile::fileWithContentsOfFile(PPDPathOf(GetParam().printer));
    ASSERT_TRUE(file);
    const auto attributes = file->attributesForName(GetParam().keyword);
    ASSERT_EQ(attributes.size(), 1U);
    EXPECT_EQ(attributes.front()->value(), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Samples, SampleAttribute,
    ::testing::Values(Vendor{"zr-inkjet", "ZrLowerTrayHasSensor", "True"},
                      Vendor{"zr-inkjet", "ZrCustomMediaSupported", "True"},
                      Vendor{"zr-inkjet", "ZrEPRInfoSupported", "True"},
                      Vendor{"zr-inkjet", "BPECalibrationDue", "False"},
                      Vendor{"zr-inkjet", "ZrMaxSupportedResolution", "600"},
                      Vendor{"zr-office", "ZrDeviceCapabilities", "Undetected"},
                      Vendor{"zr-office", "ZrAutoDuplexCapability", "Unknown"},
                      Vendor{"zr-office", "ZrMaxSupportedResolution", "600"},
                      Vendor{"zr-compact", "ZrNonInstallableDuplex", "Unknown"}),
    [](const auto& each) {
        return std::string(each.param.printer).substr(3) + each.param.keyword;
    });

TEST(SampleInkjet, HasTheTenPenAttributes) {
    const auto file = PPDModelFile::fileWithContentsOfFile(PPDPathOf("zr-inkjet"));
    ASSERT_TRUE(file);
    for (const std::string_view keyword :
         {kTkCSPPDPensConfigNameKey, kTkCSPPDPenDyesKey, kTkCSPPDPenDropVolumesKey,
          kTkCSPPDPenEverydayStatusKey, kTkCSPPDPenFamilyIDsKey, kTkCSPPDPenActualDropVolumesKey,
          kTkCSPPDPenNominalDropVolumesKey, kTkCSPPDPenBriskDropVolumesKey,
          kTkCSPPDPenInkSufficientKey, kTkCSPPDPenHasPrintheadDefectKey}) {
        EXPECT_EQ(file->attributesForName(keyword).size(), 1U) << keyword;
    }
}

TEST(SampleInkjet, OffersTheSamePensInBothPenOptions) {
    const auto file = PPDModelFile::fileWithContentsOfFile(PPDPathOf("zr-inkjet"));
    ASSERT_TRUE(file);
    for (const char* const pens : {"FourPens", "SixPens", "PhotoPens", "BlackPen"}) {
        for (const char* const name : {"ZrPenConfig", "ZrPenConfigOptions"}) {
            const OrbPPDOption* const option = file->optionForName(name);
            ASSERT_TRUE(option) << name;
            EXPECT_TRUE(option->choiceForName(pens)) << name << " " << pens;
        }
    }
}

TEST(SampleInkjet, HasTheTwoLinesBeforeWhichCustomMediaGo) {
    const std::string text = textOfFile(PPDPathOf("zr-inkjet"));
    EXPECT_NE(text.find("\n*CloseUI: *MediaType\n"), std::string::npos);
    EXPECT_NE(text.find("\n*CloseUI: *ZrICCProfileId2\n"), std::string::npos);
}

TEST(SampleInkjet, GivesEachBuiltInMediaTypeItsPropertiesAndACategory) {
    const auto file = PPDModelFile::fileWithContentsOfFile(PPDPathOf("zr-inkjet"));
    ASSERT_TRUE(file);
    std::string categories;
    for (const char* const category : {"plain", "photo", "film"}) {
        const auto found = file->attributesForName_spec("ZrMediaTypeCategory", category);
        ASSERT_EQ(found.size(), 1U) << category;
        categories.append(" ").append(found.front()->value().value_or("")).append(" ");
    }
    for (const std::string type :
         {"Plain", "Bright", "PhotoGlossy", "PhotoMatte", "Transparency"}) {
        EXPECT_TRUE(file->optionForName("MediaType")->choiceForName(type)) << type;
        EXPECT_EQ(file->attributesForName_spec("ZrChoiceProperties", "MediaType." + type).size(),
                  1U)
            << type;
        EXPECT_NE(categories.find(" " + type + " "), std::string::npos) << type;
    }
}

TEST(SampleOffice, HasNoDuplexerOptionUntilAnUpdaterAppendsIt) {
    const auto file = PPDModelFile::fileWithContentsOfFile(PPDPathOf("zr-office"));
    ASSERT_TRUE(file);
    EXPECT_FALSE(file->optionForName("ZrAutoDuplexerInstalled"));
    EXPECT_TRUE(file->optionForName("ZrLowerTrayInstalled"));
}

TEST(SampleOffice, HasConstraintsOfDuplexAndOfAnOptionThatMerelyBeginsSo) {
    std::size_t ofDuplex = 0;
    std::size_t ofDuplexUnitFan = 0;
    std::size_t comments = 0;
    for (const std::string& line : linesOf(textOfFile(PPDPathOf("zr-office")))) {
        const bool isConstraint = line.starts_with("*UIConstraints:");
        ofDuplex += isConstraint && line.find("*Duplex ") != std::string::npos;
        ofDuplexUnitFan += isConstraint && line.find("*DuplexUnitFan ") != std::string::npos;
        comments += line.starts_with("*% Duplex <-> ");
    }
    // The source has 16 and 2, each of which ppdc writes in both directions.
    EXPECT_EQ(ofDuplex, 32U);
    EXPECT_EQ(ofDuplexUnitFan, 4U);
    EXPECT_EQ(comments, 5U);
}

TEST(SampleCompact, HasPageSizesForTwoSidedUse) {
    const auto file = PPDModelFile::fileWithContentsOfFile(PPDPathOf("zr-compact"));
    ASSERT_TRUE(file);
    for (const char* const size : {"A4.ZrDuplex", "Letter.ZrDuplex"}) {
        EXPECT_TRUE(file->pageSizeForName(size)) << size;
        for (const std::string prefix : {"", "de.", "fr.", "es.", "ja."}) {
            for (const std::string keyword :
                 {"PageSize", "PageRegion", "ImageableArea", "PaperDimension"}) {
                EXPECT_EQ(file->attributesForName_spec(prefix + keyword, size).size(), 1U)
                    << prefix << keyword << " " << size;
            }
        }
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
