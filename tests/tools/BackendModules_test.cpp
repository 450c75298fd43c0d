// The modules of backends as the installed tool meets them: beside it, missing, of another version.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

/// A module and what makes the tool load it.
struct Module {
    std::string name;
    /// Its file as it was built.
    std::string path;
    /// A library behind it, as the loader calls it.
    std::string library;
    /// A printer that is not there: nobody has port 1 of 127.0.0.1.
    std::string nobody;
    std::string answerOfNobody;
};

std::string fileOf(const Module& module) {
    return module.name + ".so";
}

// For the test's name.
void PrintTo(const Module& module, std::ostream* stream) {
    *stream << module.name;
}

std::vector<Module> modules() {
    std::vector<Module> modules;
#ifdef TKPPDUPDATING_SNMP_MODULE
    modules.push_back({"snmp", TKPPDUPDATING_SNMP_MODULE, "libnetsnmp", "snmp://127.0.0.1:1",
                       "nothing answers SNMP there"});
#endif
#ifdef TKPPDUPDATING_IPP_MODULE
    modules.push_back({"ipp", TKPPDUPDATING_IPP_MODULE, "libcups", "ipp://127.0.0.1:1/ipp/print",
                       "it does not take a connection"});
#endif
    return modules;
}

/// The tool's complaint when it is to ask for a status.
std::string complaint(const std::string& tool, const std::string& deviceURI,
                      const ProgramSurroundings& surroundings = {}) {
    const auto result = runProgram({tool, "status", deviceURI}, surroundings);
    EXPECT_NE(result.exitStatus, 0);
    return result.standardError;
}

/// A copy of the tool in a folder of its own, as after an installation, but for its modules.
class MovedTool : public testing::TestWithParam<Module> {
  protected:
    void SetUp() override {
        fs::create_directories(directory_.path() / "bin");
        fs::copy_file(TKPPDUPDATING_TOOL, tool());
    }

    std::string tool() const { return directory_.path() / "bin" / "tkppdupdate"; }
    void addModule(const std::string& path) const {
        const auto folder =
            (directory_.path() / "bin" / TKPPDUPDATING_WAY_TO_MODULES).lexically_normal();
        fs::create_directories(folder);
        fs::copy_file(path, folder / fileOf(GetParam()));
    }

    TemporaryDirectory directory_;
};

/// What the loader tells while the tool runs.
std::string loaderOf(std::vector<std::string> arguments) {
    ProgramSurroundings surroundings;
    surroundings.environment = {{"LD_DEBUG", "files"}};
    arguments.insert(arguments.begin(), TKPPDUPDATING_TOOL);
    return runProgram(arguments, surroundings).standardError;
}

/// How many shared objects were loaded, those of a sanitizer not counted.
int loadedObjects(const std::string& loaderOutput) {
    std::istringstream lines(loaderOutput);
    int count = 1;  // The loader itself, of which it does not tell.
    for (std::string line; std::getline(lines, line);) {
        const bool isOfSanitizer = line.find("=libasan.") != std::string::npos ||
                                   line.find("=libubsan.") != std::string::npos;
        count += line.ends_with("generating link map") && !isOfSanitizer ? 1 : 0;
    }
    return count;
}

TEST(BackendModules, ARunOnFilesLoadsAtMostEightSharedObjects) {
    const std::string sources = TKPPDUPDATING_SOURCE_DIR;
    const std::string ppd = sources + "/samples/ppd/zr-office.ppd";
    const std::string recording = "file:" + sources + "/samples/status/zr-office-all.json";
    const std::vector<std::vector<std::string>> runs = {
        {"--version"},
        {"updaters", ppd},
        {"status", recording},
        {"values", "--ppd", ppd, "--device-uri", recording},
        {"update", ppd, "--device-uri", recording},
        {"update", ppd, "--device-uri", recording, "--diff"}};
    for (const auto& run : runs) {
        const std::string loader = loaderOf(run);
        EXPECT_LE(loadedObjects(loader), 8) << run[0] << "\n" << loader;
        // It does tell of them.
        EXPECT_GE(loadedObjects(loader), 3) << run[0] << "\n" << loader;
        for (const Module& module : modules()) {
            EXPECT_THAT(loader, Not(HasSubstr(module.library))) << run[0];
            EXPECT_THAT(loader, Not(HasSubstr(fileOf(module)))) << run[0];
        }
    }
}

using BackendModule = MovedTool;

TEST_P(BackendModule, IsLoadedInARunThatNeedsIt) {
    const std::string loader = loaderOf({"status", GetParam().nobody});
    EXPECT_THAT(loader, HasSubstr(GetParam().library));
    EXPECT_THAT(loader, HasSubstr(GetParam().answerOfNobody));
}

TEST_P(BackendModule, HasAPlaceInWhichNeitherTheEnvironmentNorTheWorkingDirectoryHasAPart) {
    const TemporaryDirectory elsewhere;
    for (const char* folder : {".", "lib/TkPPDUpdating", "TkPPDUpdating"}) {
        fs::create_directories(elsewhere.path() / folder);
        fs::copy_file(TKPPDUPDATING_OTHER_VERSION_MODULE,
                      elsewhere.path() / folder / fileOf(GetParam()));
    }
    ProgramSurroundings surroundings;
    surroundings.workingDirectory = elsewhere.path().string();
    surroundings.environment = {{"LD_LIBRARY_PATH", elsewhere.path().string()}};
    EXPECT_THAT(complaint(TKPPDUPDATING_TOOL, GetParam().nobody, surroundings),
                HasSubstr(GetParam().answerOfNobody));
}

TEST_P(MovedTool, FindsItsModulesByTheWayFromItsOwnFile) {
    addModule(GetParam().path);
    EXPECT_THAT(complaint(tool(), GetParam().nobody), HasSubstr(GetParam().answerOfNobody));
    // Through a symbolic link, too.
    const std::string link = directory_.path() / "link";
    fs::create_symlink(tool(), link);
    EXPECT_THAT(complaint(link, GetParam().nobody), HasSubstr(GetParam().answerOfNobody));
}

TEST_P(MovedTool, SaysThatAModuleIsMissing) {
    const std::string said = complaint(tool(), GetParam().nobody);
    EXPECT_THAT(said, HasSubstr("its module cannot be loaded: "));
    EXPECT_THAT(said, HasSubstr(fileOf(GetParam())));
}

TEST_P(MovedTool, UsesNoModuleOfAnotherVersion) {
    addModule(TKPPDUPDATING_OTHER_VERSION_MODULE);
    EXPECT_THAT(complaint(tool(), GetParam().nobody),
                HasSubstr("the module \"" + GetParam().name + "\" is not of this version"));
}

std::string nameOf(const testing::TestParamInfo<Module>& module) {
    return module.param.name;
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(BackendModule);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(MovedTool);
INSTANTIATE_TEST_SUITE_P(Modules, BackendModule, testing::ValuesIn(modules()), nameOf);
INSTANTIATE_TEST_SUITE_P(Modules, MovedTool, testing::ValuesIn(modules()), nameOf);

#ifdef TKPPDUPDATING_IPP_MODULE

/// A copy of the tool without the module that talks to the scheduler.
class ToolWithoutScheduler : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(directory_.path() / "bin");
        fs::copy_file(TKPPDUPDATING_TOOL, directory_.path() / "bin" / "tkppdupdate");
    }

    ProgramResult run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), directory_.path() / "bin" / "tkppdupdate");
        ProgramSurroundings surroundings;
        surroundings.environment = {{"CUPS_SERVERROOT", directory_.path().string()}};
        return runProgram(arguments, surroundings);
    }

    TemporaryDirectory directory_;
};

TEST_F(ToolWithoutScheduler, SaysSoInEachCommandThatNeedsIt) {
    directory_.write("backup/office.ppd", "*PPD-Adobe: \"4.3\"\n");
    const std::string recording =
        "file:" TKPPDUPDATING_SOURCE_DIR "/samples/status/zr-office-all.json";
    for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
             {"sync", "office"},
             {"sync", "--all", "--dry-run"},
             {"restore", "--backup", directory_.path() / "backup", "office"},
             {"values", "--queue", "office", "--device-uri", recording}}) {
        const auto result = run(command);
        EXPECT_EQ(result.exitStatus, 1) << command[0];
        EXPECT_THAT(result.standardError,
                    HasSubstr("the scheduler cannot be asked: its module cannot be loaded: "))
            << command[0];
        EXPECT_THAT(result.standardError, HasSubstr("cups.so")) << command[0];
    }
}

TEST_F(ToolWithoutScheduler, StillFindsTheQueuesInTheServerRoot) {
    fs::create_directories(directory_.path() / "ppd");
    fs::copy_file(TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-office.ppd",
                  directory_.path() / "ppd" / "office.ppd");
    const auto result =
        run({"values", "--queue", "office", "--device-uri",
             "file:" TKPPDUPDATING_SOURCE_DIR "/samples/status/zr-office-all.json"});
    EXPECT_EQ(result.exitStatus, 0) << result.standardError;
    EXPECT_THAT(result.standardOutput, HasSubstr("ZrMaxSupportedResolution"));
}

#endif

}  // namespace
}  // namespace TkPPDUpdating::Testing
