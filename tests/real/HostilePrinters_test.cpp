// What printers do that no printer should: each fault with its outcome, in short time limits.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <iterator>
#include <mutex>
#include <new>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "backends/ipp/IPPSchemes.h"
#include "backends/libcups/HTTPTalk.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/TkCSKeys.h"
#include "tests/real/LoopbackPort.h"
#include "tests/support/HostileIPPResponder.h"
#include "tests/support/SanitizerInUse.h"

namespace TkPPDUpdating::Testing {
namespace {

using std::chrono::milliseconds;
using namespace std::string_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kLimit = milliseconds(400);
/// What a loaded machine may add to a time limit.
constexpr auto kSlack = milliseconds(1500);

struct Answer {
    std::shared_ptr<const OrbCSDeviceStatus> status;
    std::string error;
    OrbCSError::Cause cause = OrbCSError::Cause::unknown;
    milliseconds took{0};
};

Answer ask(const std::string& URI, const IPPDeviceStatusLimits& limits,
           const OrbDictionary* parameters = nullptr) {
    DeviceStatusSchemes schemes;
    registerIPPDeviceStatus(schemes, limits);
    Answer answer;
    OrbCSError error;
    const auto begin = Clock::now();
    answer.status = schemes.deviceStatusWithURI_parameters_error(URI, parameters, &error);
    answer.took = std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
    answer.error = error.reason;
    answer.cause = error.cause;
    return answer;
}

Answer ask(const std::string& URI) {
    IPPDeviceStatusLimits limits;
    limits.time = std::chrono::seconds(20);
    return ask(URI, limits);
}

Answer askShortly(const std::string& URI) {
    IPPDeviceStatusLimits limits;
    limits.time = kLimit;
    return ask(URI, limits);
}

/// A whole, decent answer of a printer with a duplexer.
std::string decentAnswer() {
    return IPPBytes()
        .keyword("sides-supported", "one-sided")
        .keyword("", "two-sided-long-edge")
        .end();
}

bool hasDuplexer(const Answer& answer) {
    const auto* accessories =
        answer.status
            ? answer.status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey)
            : nullptr;
    return accessories && accessories->size() == 1 &&
           accessories->front() == OrbCSDeviceAccessory{"Duplexer", true};
}

const std::vector<std::string>& dropped(const Answer& answer) {
    return dynamic_cast<const ReportedDeviceStatus&>(*answer.status).droppedValues();
}

std::string duplexerAnd(IPPBytes& extra) {
    return HostileIPPResponder::HTTPAnswer(
        extra.keyword("sides-supported", "two-sided-long-edge").end());
}

TEST(HostilePrinters, ADecentAnswerGivesTheStatus) {
    HostileIPPResponder printer(
        HostileIPPResponder::answering(HostileIPPResponder::HTTPAnswer(decentAnswer())));
    EXPECT_TRUE(hasDuplexer(ask(printer.URI())));
    EXPECT_EQ(printer.connections(), 1);
}

TEST(HostilePrinters, ARefusedConnectionIsNoStatus) {
    const Answer answer = ask("ipp://127.0.0.1:" + std::to_string(freeLoopbackPort()) + "/ipp");
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_EQ(answer.error, "it does not take a connection");
    EXPECT_EQ(answer.cause, OrbCSError::Cause::noConnection);
}

TEST(HostilePrinters, AnAddressWithoutARouteIsNoStatusWithinTheLimit) {
    // A multicast address: no connection leads there, and the system says so without sending
    // anything.
    const Answer answer = askShortly("ipp://224.0.0.1/ipp/print");
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_NE(answer.error, "");
    EXPECT_LT(answer.took, kLimit + kSlack);
}

TEST(HostilePrinters, AnUnknownHostNameIsNoStatus) {
    // A label of 64 letters, one more than RFC 1035 allows: no server is asked for such a name.
    const Answer answer = askShortly("ipp://" + std::string(64, 'a') + "/ipp/print");
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_TRUE(answer.error == "its name is not known" ||
                answer.error == "its name was not found within 400 ms")
        << answer.error;
    EXPECT_LT(answer.took, kLimit + kSlack);
}

TEST(HostilePrinters, AcceptingAndSayingNothingEndsAtTheLimit) {
    HostileIPPResponder printer([](const ResponderConnection& c) { c.waitForClose(); });
    const Answer answer = askShortly(printer.URI());
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_EQ(answer.error, "there was no whole answer within 400 ms");
    EXPECT_EQ(answer.cause, OrbCSError::Cause::timeout);
    EXPECT_GE(answer.took, kLimit);
    EXPECT_LT(answer.took, kLimit + kSlack);
}

TEST(HostilePrinters, SilenceEndsAtOnceWhenTheExchangeIsCancelled) {
    std::atomic<bool> isCancelled{false};
    HostileIPPResponder printer([&isCancelled](const ResponderConnection& c) {
        isCancelled = true;
        c.waitForClose();
    });
    IPPDeviceStatusLimits limits;
    limits.time = std::chrono::seconds(60);
    limits.isCancelled = &isCancelled;
    const Answer answer = ask(printer.URI(), limits);
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_EQ(answer.error, "interrupted");
    EXPECT_EQ(answer.cause, OrbCSError::Cause::cancelled);
    EXPECT_LT(answer.took, std::chrono::seconds(30));
}

TEST(HostilePrinters, SilenceInATLSHandshakeEndsAtTheLimit) {
    HostileIPPResponder printer([](const ResponderConnection& c) { c.waitForClose(); });
    const Answer answer = askShortly("ipps" + printer.URI().substr(3));
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_EQ(answer.error, "there was no whole answer within 400 ms");
    EXPECT_EQ(answer.cause, OrbCSError::Cause::timeout);
    EXPECT_LT(answer.took, kLimit + kSlack);
}

TEST(HostilePrinters, ADrippingTLSHandshakeEndsAtTheLimit) {
    // The beginning of a handshake record (RFC 8446) that says it has 16 KB.
    HostileIPPResponder printer([](const ResponderConnection& c) {
        c.drip(std::string("\x16\x03\x03\x40\x00", 5) + std::string(16384, '\x02'),
               milliseconds(20));
    });
    const Answer answer = askShortly("ipps" + printer.URI().substr(3));
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_LT(answer.took, kLimit + kSlack);
}

TEST(HostilePrinters, FilterModeHasItsOwnShorterLimit) {
    HostileIPPResponder printer([](const ResponderConnection& c) { c.waitForClose(); });
    IPPDeviceStatusLimits limits;
    limits.filterModeTime = milliseconds(100);
    const OrbDictionary filterMode = {{std::string(kTkCSIsCUPSFilterModeKey), true}};
    EXPECT_EQ(ask(printer.URI(), limits, &filterMode).error,
              "there was no whole answer within 100 ms");
    limits.time = milliseconds(200);
    const OrbDictionary noFilterMode = {{std::string(kTkCSIsCUPSFilterModeKey), false}};
    EXPECT_EQ(ask(printer.URI(), limits, &noFilterMode).error,
              "there was no whole answer within 200 ms");
}

TEST(HostilePrinters, FilterModeIsShorterThanTheUsualLimitByDefault) {
    EXPECT_LT(IPPDeviceStatusLimits().filterModeTime, IPPDeviceStatusLimits().time);
}

/// Where the drip begins.
class DrippingPrinters : public testing::TestWithParam<std::pair<const char*, std::size_t>> {};

TEST_P(DrippingPrinters, EndsAtTheLimit) {
    const std::string whole = HostileIPPResponder::HTTPAnswer(decentAnswer());
    const std::size_t quick = GetParam().second;
    HostileIPPResponder printer([&](const ResponderConnection& c) {
        c.readRequest();
        c.send(whole.substr(0, quick));
        c.drip(whole.substr(quick), milliseconds(100));
    });
    const Answer answer = askShortly(printer.URI());
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_EQ(answer.error, "there was no whole answer within 400 ms");
    EXPECT_EQ(answer.cause, OrbCSError::Cause::timeout);
    EXPECT_LT(answer.took, kLimit + kSlack);
}

INSTANTIATE_TEST_SUITE_P(ByteAfterByte, DrippingPrinters,
                         testing::Values(std::pair("StatusLine", std::size_t{0}),
                                         std::pair("Headers", std::size_t{20}),
                                         std::pair("Body", std::size_t{90})),
                         [](const auto& drip) { return drip.param.first; });

TEST(HostilePrinters, EndlessHeadersEndAtTheLimit) {
    HostileIPPResponder printer([](const ResponderConnection& c) {
        c.readRequest();
        c.send("HTTP/1.1 200 OK\r\n");
        while (c.send("X-Noise: " + std::string(1000, 'x') + "\r\n")) {
        }
    });
    const Answer answer = askShortly(printer.URI());
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_LT(answer.took, kLimit + kSlack);
}

TEST(HostilePrinters, EndlessContinueEndsAtTheLimit) {
    HostileIPPResponder printer([](const ResponderConnection& c) {
        c.readRequest();
        while (c.send("HTTP/1.1 100 Continue\r\n\r\n")) {
        }
    });
    const Answer answer = askShortly(printer.URI());
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_LT(answer.took, kLimit + kSlack);
}

TEST(HostilePrinters, ClosingBeforeTheAnswerIsNoStatus) {
    HostileIPPResponder printer([](const ResponderConnection& c) { c.readRequest(); });
    const Answer answer = ask(printer.URI());
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_EQ(answer.error, "the connection was closed before an answer");
    EXPECT_EQ(answer.cause, OrbCSError::Cause::brokenAnswer);
}

TEST(HostilePrinters, ClosingAfterAnyByteIsNoStatus) {
    // Every place, and so also the middle of every length field.
    const std::string whole = HostileIPPResponder::HTTPAnswer(decentAnswer());
    std::atomic<std::size_t> length{0};
    HostileIPPResponder printer([&](const ResponderConnection& c) {
        c.readRequest();
        c.send(whole.substr(0, length));
    });
    for (; length < whole.size(); ++length) {
        const Answer answer = ask(printer.URI());
        EXPECT_EQ(answer.status, nullptr) << "after " << length << " bytes";
        EXPECT_NE(answer.error, "") << "after " << length << " bytes";
    }
    EXPECT_TRUE(hasDuplexer(ask(printer.URI())));
}

TEST(HostilePrinters, AMessageThatEndsAfterAnyByteIsNoStatus) {
    // The HTTP answer is whole, what it holds is not.
    const std::string whole = decentAnswer();
    std::atomic<std::size_t> length{0};
    HostileIPPResponder printer([&](const ResponderConnection& c) {
        c.readRequest();
        c.send(HostileIPPResponder::HTTPAnswer(std::string_view(whole).substr(0, length)));
    });
    for (; length < whole.size(); ++length) {
        const Answer answer = ask(printer.URI());
        EXPECT_EQ(answer.status, nullptr) << "after " << length << " bytes";
        EXPECT_TRUE(answer.error.starts_with("the answer is cut short")) << answer.error;
    }
}

TEST(HostilePrinters, GarbageIsNoStatus) {
    std::string garbage = "HTTP/1.1 200 OK\r\nContent-Type: application/ipp\r\n\r\n";
    for (int number = 0; number < 5000; ++number) {
        garbage += static_cast<char>(number * 7919 >> 3);
    }
    HostileIPPResponder printer([&](const ResponderConnection& c) {
        c.readRequest();
        c.send(garbage);
    });
    EXPECT_EQ(ask(printer.URI()).status, nullptr);
}

TEST(HostilePrinters, WhatIsNoHTTPIsNoStatus) {
    HostileIPPResponder printer([&](const ResponderConnection& c) {
        c.readRequest();
        c.send("220 mail.example.com ESMTP\r\n");
    });
    EXPECT_EQ(ask(printer.URI()).status, nullptr);
}

struct HTTPCase {
    const char* name;
    const char* head;
    const char* error;
    OrbCSError::Cause cause;
    int connections = 1;
};

class HTTPFaults : public testing::TestWithParam<HTTPCase> {};

TEST_P(HTTPFaults, AreNoStatus) {
    HostileIPPResponder printer([&](const ResponderConnection& c) {
        c.readRequest();
        c.send(std::string(GetParam().head) + "Content-Length: 0\r\n\r\n");
    });
    const Answer answer = ask(printer.URI());
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_EQ(answer.error, GetParam().error);
    EXPECT_EQ(answer.cause, GetParam().cause);
    EXPECT_EQ(printer.connections(), GetParam().connections);
}

INSTANTIATE_TEST_SUITE_P(
    ByStatus, HTTPFaults,
    testing::Values(
        HTTPCase{"NotFound", "HTTP/1.1 404 Not Found\r\n",
                 "the printer answers with the HTTP status 404", OrbCSError::Cause::deviceError},
        HTTPCase{"ServerError", "HTTP/1.1 500 Oh\r\n",
                 "the printer answers with the HTTP status 500", OrbCSError::Cause::deviceError, 2},
        HTTPCase{"Password", "HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"P\"\r\n",
                 "the printer asks for a password", OrbCSError::Cause::accessDenied},
        HTTPCase{"Upgrade", "HTTP/1.1 426 Upgrade\r\n",
                 "the printer wants an encrypted connection (ipps:)",
                 OrbCSError::Cause::accessDenied},
        // No value of libcups's enumeration, which the sanitizers look after.
        HTTPCase{"NobodysStatus", "HTTP/1.1 20001 Oh\r\n",
                 "the printer answers with the HTTP status 20001", OrbCSError::Cause::deviceError,
                 2},
        HTTPCase{"HTMLPage", "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n",
                 "the answer is not IPP", OrbCSError::Cause::notIPP}),
    [](const auto& fault) { return fault.param.name; });

TEST(HostilePrinters, ACompressedAnswerThatNobodyReadsLeavesNothingBehind) {
    // The sanitizers look after the memory.
    HostileIPPResponder printer(HostileIPPResponder::answering(
        "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Encoding: gzip\r\n"
        "Content-Length: 5\r\n\r\nhello"));
    EXPECT_EQ(ask(printer.URI()).error, "the answer is not IPP");
}

TEST(HostilePrinters, ARedirectIsNotFollowed) {
    HostileIPPResponder other(
        HostileIPPResponder::answering(HostileIPPResponder::HTTPAnswer(decentAnswer())));
    for (const char* code : {"301", "302", "303", "307", "308"}) {
        HostileIPPResponder printer([&](const ResponderConnection& c) {
            c.readRequest();
            c.send(std::string("HTTP/1.1 ") + code + " Over there\r\nLocation: " + other.URI() +
                   "\r\nContent-Length: 0\r\n\r\n");
        });
        EXPECT_EQ(ask(printer.URI()).status, nullptr) << code;
    }
    EXPECT_EQ(other.connections(), 0);
}

TEST(HostilePrinters, AnIPPErrorIsNoStatus) {
    HostileIPPResponder printer(
        HostileIPPResponder::answering(HostileIPPResponder::HTTPAnswer(IPPBytes(0x0406).end())));
    EXPECT_EQ(ask(printer.URI()).error, "the printer answers client-error-not-found");
}

TEST(HostilePrinters, EveryCodeOfSuccessGivesTheStatus) {
    // RFC 8011, appendix B: 0x0000 to 0x00FF.
    for (const std::uint16_t code : std::array<std::uint16_t, 6>{0, 1, 2, 3, 7, 0x00FF}) {
        IPPBytes bytes(code);
        HostileIPPResponder printer(HostileIPPResponder::answering(duplexerAnd(bytes)));
        EXPECT_TRUE(hasDuplexer(ask(printer.URI()))) << code;
    }
    IPPBytes bytes(0x0100);
    HostileIPPResponder printer(HostileIPPResponder::answering(duplexerAnd(bytes)));
    EXPECT_EQ(ask(printer.URI()).status, nullptr);
}

/// What a printer was asked: the version and whether the media database was among it.
struct Question {
    std::string version;
    bool hasDatabase = false;

    explicit Question(const std::string& request)
        : version(request.substr(request.find("\r\n\r\n") + 4, 2)),
          hasDatabase(request.find("media-col-database") != std::string::npos) {}
};

/// A printer that answers each question anew, and remembers them.
class QuestionedPrinter {
  public:
    using Reply = std::function<std::string(std::size_t number, const Question& question)>;

    /// An empty reply closes the connection.
    explicit QuestionedPrinter(Reply reply)
        : responder_([this, reply = std::move(reply)](const ResponderConnection& c) {
              std::string request;
              while (c.readRequest(&request)) {
                  const std::lock_guard lock(mutex_);
                  questions_.emplace_back(request);
                  const std::string bytes = reply(questions_.size() - 1, questions_.back());
                  if (bytes.empty() || !c.send(bytes)) {
                      return;
                  }
              }
          }) {}

    std::string URI() const { return responder_.URI(); }
    std::vector<Question> questions() {
        const std::lock_guard lock(mutex_);
        return questions_;
    }

  private:
    std::mutex mutex_;
    std::vector<Question> questions_;
    HostileIPPResponder responder_;
};

std::string answerWithCode(std::uint16_t code) {
    return HostileIPPResponder::HTTPAnswer(IPPBytes(code).end());
}

/// What some printers do as soon as they are asked for their media database.
struct FirstReplyCase {
    const char* name;
    std::string bytes;
    const char* reason;
};

class FirstReplies : public testing::TestWithParam<FirstReplyCase> {};

TEST_P(FirstReplies, ThatAreNoUsableAnswerAreFollowedByASmallerQuestion) {
    QuestionedPrinter printer([](std::size_t number, const Question& /*question*/) {
        IPPBytes bytes;
        bytes.value(0x42, "media-type-supported", "My Gloss");
        return number == 0 ? GetParam().bytes : duplexerAnd(bytes);
    });
    const Answer answer = ask(printer.URI());
    ASSERT_TRUE(hasDuplexer(answer)) << answer.error;
    const auto questions = printer.questions();
    ASSERT_EQ(questions.size(), 2U);
    EXPECT_EQ(questions[0].version, "\2\0"s);
    EXPECT_TRUE(questions[0].hasDatabase);
    EXPECT_EQ(questions[1].version, "\1\1"s);
    EXPECT_FALSE(questions[1].hasDatabase);
    EXPECT_EQ(dropped(answer),
              std::vector<std::string>{"media-col-database: " + std::string(GetParam().reason) +
                                       ", so it was asked again without: media types that are in "
                                       "it alone are left out"});
    // Those that are there are told, and not whether there are others.
    const auto& told = dynamic_cast<const ReportedDeviceStatus&>(*answer.status).toldEntries();
    ASSERT_TRUE(told.has_value());
    EXPECT_TRUE(told->contains("CustomMediaTypes.reported"));
    EXPECT_FALSE(told->contains("CustomMediaTypes"));
}

TEST_P(FirstReplies, ThatAreRepeatedAreNoStatusAfterTwoQuestions) {
    QuestionedPrinter printer(
        [](std::size_t /*number*/, const Question& /*question*/) { return GetParam().bytes; });
    const Answer answer = ask(printer.URI());
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_EQ(answer.error, GetParam().reason);
    EXPECT_EQ(printer.questions().size(), 2U);
}

std::string cutBody() {
    const std::string whole = HostileIPPResponder::HTTPAnswer(decentAnswer());
    return whole.substr(0, whole.size() - 20);
}

/// With the end of the connection, which cuts it.
std::string withClose(std::string head) {
    return head.insert(head.find("\r\n") + 2, "Connection: close\r\n");
}

INSTANTIATE_TEST_SUITE_P(
    ByReply, FirstReplies,
    testing::Values(FirstReplyCase{"Closed", "", "the connection was closed before an answer"},
                    FirstReplyCase{"EmptyBody", HostileIPPResponder::HTTPAnswer(""),
                                   "the answer is cut short: it has no whole header"},
                    FirstReplyCase{"CutMessage",
                                   HostileIPPResponder::HTTPAnswer(
                                       decentAnswer().substr(0, decentAnswer().size() - 1)),
                                   "the answer is cut short: it has no end"},
                    FirstReplyCase{"InternalError", answerWithCode(0x0500),
                                   "the printer answers server-error-internal-error"},
                    FirstReplyCase{"BadRequest", answerWithCode(0x0400),
                                   "the printer answers client-error-bad-request"},
                    FirstReplyCase{"TooLargeForIt", answerWithCode(0x0409),
                                   "the printer answers client-error-request-value-too-long"},
                    FirstReplyCase{"NothingThatWasAskedFor", answerWithCode(0),
                                   "the answer has none of the attributes that it was asked for"},
                    FirstReplyCase{"HTTPError", "HTTP/1.1 500 Oh\r\nContent-Length: 0\r\n\r\n",
                                   "the printer answers with the HTTP status 500"}),
    [](const auto& reply) { return reply.param.name; });

TEST(HostilePrinters, AnAnswerThatIsCutByTheEndOfTheConnectionIsFollowedByASmallerQuestion) {
    std::atomic<int> requests{0};
    HostileIPPResponder printer([&](const ResponderConnection& c) {
        c.readRequest();
        c.send(requests++ == 0 ? cutBody()
                               : withClose(HostileIPPResponder::HTTPAnswer(decentAnswer())));
    });
    EXPECT_TRUE(hasDuplexer(ask(printer.URI())));
    EXPECT_EQ(requests, 2);
}

TEST(HostilePrinters, AnAnswerThatIsTooLongIsFollowedByASmallerQuestion) {
    QuestionedPrinter printer([](std::size_t /*number*/, const Question& question) {
        IPPBytes bytes;
        if (question.hasDatabase) {
            bytes.keyword("noise", std::string(30'000, 'x'));
        }
        return duplexerAnd(bytes);
    });
    IPPDeviceStatusLimits limits;
    limits.bytes = 20'000;
    EXPECT_TRUE(hasDuplexer(ask(printer.URI(), limits)));
}

TEST(HostilePrinters, APrinterThatDoesNotKnowTheVersionIsAskedForEverythingInTheOldOne) {
    QuestionedPrinter printer([](std::size_t /*number*/, const Question& question) {
        IPPBytes bytes;
        bytes.value(0x34, "media-col-database", "")
            .value(0x4A, "", "media-type")
            .value(0x42, "", "My Gloss")
            .value(0x37, "", "");
        return question.version == "\2\0"s ? answerWithCode(0x0503) : duplexerAnd(bytes);
    });
    const Answer answer = ask(printer.URI());
    ASSERT_TRUE(hasDuplexer(answer)) << answer.error;
    ASSERT_EQ(printer.questions().size(), 2U);
    EXPECT_EQ(printer.questions()[1].version, "\1\1"s);
    EXPECT_TRUE(printer.questions()[1].hasDatabase);
    EXPECT_EQ(dropped(answer), std::vector<std::string>());
}

TEST(HostilePrinters, ASilentPrinterIsNotAskedAgain) {
    std::atomic<int> requests{0};
    HostileIPPResponder printer([&](const ResponderConnection& c) {
        ++requests;
        c.readRequest();
        c.waitForClose();
    });
    EXPECT_EQ(askShortly(printer.URI()).status, nullptr);
    EXPECT_EQ(requests, 1);
}

TEST(HostilePrinters, BothQuestionsShareOneLimit) {
    std::atomic<int> requests{0};
    HostileIPPResponder printer([&](const ResponderConnection& c) {
        while (c.readRequest()) {
            if (requests++ > 0) {
                c.waitForClose();
                return;
            }
            std::this_thread::sleep_for(kLimit / 2);
            c.send(answerWithCode(0x0500));
        }
    });
    const Answer answer = askShortly(printer.URI());
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_EQ(answer.error, "the printer answers server-error-internal-error");
    EXPECT_EQ(requests, 2);
    EXPECT_GE(answer.took, kLimit);
    EXPECT_LT(answer.took, kLimit + kSlack);
}

TEST(HostilePrinters, APrinterOfIPP11ThatClosesAfterEachAnswerIsAskedAgain) {
    std::atomic<int> requests{0};
    HostileIPPResponder printer([&](const ResponderConnection& c) {
        c.readRequest();
        const std::string body = requests++ == 0 ? IPPBytes(0x0503).end() : decentAnswer();
        c.send(
            "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: application/ipp\r\n"
            "Content-Length: " +
            std::to_string(body.size()) + "\r\n\r\n" + body);
    });
    const Answer answer = ask(printer.URI());
    EXPECT_TRUE(hasDuplexer(answer)) << answer.error;
    EXPECT_EQ(requests, 2);
}

TEST(HostilePrinters, AnAnswerInChunksCountsAndNoneCountsThatIsCut) {
    const std::string body = decentAnswer();
    const std::string head =
        "HTTP/1.1 200 OK\r\nContent-Type: application/ipp\r\nTransfer-Encoding: chunked\r\n\r\n"
        "10\r\n" +
        body.substr(0, 16) + "\r\n";
    std::array<char, 16> length{};
    std::snprintf(length.data(), length.size(), "%zx\r\n", body.size() - 16);
    const std::string whole = head + length.data() + body.substr(16) + "\r\n0\r\n\r\n";
    std::atomic<std::size_t> bytes{whole.size()};
    HostileIPPResponder printer([&](const ResponderConnection& c) {
        c.readRequest();
        c.send(std::string_view(whole).substr(0, bytes));
    });
    EXPECT_TRUE(hasDuplexer(ask(printer.URI())));
    for (bytes = 0; bytes < whole.find(body.substr(16)) + body.size() - 16; ++bytes) {
        const Answer answer = ask(printer.URI());
        EXPECT_EQ(answer.status, nullptr) << "after " << bytes << " bytes";
        EXPECT_NE(answer.error, "") << "after " << bytes << " bytes";
    }
}

TEST(HostilePrinters, AnAnswerThatEndsWithTheConnectionCounts) {
    // RFC 9112, section 6.3: neither a length nor chunks.
    HostileIPPResponder printer([](const ResponderConnection& c) {
        c.readRequest();
        c.send("HTTP/1.1 200 OK\r\nContent-Type: application/ipp\r\n\r\n" + decentAnswer());
    });
    const Answer answer = ask(printer.URI());
    EXPECT_TRUE(hasDuplexer(answer)) << answer.error;
}

TEST(HostilePrinters, AnAnswerOf64MegabytesIsRefusedAtTheLimitOfBytes) {
    HostileIPPResponder printer([](const ResponderConnection& c) {
        c.readRequest();
        c.send(
            "HTTP/1.1 200 OK\r\nContent-Type: application/ipp\r\nContent-Length: 67108864\r\n\r\n");
        const std::string megabyte(1U << 20U, '\0');
        for (int count = 0; count < 64 && c.send(megabyte); ++count) {
        }
    });
    const Answer answer = ask(printer.URI());
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_EQ(answer.error, "the answer is longer than 4194304 bytes");
}

TEST(HostilePrinters, AnAnswerOf100000AttributesIsRefused) {
    IPPBytes bytes;
    for (int number = 0; number < 100'000; ++number) {
        bytes.integer("noise-" + std::to_string(number), number);
    }
    HostileIPPResponder printer(HostileIPPResponder::answering(duplexerAnd(bytes)));
    const Answer answer = ask(printer.URI());
    EXPECT_EQ(answer.status, nullptr);
    EXPECT_EQ(answer.error, "the answer has more than 10000 attributes");
}

TEST(HostilePrinters, AttributesThatNobodyAskedForAreIgnored) {
    IPPBytes bytes;
    for (int number = 0; number < 5000; ++number) {
        bytes.value(0x7E, "noise-" + std::to_string(number), "no syntax at all");
    }
    HostileIPPResponder printer(HostileIPPResponder::answering(duplexerAnd(bytes)));
    EXPECT_TRUE(hasDuplexer(ask(printer.URI())));
}

struct StrayCase {
    const char* name;
    IPPBytes bytes;
    /// The reason, when the attribute is one that was asked for.
    const char* reason;
};

IPPBytes openCollection(const std::string& attribute) {
    return IPPBytes().value(0x34, attribute, "").value(0x4A, "", "media-info");
}

/// Malformed attributes of that name, each followed by nothing of its own.
std::vector<StrayCase> strayCases(const std::string& attribute) {
    return {
        {"MemberName", IPPBytes().value(0x4A, attribute, "media-info"),
         "value 1 is a member outside of a collection"},
        {"EndOfCollection", IPPBytes().value(0x37, attribute, ""),
         "value 1 is a member outside of a collection"},
        {"MemberBehindAValue",
         IPPBytes().value(0x44, attribute, "x").value(0x4A, "", "media-info").value(0x37, "", ""),
         "value 2 is a member outside of a collection"},
        {"CollectionBeforeAnAttribute", openCollection(attribute),
         "value 1 is a collection that does not end"},
        {"CollectionBeforeADelimiter", openCollection(attribute).delimiter(0x04),
         "value 1 is a collection that does not end"},
        {"CollectionThatGoesOnBehindADelimiter",
         openCollection(attribute).delimiter(0x04).value(0x44, "", "x").value(0x37, "", ""),
         "value 1 is a collection that does not end"},
    };
}

TEST(HostilePrinters, StrayMembersAndDelimitersInAttributesThatNobodyAskedForAreIgnored) {
    for (StrayCase& each : strayCases("noise")) {
        HostileIPPResponder printer(HostileIPPResponder::answering(duplexerAnd(each.bytes)));
        const Answer answer = ask(printer.URI());
        ASSERT_TRUE(hasDuplexer(answer)) << each.name << ": " << answer.error;
        EXPECT_EQ(dropped(answer), std::vector<std::string>()) << each.name;
    }
}

TEST(HostilePrinters, StrayMembersAndDelimitersDropTheValueAndNotTheAnswer) {
    for (StrayCase& each : strayCases("media-col-database")) {
        HostileIPPResponder printer(HostileIPPResponder::answering(duplexerAnd(each.bytes)));
        const Answer answer = ask(printer.URI());
        ASSERT_TRUE(hasDuplexer(answer)) << each.name << ": " << answer.error;
        const auto& reasons = dropped(answer);
        const std::string reason =
            "media-col-database: " + std::string(each.reason) + ", this media type is left out";
        EXPECT_NE(std::find(reasons.begin(), reasons.end(), reason), reasons.end()) << each.name;
    }
}

TEST(HostilePrinters, ACollectionThatDoesNotEndInAnotherGroupGivesTheStatusNothing) {
    // Behind the delimiter of another group, nothing counts as the printer's.
    IPPBytes bytes = openCollection("media-col-database");
    bytes.delimiter(0x02);
    HostileIPPResponder printer(HostileIPPResponder::answering(duplexerAnd(bytes)));
    const Answer answer = ask(printer.URI());
    ASSERT_NE(answer.status, nullptr) << answer.error;
    EXPECT_FALSE(hasDuplexer(answer));
}

IPPBytes nestedCollections(int depth) {
    IPPBytes bytes;
    bytes.value(0x34, "media-col-database", "");
    for (int level = 1; level < depth; ++level) {
        bytes.value(0x4A, "", "deeper").value(0x34, "", "");
    }
    for (int level = 0; level < depth; ++level) {
        bytes.value(0x37, "", "");
    }
    return bytes;
}

TEST(HostilePrinters, CollectionsNested1000DeepAreDroppedAndTheRestCounts) {
    IPPBytes bytes = nestedCollections(1000);
    HostileIPPResponder printer(HostileIPPResponder::answering(duplexerAnd(bytes)));
    const Answer answer = ask(printer.URI());
    ASSERT_TRUE(hasDuplexer(answer));
    EXPECT_EQ(dropped(answer),
              std::vector<std::string>{
                  "media-col-database: value 1 is nested too deep, this media type is left out"});
}

TEST(HostilePrinters, OneAttributeTwiceWithTwoTypesCountsWithTheRightOne) {
    IPPBytes bytes;
    bytes.integer("sides-supported", 7);
    HostileIPPResponder printer(HostileIPPResponder::answering(duplexerAnd(bytes)));
    const Answer answer = ask(printer.URI());
    ASSERT_TRUE(hasDuplexer(answer));
    EXPECT_EQ(dropped(answer), std::vector<std::string>{"sides-supported: has the syntax integer"});
}

TEST(HostilePrinters, AWrongLengthDropsTheValueAndNotTheAnswer) {
    IPPBytes bytes;
    bytes.value(0x32, "printer-resolution-supported", "short");
    HostileIPPResponder printer(HostileIPPResponder::answering(duplexerAnd(bytes)));
    const Answer answer = ask(printer.URI());
    ASSERT_TRUE(hasDuplexer(answer));
    EXPECT_EQ(dropped(answer),
              std::vector<std::string>{
                  "printer-resolution-supported: value 1 has the wrong length for its syntax, this "
                  "resolution is left out"});
}

/// A value that is taken out of a set of texts.
struct BadValueCase {
    const char* name;
    unsigned char tag;
    std::string value;
    /// Null for one that is well-formed, and so is looked at only where it is used.
    const char* reason;
};

class BadValuesInSets : public testing::TestWithParam<BadValueCase> {
  protected:
    static std::string pensValue(const Answer& answer, const char* key) {
        const auto* pens = answer.status ? answer.status->statusValueForKey<OrbCSPensConfiguration>(
                                               kTkCSInstalledPensConfigurationKey)
                                         : nullptr;
        if (!pens) {
            return "not reported";
        }
        const auto found = pens->PPDAttributeValues.find(key);
        return found == pens->PPDAttributeValues.end() ? "not reported" : found->second;
    }

    static Answer askForPens(IPPBytes& lists) {
        HostileIPPResponder printer(HostileIPPResponder::answering(duplexerAnd(lists)));
        return ask(printer.URI());
    }
};

IPPBytes threePens() {
    IPPBytes bytes;
    return bytes.keyword("marker-types", "toner").keyword("", "ink").keyword("", "toner");
}

TEST_P(BadValuesInSets, LeaveTheOthersInTheirPlaces) {
    IPPBytes bytes = threePens();
    bytes.value(0x42, "marker-names", "A")
        .value(GetParam().tag, "", GetParam().value)
        .value(0x42, "", "C")
        .value(0x42, "marker-colors", "none")
        .value(0x42, "", "magenta")
        .value(0x42, "", "none");
    const Answer answer = askForPens(bytes);
    EXPECT_EQ(pensValue(answer, "ZrPenDyes"), "A,M,C");
    EXPECT_EQ(dropped(answer), GetParam().reason
                                   ? std::vector<std::string>{"marker-names: value 2 " +
                                                              std::string(GetParam().reason) +
                                                              ", this name is left out"}
                                   : std::vector<std::string>());
}

TEST_P(BadValuesInSets, LeaveTheDyesUnreportedWhereTheyAreNeeded) {
    IPPBytes bytes = threePens();
    bytes.value(0x42, "marker-names", "A")
        .value(GetParam().tag, "", GetParam().value)
        .value(0x42, "", "C")
        .integer("marker-levels", 50)
        .integer("", 50)
        .integer("", 0);
    const Answer answer = askForPens(bytes);
    EXPECT_EQ(pensValue(answer, "ZrPenDyes"), "not reported");
    EXPECT_EQ(pensValue(answer, "ZrPenInkSufficient"), "not reported");
    EXPECT_EQ(dropped(answer).back(),
              "marker-types, value 2: has no usable name, the inks are not reported");
}

TEST_P(BadValuesInSets, LeaveTheOthersInTheirPlacesAtTheBeginningToo) {
    IPPBytes bytes = threePens();
    bytes.value(0x42, "marker-names", "A").value(0x42, "", "B").value(0x42, "", "C");
    bytes.value(GetParam().tag, "marker-colors", GetParam().value)
        .value(0x42, "", "magenta")
        .value(0x42, "", "#FFFF00");
    const Answer answer = askForPens(bytes);
    EXPECT_EQ(pensValue(answer, "ZrPenDyes"), "A,M,Y");
}

INSTANTIATE_TEST_SUITE_P(
    ByValue, BadValuesInSets,
    testing::Values(
        BadValueCase{"NUL", 0x42, std::string("B\0B", 3), "has the character U+0000"},
        BadValueCase{"NULBehindALanguage", 0x36, std::string("\0\2en\0\3B\0B", 9),
                     "has the character U+0000"},
        BadValueCase{"TooLongForIPP", 0x42, std::string(1100, 'x'), "is longer than 1023 bytes"},
        BadValueCase{"TooLongForAName", 0x42, std::string(256, 'x'), nullptr},
        BadValueCase{"NoUTF8", 0x42, "B\xFF", nullptr}, BadValueCase{"Empty", 0x42, "", nullptr},
        BadValueCase{"NoLanguage", 0x36, "B", "is no text with its language"},
        BadValueCase{"OutOfBand", 0x13, "", "says that there is no value"},
        BadValueCase{"UnknownSyntax", 0x7E, "B", "has a syntax that IPP does not know"},
        BadValueCase{"WrongLength", 0x22, "BBBB", "has the wrong length for its syntax"}),
    [](const auto& value) { return value.param.name; });

using ValuesInSets = BadValuesInSets;

TEST_F(ValuesInSets, OfAnotherSyntaxLeaveTheOthersInTheirPlaces) {
    IPPBytes bytes = threePens();
    bytes.value(0x42, "marker-names", "A").integer("", 7).value(0x42, "", "D");
    bytes.value(0x42, "marker-colors", "none").value(0x42, "", "cyan").value(0x42, "", "none");
    EXPECT_EQ(pensValue(askForPens(bytes), "ZrPenDyes"), "A,C,D");
}

TEST_F(ValuesInSets, ThatAreNoLevelsMakeTheirLevelUnknown) {
    IPPBytes bytes = threePens();
    bytes.value(0x42, "marker-names", "A").value(0x42, "", "B").value(0x42, "", "C");
    bytes.value(0x21, "marker-levels", "abc").integer("", 50).integer("", 50);
    EXPECT_EQ(pensValue(askForPens(bytes), "ZrPenInkSufficient"), "not reported");
}

TEST_F(ValuesInSets, ThatAreNoSuppliesLeaveOpenWhichInksThereAre) {
    IPPBytes bytes;
    bytes.value(0x30, "printer-supply", "type=toner;level=50;colorantname=cyan;")
        .value(0x30, "", "type=toner;level=" + std::string(1100, '1') + ";")
        .value(0x30, "", "type=toner;level=0;colorantname=black;");
    const Answer answer = askForPens(bytes);
    EXPECT_EQ(pensValue(answer, "ZrPenDyes"), "not reported");
    EXPECT_EQ(pensValue(answer, "ZrPenInkSufficient"), "not reported");
    EXPECT_EQ(dropped(answer), std::vector<std::string>{"printer-supply: value 2 is longer than "
                                                        "1023 bytes, this supply is left out"});
}

TEST_F(ValuesInSets, ThatAreNoDescriptionsLeaveTheOthersInTheirPlaces) {
    IPPBytes bytes;
    bytes.value(0x30, "printer-supply", "type=toner;level=50;")
        .value(0x30, "", "type=toner;level=50;colorantname=magenta;")
        .value(0x30, "", "type=toner;level=0;");
    bytes.value(0x41, "printer-supply-description", "A")
        .value(0x41, "", "B\0"s)
        .value(0x41, "", "C");
    const Answer answer = askForPens(bytes);
    EXPECT_EQ(pensValue(answer, "ZrPenDyes"), "A,M,C");
    EXPECT_EQ(pensValue(answer, "ZrPenInkSufficient"), "1,1,0");
}

TEST_F(ValuesInSets, ThatAreAllBadAreNoAttribute) {
    IPPBytes bytes = threePens();
    bytes.value(0x13, "marker-names", "").value(0x12, "", "");
    EXPECT_EQ(pensValue(askForPens(bytes), "ZrPenDyes"), "not reported");
}

TEST_F(ValuesInSets, AreToldByTheirPlaces) {
    IPPBytes bytes;
    bytes.value(0x44, "urf-supported", std::string("RS\0", 3))
        .value(0x44, "", "RSx")
        .value(0x44, "", "RS600");
    EXPECT_EQ(dropped(askForPens(bytes)),
              (std::vector<std::string>{
                  "urf-supported: value 1 has the character U+0000, this resolution is left out",
                  "urf-supported: value 2 holds what is no resolution, this resolution is left "
                  "out"}));
}

TEST_F(ValuesInSets, OfAURIAreNoTypesOfSuppliesAndThoseOfAnEnumNoLevels) {
    IPPBytes bytes;
    bytes.value(0x45, "marker-types", "ink")
        .value(0x44, "marker-types", "toner")
        .value(0x42, "marker-names", "A")
        .value(0x23, "marker-levels", std::string("\0\0\0\0", 4))
        .integer("marker-levels", 50);
    const Answer answer = askForPens(bytes);
    EXPECT_EQ(pensValue(answer, "ZrPenInkSufficient"), "1");
    EXPECT_EQ(dropped(answer), (std::vector<std::string>{"marker-types: has the syntax uri",
                                                         "marker-levels: has the syntax enum"}));
}

struct NameCase {
    const char* name;
    std::string text;
    const char* reason;
};

class HostileNames : public testing::TestWithParam<NameCase> {};

TEST_P(HostileNames, AreDroppedWithTheReason) {
    IPPBytes bytes;
    bytes.value(0x42, "media-type-supported", GetParam().text).value(0x42, "", "Decent Gloss");
    HostileIPPResponder printer(HostileIPPResponder::answering(duplexerAnd(bytes)));
    const Answer answer = ask(printer.URI());
    ASSERT_NE(answer.status, nullptr) << answer.error;
    const auto* types =
        answer.status->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey);
    ASSERT_NE(types, nullptr);
    ASSERT_EQ(types->size(), 1U);
    EXPECT_EQ(types->front()->name(), "Decent Gloss");
    EXPECT_EQ(dropped(answer),
              std::vector<std::string>{std::string("media-type-supported: value 1 ") +
                                       GetParam().reason + ", this media type is left out"});
}

INSTANTIATE_TEST_SUITE_P(
    ByText, HostileNames,
    testing::Values(
        NameCase{"Quote", "x\"\n*cupsFilter: \"y", "has the character U+0022 at byte 1"},
        NameCase{"LineFeed", "x\n*cupsFilter2: y", "has the character U+000A at byte 1"},
        NameCase{"CarriageReturn", "gloss\r", "has the character U+000D at byte 5"},
        NameCase{"NUL", std::string("x\0y", 3), "has the character U+0000"},
        NameCase{"InvalidUTF8", "gl\xC3", "is not valid UTF-8 at byte 2"},
        NameCase{"OverlongUTF8", "\xC0\xAF", "is not valid UTF-8 at byte 0"},
        NameCase{"LineSeparator", "a\xE2\x80\xA8z", "has the character U+2028 at byte 1"},
        NameCase{"Empty", "", "is empty"},
        NameCase{"Of256Bytes", std::string(256, 'x'), "is longer than 255 bytes"},
        NameCase{"Of60000Bytes", std::string(60000, 'x'), "is longer than 1023 bytes"}),
    [](const auto& text) { return text.param.name; });

TEST(HostilePrinters, ANameOfAMegabyteCannotBeToldAndItsAnswerIsRefused) {
    // A length has two bytes: the rest of the megabyte is taken for what it says next.
    IPPBytes bytes;
    std::string megabyte = bytes.bytes();
    megabyte += "\x42\xFF\xFF";
    megabyte += std::string(1U << 20U, 'x');
    HostileIPPResponder printer(
        HostileIPPResponder::answering(HostileIPPResponder::HTTPAnswer(megabyte)));
    EXPECT_EQ(ask(printer.URI()).status, nullptr);
}

TEST(HostilePrinters, AManyValuedAnswerIsBoundedInMemory) {
    // The worst of 4 MB: collections of ten bytes each.
    IPPBytes bytes;
    bytes.value(0x34, "media-col-database", "").value(0x37, "", "");
    while (bytes.bytes().size() < (4U << 20U) - 100) {
        bytes.value(0x34, "", "").value(0x37, "", "");
    }
    const std::string answerBytes = duplexerAnd(bytes);
    HostileIPPResponder printer(HostileIPPResponder::answering(answerBytes));
    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    const Answer answer = ask(printer.URI());
    rusage after{};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_FALSE(hasDuplexer(answer));  // It came after the values that are kept.
    ASSERT_NE(answer.status, nullptr) << answer.error;
    EXPECT_LE(dropped(answer).size(), 101U);
#if !TKPPDUPDATING_ADDRESS_SANITIZER
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 64 * 1024);  // Kilobytes.
#endif
}

TEST(HostilePrinters, AURIThatNamesNoPrinterIsNoStatus) {
    for (const char* URI : {"ipp:", "ipp://", "ipp:///ipp/print", "ipp://[::1/ipp"}) {
        EXPECT_EQ(ask(URI).error, "the URI names no IPP printer") << URI;
    }
}

TEST(HostilePrinters, AnEncryptedSchemeIsEncryptedInCapitalsToo) {
    std::atomic<bool> isPlain{false};
    HostileIPPResponder printer([&](const ResponderConnection& c) {
        isPlain = c.readRequest();
        c.send(HostileIPPResponder::HTTPAnswer(decentAnswer()));
    });
    EXPECT_TRUE(hasDuplexer(ask("IPP" + printer.URI().substr(3))));
    EXPECT_TRUE(isPlain);
    isPlain = false;
    EXPECT_EQ(askShortly("IPPS" + printer.URI().substr(3)).status, nullptr);
    EXPECT_FALSE(isPlain);
}

HTTPOpening openingTo(const std::string& host, int port) {
    return [host, port](const HTTPOpeningTime& time, OrbCSError& cause) {
        return openedConnection(host, port, HTTP_ENCRYPTION_IF_REQUESTED, time, cause);
    };
}

std::ptrdiff_t threadCount() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

TEST(HTTPTalk, LeavesNoThreadBehindHoweverItEnds) {
    // ThreadSanitizer keeps one of its own from the first thread on.
    std::thread([] {}).join();
    const auto threads = threadCount();
    const std::atomic<bool> isCancelled{true};
    auto silent = std::make_optional<HostileIPPResponder>(
        [](const ResponderConnection& c) { c.waitForClose(); });
    const HTTPTalk talk = [](HTTPConnection& connection) {
        (void)httpGet(connection.http(), "/");
        (void)readHTTPHead(connection.http());
    };
    OrbCSError error;
    // No server is asked for such a name.
    EXPECT_FALSE(talkOverHTTP(openingTo(std::string(64, 'a'), 631),
                              {std::chrono::seconds(20), &isCancelled}, talk, error));
    EXPECT_FALSE(talkOverHTTP(openingTo(std::string(64, 'a'), 631), {std::chrono::seconds(20)},
                              talk, error));
    EXPECT_EQ(error.reason, "its name is not known");
    EXPECT_FALSE(talkOverHTTP(openingTo("127.0.0.1", silent->port()),
                              {std::chrono::milliseconds(50)}, talk, error));
    EXPECT_EQ(error.cause, OrbCSError::Cause::timeout);
    silent.reset();
    EXPECT_EQ(threadCount(), threads);
}

TEST(HTTPTalk, WhatTheOpeningRaisesIsRaisedToItsCaller) {
    OrbCSError error;
    EXPECT_THROW(
        talkOverHTTP([](const HTTPOpeningTime&, OrbCSError&) -> http_t* { throw std::bad_alloc(); },
                     {std::chrono::seconds(20)}, [](HTTPConnection& /*connection*/) {}, error),
        std::bad_alloc);
}

TEST(HTTPTalk, WhatTheTalkRaisesIsRaisedToItsCaller) {
    HostileIPPResponder peer([](const ResponderConnection& c) { c.waitForClose(); });
    const HTTPOpening opening = openingTo("127.0.0.1", peer.port());
    OrbCSError error;
    EXPECT_THROW(talkOverHTTP(
                     opening, {std::chrono::seconds(20)},
                     [](HTTPConnection& /*connection*/) { throw std::bad_alloc(); }, error),
                 std::bad_alloc);
}

TEST(HostilePrinters, AskingManyAtOnceKeepsThemApart) {
    HostileIPPResponder silent([](const ResponderConnection& c) { c.waitForClose(); });
    HostileIPPResponder decent(
        HostileIPPResponder::answering(HostileIPPResponder::HTTPAnswer(decentAnswer())));
    std::atomic<int> duplexers{0};
    std::vector<std::thread> threads;
    for (int number = 0; number < 16; ++number) {
        threads.emplace_back([&, number] {
            if (number % 2 == 0) {
                EXPECT_EQ(askShortly(silent.URI()).status, nullptr);
            } else {
                duplexers += hasDuplexer(ask(decent.URI())) ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(duplexers, 8);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
