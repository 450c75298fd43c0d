#include "sync/RunLock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using std::chrono::milliseconds;
using End = RunLock::End;
using Clock = std::chrono::steady_clock;

constexpr auto kLong = std::chrono::seconds(20);

class RunLockTest : public testing::Test {
  protected:
    TemporaryDirectory directory;
    std::string path = (directory.path() / "run.lock").string();
    std::string reason;
};

TEST_F(RunLockTest, IsHadByOneAtATime) {
    RunLock first(path);
    ASSERT_EQ(first.take(milliseconds(0), nullptr, reason), End::taken) << reason;
    RunLock second(path);
    EXPECT_EQ(second.take(milliseconds(0), nullptr, reason), End::held);
    EXPECT_EQ(reason, "process " + std::to_string(::getpid()));
}

TEST_F(RunLockTest, IsWaitedForSoLong) {
    RunLock first(path);
    ASSERT_EQ(first.take(milliseconds(0), nullptr, reason), End::taken) << reason;
    const auto begin = Clock::now();
    EXPECT_EQ(RunLock(path).take(milliseconds(150), nullptr, reason), End::held);
    EXPECT_GE(Clock::now() - begin, milliseconds(150));
}

TEST_F(RunLockTest, IsTakenAsSoonAsItIsFreeAndLeavesNoFile) {
    {
        RunLock second(path);
        std::jthread other;
        {
            RunLock first(path);
            ASSERT_EQ(first.take(milliseconds(0), nullptr, reason), End::taken) << reason;
            other = std::jthread([&] {
                std::string ofOther;
                EXPECT_EQ(second.take(kLong, nullptr, ofOther), End::taken) << ofOther;
            });
            std::this_thread::sleep_for(milliseconds(50));
        }
        other.join();
        EXPECT_EQ(RunLock(path).take(milliseconds(0), nullptr, reason), End::held);
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(RunLockTest, IsNeverHadByTwoHoweverManyTry) {
    std::atomic<int> now{0};
    std::atomic<int> all{0};
    std::vector<std::jthread> threads;
    for (int number = 0; number < 8; ++number) {
        threads.emplace_back([&] {
            for (int turn = 0; turn < 5; ++turn) {
                std::string ofThread;
                RunLock lock(path);
                ASSERT_EQ(lock.take(kLong, nullptr, ofThread), End::taken) << ofThread;
                EXPECT_EQ(++now, 1);
                ++all;
                --now;
            }
        });
    }
    threads.clear();
    EXPECT_EQ(all, 40);
}

TEST_F(RunLockTest, WaitingEndsWhenItIsCancelled) {
    RunLock first(path);
    ASSERT_EQ(first.take(milliseconds(0), nullptr, reason), End::taken) << reason;
    const std::atomic<bool> isCancelled{true};
    EXPECT_EQ(RunLock(path).take(kLong, &isCancelled, reason), End::cancelled);
}

TEST_F(RunLockTest, IsFreeOnceItsProcessIsGoneHoweverThatEnded) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        RunLock lock(path);
        std::string ofChild;
        ::_exit(lock.take(milliseconds(0), nullptr, ofChild) == End::taken ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    ASSERT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(RunLock(path).take(milliseconds(0), nullptr, reason), End::taken) << reason;
}

TEST_F(RunLockTest, AFileThatIsNotOursIsRefused) {
    EXPECT_EQ(
        RunLock((directory.path() / "no/run.lock").string()).take(milliseconds(0), nullptr, reason),
        End::failed);
    EXPECT_THAT(reason, testing::EndsWith("run.lock: No such file or directory"));
    std::filesystem::create_symlink(directory.write("other", ""), path);
    EXPECT_EQ(RunLock(path).take(milliseconds(0), nullptr, reason), End::failed);
    std::filesystem::remove(path);
    if (::geteuid() == 0) {
        constexpr uid_t kStranger = 12345;
        directory.write("run.lock", "");
        ASSERT_EQ(::chown(path.c_str(), kStranger, static_cast<gid_t>(-1)), 0);
        EXPECT_EQ(RunLock(path).take(milliseconds(0), nullptr, reason), End::failed);
        EXPECT_EQ(reason, path + ": is not a file of this user");
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
