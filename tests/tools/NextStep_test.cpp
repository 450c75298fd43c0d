#include "tools/NextStep.h"

#include <gtest/gtest.h>

#include <string>

namespace TkPPDUpdating::Testing {
namespace {

using Cause = OrbCSError::Cause;

std::string after(Cause cause, const std::string& reason = "any") {
    return nextStepAfter(OrbCSError{cause, reason});
}

TEST(NextStep, AfterAnAnswerThatIsNoneOfAPrinterIsAboutTheURI) {
    EXPECT_EQ(after(Cause::unknownHost), "; check how it is written, or write the address");
    EXPECT_EQ(after(Cause::timeout), after(Cause::noConnection));
    for (const char* reason : {"the printer answers client-error-not-found",
                               "the printer answers with the HTTP status 404"}) {
        EXPECT_EQ(after(Cause::deviceError, reason),
                  "; check the path, as a rule it is /ipp/print");
    }
    EXPECT_EQ(after(Cause::notIPP), "; check the port, for IPP it is 631");
}

TEST(NextStep, IsNotToldWhereNothingIsKnown) {
    for (const Cause cause : {Cause::unknown, Cause::unreadableRecording, Cause::brokenAnswer,
                              Cause::accessDenied, Cause::cancelled}) {
        EXPECT_EQ(after(cause), "");
    }
    EXPECT_EQ(after(Cause::deviceError, "the printer answers server-error-busy"), "");
    EXPECT_EQ(nextStepAfter(nullptr), "");
    EXPECT_EQ(nextStepAfter(&queueSyncCause("printing")), "");
}

TEST(NextStep, AfterAMissingQueueIsTheListOfQueues) {
    EXPECT_EQ(nextStepAfter(&queueSyncCause("no-queue")), kQueuesAreListed);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
