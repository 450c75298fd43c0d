// The modules of backends as the installed tool meets them: beside it, missing, of another version.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

/// Nobody answers there: UDP port 1 of 127.0.0.1.
constexpr const char* kNobody = "snmp://127.0.0.1:1";
constexpr const char* kAnswerOfNobody = "nothing answers SNMP there";

/// A copy of the tool in a folder of its own, as after an installation, but for its modules.
class MovedTool : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(directory_.path() / "bin");
        fs::copy_file(TKPPDUPDATING_TOOL, tool());
    }

    fs::path tool() const { return directory_.path() / "bin" / "tkppdupdate"; }
    fs::path moduleFolder() const {
        return (directory_.path() / "bin" / TKPPDUPDATING_WAY_TO_MODULES).lexically_normal();
    }
    void addModule(const std::string& path) const {
        fs::create_directories(moduleFolder());
        fs::copy_file(path, moduleFolder() / "snmp.so");
    }

    TemporaryDirectory directory_;
};

TEST(BackendModules, ALibraryIsLoadedOnlyInARunThatNeedsIt) {
    ProgramSurroundings surroundings;
    surroundings.environment = {{"LD_DEBUG", "files"}};
    const std::string recording =
        "file:" TKPPDUPDATING_SOURCE_DIR "/samples/status/zr-office-all.json";
    const auto other = runProgram({TKPPDUPDATING_TOOL, "status", recording}, surroundings);
    EXPECT_EQ(other.exitStatus, 0);
    // The loader does tell of libraries.
    EXPECT_THAT(other.standardError, HasSubstr("file=libstdc++"));
    EXPECT_THAT(other.standardError, Not(HasSubstr("netsnmp")));
    EXPECT_THAT(other.standardError, Not(HasSubstr("snmp.so")));
    const auto needing = runProgram({TKPPDUPDATING_TOOL, "status", kNobody}, surroundings);
    EXPECT_THAT(needing.standardError, HasSubstr("netsnmp"));
    EXPECT_THAT(needing.standardError, HasSubstr(kAnswerOfNobody));
}

TEST(BackendModules, NeitherTheEnvironmentNorTheWorkingDirectoryHasAPartInTheirPlace) {
    const TemporaryDirectory elsewhere;
    for (const char* name : {"snmp.so", "lib/TkPPDUpdating/snmp.so", "TkPPDUpdating/snmp.so"}) {
        fs::create_directories((elsewhere.path() / name).parent_path());
        fs::copy_file(TKPPDUPDATING_OTHER_VERSION_MODULE, elsewhere.path() / name);
    }
    ProgramSurroundings surroundings;
    surroundings.workingDirectory = elsewhere.path().string();
    surroundings.environment = {{"LD_LIBRARY_PATH", elsewhere.path().string()}};
    const auto result = runProgram({TKPPDUPDATING_TOOL, "status", kNobody}, surroundings);
    EXPECT_THAT(result.standardError, HasSubstr(kAnswerOfNobody));
}

TEST_F(MovedTool, FindsItsModulesByTheWayFromItsOwnFile) {
    addModule(TKPPDUPDATING_SNMP_MODULE);
    const auto result = runProgram({tool().string(), "status", kNobody});
    EXPECT_THAT(result.standardError, HasSubstr(kAnswerOfNobody));
    // Through a symbolic link, too.
    fs::create_symlink(tool(), directory_.path() / "link");
    const auto linked = runProgram({(directory_.path() / "link").string(), "status", kNobody});
    EXPECT_THAT(linked.standardError, HasSubstr(kAnswerOfNobody));
}

TEST_F(MovedTool, SaysThatAModuleIsMissing) {
    const auto result = runProgram({tool().string(), "status", kNobody});
    EXPECT_NE(result.exitStatus, 0);
    EXPECT_THAT(result.standardError, HasSubstr("its module cannot be loaded: "));
    EXPECT_THAT(result.standardError, HasSubstr("snmp.so"));
}

TEST_F(MovedTool, UsesNoModuleOfAnotherVersion) {
    addModule(TKPPDUPDATING_OTHER_VERSION_MODULE);
    const auto result = runProgram({tool().string(), "status", kNobody});
    EXPECT_NE(result.exitStatus, 0);
    EXPECT_THAT(result.standardError, HasSubstr("the module \"snmp\" is not of this version"));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
