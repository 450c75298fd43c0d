// What the scheduler says of a failure becomes one phrase, whatever it says.
#include <gtest/gtest.h>

#include <string>

#include "backends/cups/CUPSScheduler.h"
#include "tests/support/HostileIPPResponder.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr unsigned char kTextWithoutLanguage = 0x41;

/// The failure of a question for the names that is answered with the bytes.
QueueFailure failureFor(const std::string& answer) {
    const HostileIPPResponder scheduler(HostileIPPResponder::answering(answer));
    QueueFailure failure;
    const auto names =
        CUPSScheduler("127.0.0.1:" + std::to_string(scheduler.port())).queueNames(failure);
    EXPECT_FALSE(names.has_value());
    return failure;
}

/// The reason for an IPP answer of an error with that message.
std::string reasonForMessage(const std::string& message) {
    const QueueFailure failure = failureFor(HostileIPPResponder::HTTPAnswer(
        IPPBytes(0x0500).value(kTextWithoutLanguage, "status-message", message).end()));
    EXPECT_TRUE(failure.isOf(queueSyncCause("scheduler-error")));
    return failure.reason;
}

const std::string kError = "the scheduler answers with an error (server-error-internal-error)";

TEST(SchedulerReasons, TellTheMessageOfTheScheduler) {
    EXPECT_EQ(reasonForMessage("It broke."), kError + ": It broke.");
    EXPECT_EQ(reasonForMessage("Zu gro\xC3\x9F."), kError + ": Zu gro\xC3\x9F.");
    EXPECT_EQ(reasonForMessage(""), kError);
}

TEST(SchedulerReasons, EndWithTheFirstLineOfTheMessage) {
    EXPECT_EQ(reasonForMessage("It broke\nand burnt"), kError + ": It broke");
    EXPECT_EQ(reasonForMessage("It broke\x1B[31m"), kError + ": It broke");
    EXPECT_EQ(reasonForMessage("\nIt broke"), kError);
}

TEST(SchedulerReasons, EndWhereTheMessageIsNoTextAnyLonger) {
    EXPECT_EQ(reasonForMessage("It broke \xFF\xFE"), kError + ": It broke ");
    EXPECT_EQ(reasonForMessage("\xC3"), kError);
}

TEST(SchedulerReasons, EndWithAWholeCharacterWhereTheMessageIsTooLong) {
    const std::string longest(254, 'x');
    EXPECT_EQ(reasonForMessage(longest + "yz"), kError + ": " + longest + "y");
    EXPECT_EQ(reasonForMessage(longest + "\xC3\xBC"), kError + ": " + longest);
}

TEST(SchedulerReasons, HoldTheNumberOfAnHTTPStatusThatNobodyKnows) {
    // No value of libcups's enumeration, which the sanitizers look after.
    const QueueFailure failure =
        failureFor("HTTP/1.1 20001 Oh\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    EXPECT_TRUE(failure.isOf(queueSyncCause("scheduler-error")));
    EXPECT_EQ(failure.reason, "the scheduler answers with an error (HTTP status 20001)");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
