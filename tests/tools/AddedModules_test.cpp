// Modules that somebody else has built: named by --load, or in the folder for them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/FileContents.h"
#include "tests/support/SanitizerInUse.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/SmallPPD.h"
#include "tests/tools/ToolRun.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string kExample = TKPPDUPDATING_SOURCE_DIR "/examples/updater/";

class AddedModules : public testing::Test {
  protected:
    AddedModules() {
        for (const char* each : {"finisher.ppd", "finisher.json"}) {
            fs::copy_file(kExample + each, directory_.path() / each);
        }
        directory_.write("office.ppd", kSmallPPD);
        add(TKPPDUPDATING_STAPLER_UPDATER, "Stapler.so");
        add(TKPPDUPDATING_TEST_MODULES "/BoxModule.so", "Box.so");
    }

    /// A copy of a module, whatever the modes in the build tree are.
    void add(const std::string& file, const fs::path& path) const {
        const fs::path copy = directory_.path() / path;
        fs::create_directories(copy.parent_path());
        fs::copy_file(file, copy);
        fs::permissions(copy, fs::perms(0755));
    }

    ToolRun run(const std::vector<std::string>& arguments) const {
        return runTool(arguments, {.environment = {{"CUPS_SERVER", "/nonexistent/cups.sock"}},
                                   .directory = directory_.path()});
    }

    TemporaryDirectory directory_;
};

TEST_F(AddedModules, AreNamedBeforeTheCommandOrBehindIt) {
    EXPECT_THAT(run({"updaters"}).output, Not(HasSubstr("StaplerUpdater")));
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"--load", "Stapler.so", "updaters"},
             {"updaters", "--load", "Stapler.so"},
             {"updaters", "--load=./Stapler.so"},
             {"--load", "Box.so", "updaters", "--load", "Stapler.so"}}) {
        const ToolRun listed = run(arguments);
        EXPECT_EQ(listed.errors, "");
        EXPECT_THAT(listed.output, HasSubstr("OrbPPDMaxResolutionUpdater\n"));
        EXPECT_THAT(listed.output, HasSubstr("StaplerUpdater\n"));
    }
    EXPECT_EQ(run({"updaters", "finisher.ppd", "--load", "Stapler.so"}).output, "StaplerUpdater\n");
    EXPECT_THAT(run({"updaters", "office.ppd", "--load", "Stapler.so"}).output,
                Not(HasSubstr("StaplerUpdater")));
}

TEST_F(AddedModules, HaveUpdatersThatRunAsTheBuiltInOnesDo) {
    const std::vector<std::string> update = {
        "update", "finisher.ppd", "--device-uri", "file:finisher.json", "--load", "Stapler.so"};
    EXPECT_THAT(run(update).output, HasSubstr("*DefaultZrStaplerInstalled: True\n"));
    auto inPlace = update;
    inPlace.emplace_back("--in-place");
    const ToolRun written = run(inPlace);
    EXPECT_EQ(written.exitStatus, 0) << written.errors;
    EXPECT_EQ(written.output, "Stapler: Not Installed -> Installed\n");
    EXPECT_THAT(contentsOfFile(directory_.path() / "finisher.ppd"),
                HasSubstr("*DefaultZrStaplerInstalled: True\n"));
    EXPECT_EQ(run({"values", "--ppd", "finisher.ppd", "--device-uri", "file:finisher.json",
                   "--load", "Stapler.so"})
                  .output,
              "{\n  \"DefaultZrStaplerInstalled\": \"True\"\n}\n");
}

TEST_F(AddedModules, HaveUpdatersThatKeepWhatWasNotTold) {
    directory_.write("some.json", R"({"Told": ["DeviceAccessories.Duplexer"],
        "DeviceAccessories": [{"name": "Stapler", "isInstalled": true}]})");
    const ToolRun kept =
        run({"update", "finisher.ppd", "--device-uri", "file:some.json", "--load", "Stapler.so"});
    EXPECT_THAT(kept.output, HasSubstr("*DefaultZrStaplerInstalled: False\n"));
    EXPECT_EQ(kept.errors,
              "tkppdupdate: finisher.ppd: kept: Stapler, which the printer did not tell\n");
}

TEST_F(AddedModules, HaveClassesThatOnlyAndSkipTake) {
    const auto update = [this](const std::string& option, const std::string& name) {
        return run({"update", "finisher.ppd", "--device-uri", "file:finisher.json", "--load",
                    "Stapler.so", option, name});
    };
    EXPECT_THAT(update("--only", "StaplerUpdater").output,
                HasSubstr("*DefaultZrStaplerInstalled: True\n"));
    EXPECT_THAT(update("--skip", "StaplerUpdater").output,
                HasSubstr("*DefaultZrStaplerInstalled: False\n"));
    EXPECT_EQ(update("--only", "StaplerUpdate").errors,
              "tkppdupdate: --only: no updater class is named \"StaplerUpdate\"; did you mean "
              "\"StaplerUpdater\"?; \"tkppdupdate updaters\" lists them (\"tkppdupdate update "
              "--help\" tells the usage)\n");
    EXPECT_EQ(run({"update", "finisher.ppd", "--device-uri", "file:finisher.json", "--only",
                   "StaplerUpdater"})
                  .exitStatus,
              2)
        << "without the module there is no such class";
}

#ifdef TKPPDUPDATING_WITH_CUPS
TEST_F(AddedModules, AreTakenBySync) {
    const ToolRun sync = run({"sync", "--all", "--load", "Stapler.so", "--only", "StaplerUpdater"});
    EXPECT_EQ(sync.exitStatus, 1);
    EXPECT_THAT(sync.errors, HasSubstr("the scheduler cannot be reached"));
}
#endif

TEST_F(AddedModules, HaveSchemesThatEveryCommandAsks) {
    const ToolRun status = run({"status", "box:one", "--load", "Box.so"});
    EXPECT_EQ(status.exitStatus, 0) << status.errors;
    EXPECT_THAT(status.output, HasSubstr("\"name\": \"Duplexer\""));
    EXPECT_EQ(run({"update", "office.ppd", "--device-uri", "box:one", "--load", "Box.so"}).output,
              kSmallPPDWithDuplexer);
    const ToolRun silent = run({"status", "box:empty", "--load", "Box.so"});
    EXPECT_EQ(silent.exitStatus, 3);
    EXPECT_THAT(silent.errors, HasSubstr("the box is empty"));
    EXPECT_THAT(run({"status", "box:one"}).errors, HasSubstr("no backend for the scheme \"box\""));
}

/// A copy of the tool with a folder for modules, as after an installation.
class FolderOfModules : public AddedModules {
  protected:
    FolderOfModules() {
        fs::create_directories(directory_.path() / "bin");
        fs::copy_file(TKPPDUPDATING_TOOL, tool());
        fs::create_directories(folder());
    }

    std::string tool() const { return directory_.path() / "bin" / "tkppdupdate"; }
    fs::path folder() const {
        return (directory_.path() / "bin" / TKPPDUPDATING_WAY_TO_MODULES / ".." / "updaters")
            .lexically_normal();
    }
    ToolRun runMoved(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), tool());
        return runCommand(arguments, {.directory = directory_.path()});
    }
};

TEST_F(FolderOfModules, IsLoadedByEveryRun) {
    add(TKPPDUPDATING_STAPLER_UPDATER, folder() / "a.so");
    add(TKPPDUPDATING_TEST_MODULES "/BoxModule.so", folder() / "b.so");
    directory_.write("note.txt", "");
    fs::copy_file(directory_.path() / "note.txt", folder() / "note.txt");
    EXPECT_EQ(runMoved({"updaters", "finisher.ppd"}).output, "StaplerUpdater\n");
    EXPECT_EQ(runMoved({"update", "office.ppd", "--device-uri", "box:one"}).output,
              kSmallPPDWithDuplexer);
    // Named once more it is the same one.
    const ToolRun twice = runMoved({"updaters", "finisher.ppd", "--load", folder() / "a.so"});
    EXPECT_EQ(twice.errors, "");
    EXPECT_EQ(twice.output, "StaplerUpdater\n");
}

TEST_F(FolderOfModules, EndsTheRunWhenOneOfItsModulesCannotBeUsed) {
    add(TKPPDUPDATING_TEST_MODULES "/OtherVersionModule.so", folder() / "old.so");
    for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
             {"updaters"},
             {"status", "file:finisher.json"},
             {"values", "--ppd", "office.ppd", "--device-uri", "file:finisher.json"},
             {"update", "office.ppd", "--device-uri", "file:finisher.json", "--in-place"}}) {
        const ToolRun refused = runMoved(command);
        EXPECT_EQ(refused.exitStatus, 1) << command[0];
        EXPECT_EQ(refused.output, "");
        EXPECT_EQ(refused.errors, "tkppdupdate: " + (folder() / "old.so").string() +
                                      ": was built for version 0.0.9, and this is " +
                                      TKPPDUPDATING_VERSION "; build it anew\n");
    }
    EXPECT_EQ(contentsOfFile(directory_.path() / "office.ppd"), kSmallPPD);
    EXPECT_EQ(runMoved({"update", "--help"}).exitStatus, 0);
#ifdef TKPPDUPDATING_WITH_CUPS
    EXPECT_THAT(runMoved({"restore", "--backup", "none", "office"}).errors,
                StartsWith("tkppdupdate: none: "))
        << "a PPD can be put back all the same";
#endif
}

struct Refusal {
    std::string testName;
    std::string file;
    std::string reason;

    friend void PrintTo(const Refusal& refusal, std::ostream* stream) {
        *stream << refusal.testName;
    }
};

class RefusedModule : public AddedModules, public testing::WithParamInterface<Refusal> {};

TEST_P(RefusedModule, IsNamedWithTheCauseAndNothingIsWritten) {
    directory_.write("Text.so", "no code at all\n");
    fs::permissions(directory_.path() / "Text.so", fs::perms(0644));
    fs::create_directory(directory_.path() / "Folder.so");
    for (const char* each : {"Empty", "No", "OtherVersion", "Raising", "SameName"}) {
        add(TKPPDUPDATING_TEST_MODULES "/" + std::string(each) + "Module.so",
            std::string(each) + ".so");
    }
    add(TKPPDUPDATING_STAPLER_UPDATER, "Open.so");
    fs::permissions(directory_.path() / "Open.so", fs::perms(0757));
    const ToolRun refused = run({"update", "office.ppd", "--device-uri", "file:finisher.json",
                                 "--in-place", "--load", GetParam().file});
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_EQ(refused.output, "");
    EXPECT_THAT(refused.errors,
                StartsWith("tkppdupdate: " + GetParam().file + ": " + GetParam().reason));
    EXPECT_EQ(lineCount(refused.errors), 1U);
    EXPECT_EQ(contentsOfFile(directory_.path() / "office.ppd"), kSmallPPD);
}

#if !TKPPDUPDATING_ADDRESS_SANITIZER  // which needs memory of its own
/// An exception crosses from the module's C++ library to the tool's.
TEST_F(AddedModules, OneThatRaisesWithoutMemoryEndsTheRunWithAnError) {
    add(TKPPDUPDATING_TEST_MODULES "/GreedyModule.so", "Greedy.so");
    const ToolRun run = this->run({"update", "office.ppd", "--device-uri", "file:finisher.json",
                                   "--in-place", "--load", "Greedy.so"});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.errors, "tkppdupdate: there is not enough memory\n");
    EXPECT_EQ(contentsOfFile(directory_.path() / "office.ppd"), kSmallPPD);
}
#endif

INSTANTIATE_TEST_SUITE_P(
    AddedModules, RefusedModule,
    testing::Values(
        Refusal{"Missing", "None.so", "No such file or directory"},
        Refusal{"Folder", "Folder.so", "is no regular file"},
        Refusal{"NoSharedObject", "Text.so", "cannot be loaded: "},
        Refusal{"WithoutEntry", "No.so",
                "is no module of TkPPDUpdating: it has no TkPPDUpdatingModule\n"},
        Refusal{"OfAnotherVersion", "OtherVersion.so",
                "was built for version 0.0.9, and this is " TKPPDUPDATING_VERSION
                "; build it anew\n"},
        Refusal{"OpenToOthers", "Open.so", "can be written to by others than its owner; "},
        Refusal{"WithNothing", "Empty.so", "has neither updaters nor schemes\n"},
        Refusal{"ThatRaises", "Raising.so",
                "cannot register what it has: its licence has expired\n"},
        Refusal{"WithANameTwice", "SameName.so",
                "there is an updater class \"OrbPPDDuplexerInstalledUpdater\" already; its own "
                "needs another name\n"}),
    [](const auto& test) { return test.param.testName; });

}  // namespace
}  // namespace TkPPDUpdating::Testing
