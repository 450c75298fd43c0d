// What CUPS itself makes of a PPD with custom media types.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/support/FileContents.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/updaters/custom_media/CustomMediaTestSupport.h"

namespace TkPPDUpdating {
namespace {

using namespace Testing;

std::string inkJetPPD() {
    return contentsOfFile(TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-inkjet.ppd");
}

class CustomMediaInCUPS : public CustomMediaTest {
  protected:
    /// Writes the sample with the media types to a file and gives its path.
    std::string written(const OrbCustomMediaTypes& types) {
        return folder_.write("result.ppd", updatedText(inkJetPPD(), types));
    }

    /// The exit status of cupstestppd over the sample with the media types, profile files left
    /// aside, and what it says.
    static ProgramResult tested(const std::string& path) {
        return runProgram({"cupstestppd", "-I", "profiles", path});
    }

    /// What libcups says of the choices of MediaType in that language.
    static std::string choices(const std::string& path, const std::string& language,
                               const std::vector<std::string>& names) {
        std::vector<std::string> command = {TKPPDUPDATING_PRINT_PPD_CHOICES, path, "MediaType"};
        command.insert(command.end(), names.begin(), names.end());
        ProgramSurroundings surroundings;
        surroundings.environment = {{"LANG", language + ".UTF-8"},
                                    {"LANGUAGE", std::nullopt},
                                    {"LC_ALL", std::nullopt},
                                    {"LC_MESSAGES", std::nullopt}};
        const ProgramResult result = runProgram(command, surroundings);
        return result.standardOutput + result.standardError;
    }

    static inline const std::vector<std::string> kLanguages = {"en_US", "de_DE", "fr_FR", "es_ES",
                                                               "ja_JP"};

  private:
    TemporaryDirectory folder_;
};

TEST_F(CustomMediaInCUPS, TheHelperSpeaksTheLanguageItIsAskedFor) {
    // Otherwise the tests below could not fail.
    const std::string path = written({});
    EXPECT_EQ(choices(path, "en_US", {"Plain", "custom1"}),
              "Plain Plain Paper\ncustom1 not found\n");
    EXPECT_EQ(choices(path, "de_DE", {"Plain"}), "Plain Normalpapier\n");
    EXPECT_EQ(choices(path, "fr_FR", {"Plain"}), "Plain Papier ordinaire\n");
    EXPECT_EQ(choices(path, "es_ES", {"Plain"}), "Plain Papel normal\n");
    EXPECT_EQ(choices(path, "ja_JP", {"Plain"}), "Plain 普通紙\n");
}

TEST_F(CustomMediaInCUPS, EveryCustomChoiceIsFoundWithItsTextInEachLanguage) {
    const std::string longest(79, 'x');
    const std::string path =
        written({mediaType("Glossy Brochure", "1201", "3", profile("file:///p/gloss.icc", "q1")),
                 mediaType("Büttenpapier", "1202", "1"), mediaType("手漉き和紙", "1203", "1"),
                 mediaType(longest, "1204", "1")});
    for (const std::string& language : kLanguages) {
        EXPECT_EQ(choices(path, language, {"custom1", "custom2", "custom3", "custom4", "custom5"}),
                  "custom1 Glossy Brochure\ncustom2 Büttenpapier\ncustom3 手漉き和紙\ncustom4 " +
                      longest + "\ncustom5 not found\n")
            << language;
    }
}

TEST_F(CustomMediaInCUPS, TheResultConforms) {
    // The sample itself first: what it conforms to, the result must.
    const auto sample = tested(written({}));
    ASSERT_EQ(sample.exitStatus, 0) << sample.standardOutput;
    const auto result = tested(
        written({mediaType("Glossy Brochure", "1201", "3", profile("file:///p/gloss.icc", "q1")),
                 mediaType("Büttenpapier", "1202", "1",
                           profile("file:///p/b%C3%BCtten.icc", std::nullopt, 7)),
                 mediaType(std::string(100, 'x'), "1203", "1")}));
    EXPECT_EQ(result.exitStatus, 0) << result.standardOutput;
}

TEST_F(CustomMediaInCUPS, AMissingProfileFileIsTheOnlyRemark) {
    const auto result = runProgram(
        {"cupstestppd",
         written({mediaType("A", "1", "3", profile("file:///does/not/exist.icc", "q1"))})});
    EXPECT_THAT(result.standardOutput, testing::HasSubstr("/does/not/exist.icc"));
    EXPECT_THAT(result.standardOutput, testing::HasSubstr("cupsICCProfile"));
    EXPECT_EQ(
        tested(written({mediaType("A", "1", "3", profile("file:///does/not/exist.icc", "q1"))}))
            .exitStatus,
        0);
}

TEST_F(CustomMediaInCUPS, ManyMediaTypesConformAndAreFound) {
    // As many as a category line that is wrapped needs, with every length of number.
    OrbCustomMediaTypes types;
    for (int i = 1; i <= 1000; ++i) {
        types.push_back(mediaType("Type " + std::to_string(i), std::to_string(i)));
    }
    const std::string path = written(types);
    const auto result = tested(path);
    EXPECT_EQ(result.exitStatus, 0) << result.standardOutput;
    for (const std::string& language : kLanguages) {
        EXPECT_EQ(choices(path, language, {"custom1", "custom26", "custom1000"}),
                  "custom1 Type 1\ncustom26 Type 26\ncustom1000 Type 1000\n");
    }
}

}  // namespace
}  // namespace TkPPDUpdating
