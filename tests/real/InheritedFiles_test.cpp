// What a program that the library's application starts meanwhile would find open.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "backends/cups/CUPSScheduler.h"
#include "tests/support/HostileIPPResponder.h"

namespace TkPPDUpdating::Testing {
namespace {

std::set<int> openFiles() {
    std::set<int> files;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        files.insert(std::stoi(entry.path().filename()));
    }
    return files;
}

/// What stands behind the files that another program would inherit, but for those in `before`.
std::set<std::string> filesInherited(const std::set<int>& before) {
    std::set<std::string> inherited;
    for (const int file : openFiles()) {
        const int flags = ::fcntl(file, F_GETFD);
        if (flags >= 0 && (flags & FD_CLOEXEC) == 0 && !before.contains(file)) {
            std::error_code error;
            inherited.insert(
                std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), error));
        }
    }
    return inherited;
}

TEST(InheritedFiles, AreNoneWhileAPPDIsInstalled) {
    const std::set<int> before = openFiles();
    std::set<std::string> inherited;
    int requests = 0;
    HostileIPPResponder scheduler([&](const ResponderConnection& connection) {
        // The queue is asked for first, then comes the PPD.
        while (connection.readRequest()) {
            if (++requests == 2) {
                inherited = filesInherited(before);
            }
            connection.send(HostileIPPResponder::HTTPAnswer(IPPBytes().end()));
        }
    });
    QueueFailure failure;
    EXPECT_TRUE(CUPSScheduler("127.0.0.1:" + std::to_string(scheduler.port()))
                    .talkAbout(
                        "office",
                        [&](QueueTalk& queue) {
                            EXPECT_TRUE(queue.queue(failure)) << failure.reason;
                            EXPECT_EQ(queue.install("*PPD-Adobe: \"4.3\"\n", failure),
                                      QueueTalk::Delivery::taken)
                                << failure.reason;
                        },
                        QueueScheduler::Patience::untilCancelled, failure))
        << failure.reason;
    EXPECT_GE(requests, 2);
    EXPECT_EQ(inherited, std::set<std::string>());
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
