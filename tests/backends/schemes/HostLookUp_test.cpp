#include "backends/schemes/HostLookUp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <filesystem>
#include <string>

namespace TkPPDUpdating::Testing {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Clock = std::chrono::steady_clock;

const Clock::time_point kSoon = Clock::now() + std::chrono::minutes(1);

/// A label of 64 letters, one more than RFC 1035 allows: no server is asked for such a name.
const std::string kNobody(64, 'a');

std::ptrdiff_t threadCount() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

/// No process is left, dead or alive.
bool isChildless() {
    return ::waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD;
}

TEST(HostLookUp, GivesAnAddressAsItIs) {
    OrbCSError error;
    for (const char* address : {"127.0.0.1", "::1", "fe80::1%1"}) {
        EXPECT_THAT(addressesOfHostName(address, kSoon, nullptr, error), ElementsAre(address));
    }
}

TEST(HostLookUp, GivesTheAddressesOfAName) {
    OrbCSError error;
    const auto addresses = addressesOfHostName("localhost", kSoon, nullptr, error);
    EXPECT_THAT(addresses, Contains(AnyOf("127.0.0.1", "::1"))) << error.reason;
    EXPECT_TRUE(isChildless());
}

TEST(HostLookUp, TellsThatANameIsNotKnown) {
    for (const std::string& name : {kNobody, "-" + kNobody, "--" + kNobody, "a b\n" + kNobody}) {
        OrbCSError error;
        EXPECT_THAT(addressesOfHostName(name, kSoon, nullptr, error), IsEmpty()) << name;
        EXPECT_EQ(error.cause, OrbCSError::Cause::unknownHost) << name << ": " << error.reason;
        EXPECT_EQ(error.reason, "its name is not known") << name;
    }
    EXPECT_TRUE(isChildless());
}

TEST(HostLookUp, LeavesNothingBehindWhenTheTimeIsOver) {
    const auto threads = threadCount();
    const std::atomic<bool> isCancelled{true};
    OrbCSError error;
    EXPECT_THAT(addressesOfHostName(kNobody, kSoon, &isCancelled, error), IsEmpty());
    EXPECT_EQ(error.cause, OrbCSError::Cause::cancelled);
    EXPECT_THAT(addressesOfHostName(kNobody, Clock::now(), nullptr, error), IsEmpty());
    EXPECT_EQ(error.cause, OrbCSError::Cause::timeout);
    EXPECT_TRUE(isChildless());
    EXPECT_EQ(threadCount(), threads);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
