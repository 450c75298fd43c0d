// What somebody does to a PPD while its printer takes its time to answer.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "tests/support/FileContents.h"
#include "tests/support/HostileIPPResponder.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/SmallPPD.h"

namespace TkPPDUpdating::Testing {
namespace {

class InPlaceTest : public ::testing::Test {
  protected:
    /// Updates the PPD in place by a printer with a duplexer, which does `meanwhile` between being
    /// asked and answering.
    ProgramResult update(const std::function<void()>& meanwhile) const {
        const std::string answer =
            HostileIPPResponder::HTTPAnswer(IPPBytes()
                                                .keyword("sides-supported", "one-sided")
                                                .keyword("", "two-sided-long-edge")
                                                .end());
        HostileIPPResponder printer([&](const ResponderConnection& connection) {
            if (connection.readRequest()) {
                meanwhile();
                connection.send(answer);
                connection.waitForClose();
            }
        });
        return runProgram({TKPPDUPDATING_TOOL, "update", ppd_, "--in-place", "--device-uri",
                           printer.URI(), "--only", "OrbPPDDuplexerInstalledUpdater"});
    }

    std::filesystem::path path(const std::string& name) const { return directory_.path() / name; }

    TemporaryDirectory directory_;
    const std::string ppd_ = directory_.write("folder/a.ppd", std::string(kSmallPPD));
};

TEST_F(InPlaceTest, ThePPDIsReplacedWhenNobodyTouchedIt) {
    const ProgramResult run = update([] {});
    EXPECT_EQ(run.exitStatus, 0) << run.standardError;
    EXPECT_NE(contentsOfFile(ppd_).find("*DefaultZrAutoDuplexerInstalled: True"),
              std::string::npos);
}

TEST_F(InPlaceTest, AnEditOfSomebodyElseIsNotLost) {
    const std::string edited = std::string(std::string(kSmallPPD)) + "*% edited\n";
    const ProgramResult run = update([&] { directory_.write("folder/a.ppd", edited); });
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.standardError, "tkppdupdate: " + ppd_ + ": was changed meanwhile\n");
    EXPECT_EQ(contentsOfFile(ppd_), edited);
}

TEST_F(InPlaceTest, ALinkInThePlaceOfThePPDLeadsNowhere) {
    directory_.write("other.ppd", "another's");
    const ProgramResult run = update([&] {
        std::filesystem::remove(ppd_);
        std::filesystem::create_symlink(path("other.ppd"), ppd_);
    });
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.standardError, "tkppdupdate: " + ppd_ + ": was changed meanwhile\n");
    EXPECT_EQ(contentsOfFile(path("other.ppd")), "another's");
}

TEST_F(InPlaceTest, ALinkInThePlaceOfItsFolderLeadsNowhere) {
    directory_.write("other/a.ppd", "another's");
    const ProgramResult run = update([&] {
        std::filesystem::rename(path("folder"), path("moved"));
        std::filesystem::create_directory_symlink(path("other"), path("folder"));
    });
    EXPECT_EQ(run.exitStatus, 0) << run.standardError;
    EXPECT_EQ(contentsOfFile(path("other/a.ppd")), "another's");
    EXPECT_NE(contentsOfFile(path("moved/a.ppd")).find("*DefaultZrAutoDuplexerInstalled: True"),
              std::string::npos);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
