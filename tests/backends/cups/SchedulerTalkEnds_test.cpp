// A talk ends whatever the scheduler does.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "backends/cups/CUPSScheduler.h"
#include "tests/support/HostileIPPResponder.h"

namespace TkPPDUpdating::Testing {
namespace {

TEST(SchedulerTalkEnds, WhenTheSchedulerOnlyEverSaysThatItListens) {
    const HostileIPPResponder scheduler([](const ResponderConnection& connection) {
        if (connection.readRequest()) {
            connection.send("HTTP/1.1 100 Continue\r\n\r\n");
        }
    });
    CUPSScheduler::Limits limits;
    limits.time = std::chrono::seconds(2);
    QueueFailure failureOfTalk;
    // Without a text, libcups takes the request for answered and reads nothing more.
    for (const std::string text : {"", "*PPD-Adobe: \"4.3\"\n"}) {
        QueueFailure failure;
        auto delivery = QueueTalk::Delivery::taken;
        CUPSScheduler("127.0.0.1:" + std::to_string(scheduler.port()), limits)
            .talkAbout(
                "Office", [&](QueueTalk& queue) { delivery = queue.install(text, failure); },
                QueueScheduler::Patience::untilCancelled, failureOfTalk);
        EXPECT_EQ(delivery, QueueTalk::Delivery::unknown);
        EXPECT_TRUE(failure.isOf(queueSyncCause("no-scheduler"))) << failure.reason;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
