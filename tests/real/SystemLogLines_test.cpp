// What the system's log is told of, by a log of the test's own in the tool's /dev.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <regex>
#include <string>
#include <system_error>
#include <vector>

#include "tests/real/ChildProcess.h"
#include "tests/real/PrivateScheduler.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

const std::string kOfficePPD = TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-office.ppd";

/// The mounts of a changed root cannot all be made private, but those of its /dev.
constexpr const char* kInPrivateDevices = R"(
propagation=private
unshare --mount true 2>/dev/null || propagation=unchanged
exec unshare --mount --propagation $propagation sh -ec '
mount --make-rprivate /dev 2>/dev/null || [ "$0" = private ]
mount -t tmpfs tmpfs /dev
ln -s "$1/log" /dev/log
shift
exec "$@"' $propagation "$0" "$@")";

/// A socket to which syslog(3) writes.
class PrivateLog {
  public:
    PrivateLog() : socket_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const std::string path = (folder_.path() / "log").string();
        std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
        if (bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
            throw std::system_error(errno, std::generic_category(), path);
        }
    }
    PrivateLog(const PrivateLog&) = delete;
    PrivateLog& operator=(const PrivateLog&) = delete;
    ~PrivateLog() { close(socket_); }

    /// Runs a program that has this log, in a mount namespace of its own.
    ProgramResult run(const std::vector<std::string>& arguments) const {
        std::vector<std::string> command = {"sh", "-ec", kInPrivateDevices, folder_.path()};
        if (getuid() != 0) {
            command.insert(command.begin(),
                           {"unshare", "--user", "--map-current-user", "--keep-caps"});
        }
        command.insert(command.end(), arguments.begin(), arguments.end());
        return runProgram(command);
    }

    /// What was written since the last call, a datagram each: "<priority>time program[process]:
    /// text".
    std::vector<std::string> messages() const {
        std::vector<std::string> all;
        std::array<char, 8192> buffer{};
        for (ssize_t count = 0; (count = recv(socket_, buffer.data(), buffer.size(), 0)) > 0;) {
            all.emplace_back(buffer.data(), static_cast<std::size_t>(count));
        }
        return all;
    }

  private:
    TemporaryDirectory folder_;
    int socket_;
};

// RFC 3164: facility lpr is 6, severity notice 5, and 6 * 8 + 5 is 53.
const std::string kBegin = R"(<53>\w{3} [ \d]\d \d\d:\d\d:\d\d tkppdupdate\[\d+\]: )";

class SystemLogLines : public testing::Test {
  protected:
    void SetUp() override {
        const std::string missing = PrivateScheduler::missingPrograms();
        if (!missing.empty()) {
            GTEST_SKIP() << missing;
        }
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
