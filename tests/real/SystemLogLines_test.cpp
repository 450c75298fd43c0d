// What the system's log is told of, by a log of the test's own in the tool's /dev.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "tests/real/ChildProcess.h"
#include "tests/real/PrivateScheduler.h"
#include "tests/support/PrivateLog.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

const std::string kOfficePPD = TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-office.ppd";

// RFC 3164: facility lpr is 6, severity notice 5, and 6 * 8 + 5 is 53.
const std::string kBegin = R"(<53>\w{3} [ \d]\d \d\d:\d\d:\d\d tkppdupdate\[\d+\]: )";

class SystemLogLines : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(PrivateScheduler::missingPrograms(), "");
        scheduler_ = std::make_unique<PrivateScheduler>();
        const std::string recording = scheduler_->directory().write(
            "printer.json",
            R"({"DeviceAccessories": [{"name": "Duplexer", "isInstalled": true}]})");
        scheduler_->addQueue("office", "file://" + recording, kOfficePPD);
        backups_ = (scheduler_->directory().path() / "kept").string();
    }

    ProgramResult run(const std::string& command) const {
        return log_.run({TKPPDUPDATING_TOOL, command, "--server", scheduler_->server(), "office",
                         "--backup", backups_});
    }

    PrivateLog log_;
    std::unique_ptr<PrivateScheduler> scheduler_;
    std::string backups_;
};

TEST_F(SystemLogLines, EachInstallationIsOneLineWithQueueAndKeywords) {
    const ProgramResult installed = run("sync");
    ASSERT_EQ(installed.exitStatus, 0) << installed.standardError << installed.standardOutput;
    std::vector<std::string> messages = log_.messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(std::regex_match(
        messages[0],
        std::regex(kBegin + "queue office: PPD updated: .*DefaultZrAutoDuplexerInstalled.*")))
        << messages[0];

    ASSERT_EQ(run("restore").exitStatus, 0);
    messages = log_.messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(std::regex_match(
        messages[0],
        std::regex(kBegin + "queue office: PPD restored: .*DefaultZrAutoDuplexerInstalled.*")))
        << messages[0];
}

TEST_F(SystemLogLines, ARunThatInstallsNothingSaysNothing) {
    ASSERT_EQ(log_.run({TKPPDUPDATING_TOOL, "sync", "--server", scheduler_->server(), "--dry-run",
                        "office"})
                  .exitStatus,
              0);
    ASSERT_EQ(run("sync").exitStatus, 0);
    EXPECT_EQ(log_.messages().size(), 1U);
    ASSERT_EQ(run("sync").exitStatus, 0);
    EXPECT_THAT(log_.messages(), testing::IsEmpty());
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
