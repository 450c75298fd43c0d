#include "tests/real/MulticastDNSResponder.h"

#include <sys/mount.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

#include "tests/support/FileContents.h"

namespace TkPPDUpdating::Testing {

namespace {

/// The daemon wants its folder to belong to the user "avahi", to whom only root can give it, and
/// not in a user namespace: in the process's own mounts, whoever runs the test goes by that name.
void goByItsUsersName(const TemporaryDirectory& directory) {
    const std::string user = std::to_string(geteuid());
    const std::string group = std::to_string(getegid());
    const std::string users =
        directory.write("passwd", "avahi:x:" + user + ":" + group + "::/:/bin/false\n");
    const std::string groups = directory.write("group", "avahi:x:" + group + ":\n");
    if (mount(users.c_str(), "/etc/passwd", nullptr, MS_BIND, nullptr) != 0 ||
        mount(groups.c_str(), "/etc/group", nullptr, MS_BIND, nullptr) != 0) {
        throw std::runtime_error("no users of the test's own");
    }
}

}  // namespace

std::string MulticastDNSResponder::missingPrograms() {
    return pathOfProgram("avahi-daemon").empty() ? "not installed: avahi-daemon" : "";
}

MulticastDNSResponder::MulticastDNSResponder() {
    goByItsUsersName(directory_);
    const std::string configuration = directory_.write(
        "avahi.conf",
        "[server]\nhost-name=printer-host\nallow-interfaces=lo\n[wide-area]\n"
        "enable-wide-area=no\n[publish]\npublish-hinfo=no\npublish-workstation=no\n");
    const std::string output = (directory_.path() / "avahi.output").string();
    process_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{"avahi-daemon", "--file=" + configuration, "--no-drop-root",
                                 "--no-chroot", "--no-rlimits"},
        output, bus_.environment());
    constexpr int kTries = 500;
    for (int attempt = 0; attempt < kTries && process_->isRunning(); ++attempt) {
        // Before, services cannot be announced.
        if (contentsOfFile(output).find("Server startup complete") != std::string::npos) {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    throw std::runtime_error("avahi-daemon does not start: " + contentsOfFile(output));
}

}  // namespace TkPPDUpdating::Testing
