// samples/generate, which makes the PPDs from their sources.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/samples/SamplePrinters.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using std::filesystem::path;

/// A copy of the script and its sources that a test may change.
class CopiedSources {
  public:
    CopiedSources() {
        std::filesystem::copy(kSamplesFolder + "/generate", folder_.path() / "generate");
        std::filesystem::copy(kSamplesFolder + "/drv", folder_.path() / "drv",
                              std::filesystem::copy_options::recursive);
    }

    ProgramResult generate() const { return runProgram({(folder_.path() / "generate").string()}); }

    path PPDs() const { return folder_.path() / "ppd"; }

    void replace(const std::string& file, const std::string& from, const std::string& to) const {
        std::string text = textOfFile((folder_.path() / file).string());
        const std::size_t place = text.find(from);
        ASSERT_NE(place, std::string::npos) << from;
        std::ofstream(folder_.path() / file) << text.replace(place, from.size(), to);
    }

  private:
    TemporaryDirectory folder_;
};

void expectRefusal(const CopiedSources& sources, const std::string& reason) {
    const ProgramResult result = sources.generate();
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_NE(result.standardError.find(reason), std::string::npos) << result.standardError;
    EXPECT_TRUE(std::filesystem::is_empty(sources.PPDs()));
}

TEST(GenerateSamples, GivesTheBytesThatAreCommitted) {
    const TemporaryDirectory folder;
    const ProgramResult result =
        runProgram({kSamplesFolder + "/generate", (folder.path() / "new/ppd").string()});
    ASSERT_EQ(result.exitStatus, 0) << result.standardError;
    EXPECT_EQ(result.standardError, "");
    for (const std::string& printer : samplePrinters()) {
        const std::string generated =
            textOfFile((folder.path() / "new/ppd" / (printer + ".ppd")).string());
        EXPECT_NE(generated, "");
        EXPECT_EQ(generated, textOfFile(PPDPathOf(printer)))
            << "run samples/generate and commit what it makes";
    }
}

TEST(GenerateSamples, TakesAFolderRelativeToWhereItIsRun) {
    const TemporaryDirectory folder;
    ProgramSurroundings surroundings;
    surroundings.workingDirectory = folder.path().string();
    ASSERT_EQ(runProgram({kSamplesFolder + "/generate", "here"}, surroundings).exitStatus, 0);
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "here/zr-inkjet.ppd"));
}

TEST(GenerateSamples, DoesNotDependOnTheUsersLanguage) {
    ProgramSurroundings surroundings;
    surroundings.environment = {{"LANG", "ja_JP.UTF-8"}, {"LC_ALL", std::nullopt}};
    const TemporaryDirectory folder;
    ASSERT_EQ(
        runProgram({kSamplesFolder + "/generate", folder.path().string()}, surroundings).exitStatus,
        0);
    EXPECT_EQ(textOfFile((folder.path() / "zr-office.ppd").string()),
              textOfFile(PPDPathOf("zr-office")));
}

TEST(GenerateSamples, RefusesATextThatACatalogLacks) {
    const CopiedSources sources;
    // CUPS has a text of its own for this one, which would be taken instead.
    sources.replace("drv/po/fr.po", "msgid \"Media Type\"", "msgid \"Other\"");
    expectRefusal(sources, "no fr text for Media Type");
}

TEST(GenerateSamples, RefusesALineThatIsTooLongForAPPD) {
    const CopiedSources sources;
    sources.replace("drv/zr-compact.drv", "MFG:Zr;", "MFG:" + std::string(256, 'Z') + ";");
    expectRefusal(sources, "longer than a PPD line may be");
}

TEST(GenerateSamples, PassesOnWhatThePPDCompilerRefuses) {
    const CopiedSources sources;
    sources.replace("drv/zr-office.drv", "ModelName", "NoSuchDirective");
    const ProgramResult result = sources.generate();
    EXPECT_NE(result.exitStatus, 0);
    EXPECT_NE(result.standardError.find("NoSuchDirective"), std::string::npos)
        << result.standardError;
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
