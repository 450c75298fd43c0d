// Printers that answer the questions of a PPD over PostScript, good ones and others.
#include "backends/postscript/PostScriptInquiry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/postscript/PostScriptJob.h"
#include "core_interface/TkCSKeys.h"
#include "tests/support/SocketPrinter.h"

namespace TkPPDUpdating::Testing {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using Cause = OrbCSError::Cause;

/// More bytes than any answer may have.
constexpr std::size_t kFlood = std::size_t{10} * 1000 * 1000;

OrbCSPostScriptQuestions twoQuestions() {
    return {
        "",
        "",
        {{"Option1", "(one) =", {"None", "Tray500"}}, {"Option2", "(two) =", {"False", "True"}}}};
}

/// An interpreter that a test plays: what it sends for each question, by its label.
class PlayedInterpreter {
  public:
    /// `#` in an answer stands for the mark, and "#close" ends the connection. What has no answer
    /// is not answered.
    explicit PlayedInterpreter(std::map<std::string, std::string> answers)
        : answers_(std::move(answers)) {}

    void operator()(const SocketTalk& talk) const {
        std::string text;
        std::string mark;
        while (const auto bytes = talk.next()) {
            text += *bytes;
            std::smatch found;
            static const std::regex kMark(R"(\(\\n([0-9a-f]+)\) print \(([0-9a-f]+) \) print)");
            if (mark.empty() && std::regex_search(text, found, kMark)) {
                mark = found.str(1) + found.str(2);
            }
            static const std::regex kCall(
                R"(\((ready|product|[0-9]+)[^()]*\)[^()]*TkA?Q?[0-9a-f]+\n)");
            while (std::regex_search(text, found, kCall)) {
                const auto answer = answers_.find(found.str(1));
                text = found.suffix();
                if (answer != answers_.end() && answer->second == "#close") {
                    return;
                }
                if (answer != answers_.end() && !talk.send(withMark(answer->second, mark))) {
                    return;
                }
            }
        }
    }

  private:
    static std::string withMark(std::string text, const std::string& mark) {
        for (std::size_t at = text.find('#'); at != std::string::npos; at = text.find('#', at)) {
            text.replace(at, 1, mark);
        }
        return text;
    }

    std::map<std::string, std::string> answers_;
};

std::string answer(const std::string& label, const std::string& text) {
    return "\n# " + label + " begin\n" + text + "\n# " + label + " end none\n";
}

const std::pair<const std::string, std::string> kReady = {"ready", "\n# ready end none\n"};

/// So long that no busy machine needs it all.
PostScriptLimits patient() {
    return {.questionTime = seconds(30), .time = seconds(60)};
}

struct Result {
    std::shared_ptr<const ReportedDeviceStatus> status;
    OrbCSError error;

    OrbCSInstalledOptions installed() const {
        const auto* const options =
            status ? status->statusValueForKey<OrbCSInstalledOptions>(kTkCSInstalledOptionsKey)
                   : nullptr;
        return options ? *options : OrbCSInstalledOptions();
    }
    std::vector<std::string> reasons() const {
        return status ? status->droppedValues() : std::vector<std::string>();
    }
};

Result ask(const std::string& URI, const PostScriptLimits& limits = patient(),
           const OrbCSPostScriptQuestions& questions = twoQuestions()) {
    Result result;
    result.status = PostScriptInquiry(limits, questions).statusOfPrinter(URI, result.error);
    return result;
}

TEST(PostScriptInquiry, TellsWhatThePrinterAnswersAndNothingElse) {
    const SocketPrinter printer(PlayedInterpreter(
        {kReady, {"0", answer("0", "Tray500")}, {"1", answer("1", "%%[ status: idle ]%%\nTrue")}}));
    const Result result = ask(printer.URI());
    EXPECT_THAT(result.installed(),
                ElementsAre(Pair("Option1", "Tray500"), Pair("Option2", "True")))
        << result.error.reason;
    EXPECT_THAT(result.reasons(), IsEmpty());
    EXPECT_EQ(result.status->toldEntries(), OrbCSToldEntries{"InstalledOptions"});
    EXPECT_EQ(printer.connectionCount(), 1);
}

TEST(PostScriptInquiry, AnAnswerThatIsNoneLeavesTheOthers) {
    for (const char* text : {"True", "Tray\n500", "Unknown", "", "*cupsFilter: \"x\""}) {
        const SocketPrinter printer(
            PlayedInterpreter({kReady, {"0", answer("0", text)}, {"1", answer("1", "True")}}));
        const Result result = ask(printer.URI());
        EXPECT_THAT(result.installed(), ElementsAre(Pair("Option2", "True"))) << text;
        ASSERT_THAT(result.reasons(), SizeIs(1)) << text;
        EXPECT_THAT(result.reasons().front(), testing::StartsWith("Option1: ")) << text;
    }
}

TEST(PostScriptInquiry, ALateAnswerIsNotThatOfTheNextQuestion) {
    const SocketPrinter printer(PlayedInterpreter(
        {kReady, {"1", answer("0", "Tray500") + answer("0", "True") + answer("1", "False")}}));
    const Result result = ask(printer.URI(), {.questionTime = seconds(3), .time = seconds(60)});
    EXPECT_THAT(result.installed(), ElementsAre(Pair("Option2", "False")));
    EXPECT_THAT(result.reasons(), ElementsAre("Option1: the printer did not answer in time"));
}

TEST(PostScriptInquiry, ASilentPrinterIsSentNoQuestion) {
    std::string sent;
    const auto start = std::chrono::steady_clock::now();
    {
        const SocketPrinter printer([&sent](const SocketTalk& talk) {
            while (const auto bytes = talk.next()) {
                sent += *bytes;
            }
        });
        const Result result = ask(printer.URI(), {.questionTime = milliseconds(300)});
        EXPECT_EQ(result.status, nullptr);
        EXPECT_EQ(result.error.cause, Cause::timeout);
        EXPECT_THAT(result.error.reason, HasSubstr("busy, or no PostScript printer"));
    }
    EXPECT_THAT(sent, HasSubstr("%!PS"));
    EXPECT_THAT(sent, testing::Not(HasSubstr("(0) <")));
    EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(5));
}

TEST(PostScriptInquiry, APrinterThatSendsBackWhatItIsSentIsNoInterpreter) {
    const SocketPrinter printer([](const SocketTalk& talk) {
        while (const auto bytes = talk.next()) {
            if (!talk.send(*bytes)) {
                return;
            }
        }
    });
    const Result result = ask(printer.URI(), {.questionTime = milliseconds(300)});
    EXPECT_EQ(result.status, nullptr);
    EXPECT_EQ(result.error.cause, Cause::timeout);
}

TEST(PostScriptInquiry, TenMillionBytesAreNoAnswer) {
    const std::string flood(kFlood, 'x');
    const SocketPrinter early([&flood](const SocketTalk& talk) { (void)talk.send(flood); });
    const Result result = ask(early.URI());
    EXPECT_EQ(result.status, nullptr);
    EXPECT_EQ(result.error.cause, Cause::brokenAnswer) << result.error.reason;
    const SocketPrinter late(
        PlayedInterpreter({kReady, {"0", answer("0", "Tray500")}, {"1", answer("1", flood)}}));
    const Result half = ask(late.URI());
    EXPECT_THAT(half.installed(), ElementsAre(Pair("Option1", "Tray500")));
    EXPECT_THAT(half.reasons(), ElementsAre("Option2: the printer answers more than 16384 bytes"));
}

TEST(PostScriptInquiry, AByteNowAndThenEndsWithTheTime) {
    const SocketPrinter printer([](const SocketTalk& talk) {
        while (talk.pause(milliseconds(20)) && talk.send("x")) {
        }
    });
    const auto start = std::chrono::steady_clock::now();
    const Result result = ask(printer.URI(), {.questionTime = milliseconds(400)});
    EXPECT_EQ(result.error.cause, Cause::timeout);
    EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(5));
}

TEST(PostScriptInquiry, AllQuestionsTogetherHaveOneLimit) {
    const SocketPrinter printer{PlayedInterpreter({kReady})};
    OrbCSPostScriptQuestions questions = twoQuestions();
    questions.questions.resize(200, questions.questions.front());
    const auto start = std::chrono::steady_clock::now();
    const Result result =
        ask(printer.URI(), {.questionTime = milliseconds(1500), .time = seconds(3)}, questions);
    EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(15));
    EXPECT_THAT(result.installed(), IsEmpty());
    ASSERT_THAT(result.reasons(), SizeIs(200)) << result.error.reason;
    EXPECT_THAT(result.reasons().back(), HasSubstr("so that it was not asked"));
    EXPECT_EQ(result.status->toldEntries(), OrbCSToldEntries());
}

/// The same for a PPD of the product "Office 20".
OrbCSPostScriptQuestions questionsOfOffice() {
    OrbCSPostScriptQuestions questions = twoQuestions();
    questions.reasonNotToAsk = [](const std::string& product) {
        return product == "Office 20" ? std::nullopt : std::optional("it is " + product);
    };
    return questions;
}

TEST(PostScriptInquiry, AnotherProductIsSentNoQuestion) {
    const SocketPrinter printer(PlayedInterpreter({kReady,
                                                   {"product", answer("product", " Lab 3\r\n")},
                                                   {"0", answer("0", "Tray500")},
                                                   {"1", answer("1", "True")}}));
    const Result result = ask(printer.URI(), patient(), questionsOfOffice());
    EXPECT_EQ(result.status, nullptr);
    EXPECT_EQ(result.error.cause, Cause::anotherPrinter);
    EXPECT_EQ(result.error.reason, "it is Lab 3");
    EXPECT_THAT(ask(printer.URI()).installed(), SizeIs(2)) << "nobody wants to know the product";
}

TEST(PostScriptInquiry, ThePPDsProductAndOneThatSaysNothingAreAsked) {
    for (const std::string& said :
         {answer("product", "Office 20"), answer("product", "%%[ status: idle ]%%\nOffice 20"),
          answer("product", ""), std::string("\n# product begin\nLab 3\n# product end undefined\n"),
          answer("0", "Lab 3")}) {
        const SocketPrinter printer(PlayedInterpreter({kReady,
                                                       {"product", said},
                                                       {"0", answer("0", "Tray500")},
                                                       {"1", answer("1", "True")}}));
        const PostScriptLimits limits{.questionTime = seconds(3), .time = seconds(60)};
        const Result result = ask(printer.URI(), limits, questionsOfOffice());
        EXPECT_THAT(result.installed(),
                    ElementsAre(Pair("Option1", "Tray500"), Pair("Option2", "True")))
            << said << result.error.reason;
    }
}

TEST(PostScriptInquiry, AProductWithoutEndIsNoAnswer) {
    const SocketPrinter printer(
        PlayedInterpreter({kReady, {"product", answer("product", std::string(kFlood, 'x'))}}));
    const Result result = ask(printer.URI(), patient(), questionsOfOffice());
    EXPECT_THAT(result.installed(), IsEmpty());
    EXPECT_THAT(result.reasons(), ElementsAre("Option1: the printer answers more than 16384 bytes, "
                                              "so that it was not asked",
                                              "Option2: the printer answers more than 16384 bytes, "
                                              "so that it was not asked"));
}

TEST(PostScriptInquiry, AQuestionThatNamesWhatNoQuestionNeedsIsNotSent) {
    OrbCSPostScriptQuestions questions = twoQuestions();
    questions.questions[0].code = "systemdict /quit get exec";
    const SocketPrinter printer(
        PlayedInterpreter({kReady, {"0", answer("0", "Tray500")}, {"1", answer("1", "True")}}));
    const Result result = ask(printer.URI(), patient(), questions);
    EXPECT_THAT(result.installed(), ElementsAre(Pair("Option2", "True")));
    EXPECT_THAT(result.reasons(),
                ElementsAre("Option1: its question names \"quit\", so that it was not asked"));
}

TEST(PostScriptInquiry, APrinterThatEndsTheConnectionKeepsWhatItHasAnswered) {
    const SocketPrinter printer([](const SocketTalk& talk) { (void)talk.next(); });
    EXPECT_EQ(ask(printer.URI()).error.cause, Cause::brokenAnswer);
    const SocketPrinter later(
        PlayedInterpreter({kReady, {"0", answer("0", "Tray500")}, {"1", "#close"}}));
    const Result result = ask(later.URI());
    EXPECT_THAT(result.installed(), ElementsAre(Pair("Option1", "Tray500")));
    EXPECT_THAT(result.reasons(), ElementsAre("Option2: the printer ended the connection"));
}

TEST(PostScriptInquiry, AQuestionThatIsTooLongIsNotSent) {
    OrbCSPostScriptQuestions questions = twoQuestions();
    questions.questions[0].code.assign(1'000'000, ' ');
    const SocketPrinter printer(
        PlayedInterpreter({kReady, {"0", answer("0", "Tray500")}, {"1", answer("1", "True")}}));
    const Result result = ask(printer.URI(), patient(), questions);
    EXPECT_THAT(result.installed(), ElementsAre(Pair("Option2", "True")));
    EXPECT_THAT(result.reasons(), ElementsAre("Option1: its question has more than 32767 bytes"));
}

TEST(PostScriptInquiry, NobodyThereAndAMistakenURIAreToldApart) {
    EXPECT_EQ(ask("socket://127.0.0.1:1").error.cause, Cause::noConnection);
    EXPECT_EQ(ask("socket:").error.cause, Cause::malformedURI);
    EXPECT_EQ(ask("socket://me@127.0.0.1:1").error.cause, Cause::malformedURI);
}

OrbCSPostScriptQuestions questionsBetweenSwitches() {
    OrbCSPostScriptQuestions questions = twoQuestions();
    questions.beginning = "\x1B%-12345X@PJL JOB\n";
    questions.end = "\x1B%-12345X@PJL EOJ\n\x1B%-12345X";
    return questions;
}

TEST(PostScriptInquiry, AJobIsEndedForAPrinterThatReadsItTooLate) {
    std::string sent;
    {
        const SocketPrinter printer([&sent](const SocketTalk& talk) {
            while (const auto bytes = talk.next()) {
                sent += *bytes;
            }
        });
        EXPECT_EQ(
            ask(printer.URI(), {.questionTime = milliseconds(300)}, questionsBetweenSwitches())
                .error.cause,
            Cause::timeout);
    }
    EXPECT_THAT(sent, testing::StartsWith(questionsBetweenSwitches().beginning));
    EXPECT_THAT(sent, testing::EndsWith(questionsBetweenSwitches().end));
}

TEST(PostScriptInquiry, AJobIsEndedWhenSomebodyCancels) {
    std::atomic<bool> isCancelled = false;
    std::promise<std::string> sent;
    const SocketPrinter printer([&](const SocketTalk& talk) {
        std::string text;
        while (const auto bytes = talk.next()) {
            text += *bytes;
            isCancelled = true;
        }
        sent.set_value(text);
    });
    PostScriptLimits limits = patient();
    limits.isCancelled = &isCancelled;
    EXPECT_EQ(ask(printer.URI(), limits, questionsBetweenSwitches()).error.cause, Cause::cancelled);
    auto text = sent.get_future();
    ASSERT_EQ(text.wait_for(seconds(20)), std::future_status::ready);
    EXPECT_THAT(text.get(), testing::EndsWith(questionsBetweenSwitches().end));
}

TEST(PostScriptInquiry, NothingFollowsAQuestionOfWhichThePrinterTookAPart) {
    std::string sent;
    OrbCSPostScriptQuestions questions = twoQuestions();
    questions.questions[0].code.assign(6'000'000, ' ');
    {
        // Takes its time, and then everything.
        const SocketPrinter printer([&sent](const SocketTalk& talk) {
            static const std::regex kMark(
                R"(\(\\n([0-9a-f]+)\) print \(([0-9a-f]+) \) print[^]*\(ready [^]*TkA[0-9a-f]+\n)");
            std::smatch found;
            while (!std::regex_search(sent, found, kMark)) {
                const auto bytes = talk.next();
                if (!bytes) {
                    return;
                }
                sent += *bytes;
            }
            (void)talk.send("\n" + found.str(1) + found.str(2) + " ready end none\n");
            // Only now does the time of the question run.
            sent += talk.next().value_or("");
            (void)talk.pause(milliseconds(1500));
            while (const auto bytes = talk.next()) {
                sent += *bytes;
            }
        });
        const Result result = ask(printer.URI(),
                                  {.questionTime = seconds(1),
                                   .time = seconds(60),
                                   .questionBytes = questions.questions[0].code.size()},
                                  questions);
        EXPECT_THAT(result.installed(), IsEmpty()) << result.error.reason;
        EXPECT_THAT(result.reasons(), SizeIs(2));
    }
    const std::size_t first = sent.find("(0) <");
    const std::size_t second = sent.find("(1) <");
    ASSERT_NE(first, std::string::npos);
    EXPECT_TRUE(second == std::string::npos || sent.find(" TkQ", first) < second)
        << "the second question stands within the first";
}

TEST(PostScriptInquiry, EndsWhenItIsCancelled) {
    const std::atomic<bool> isCancelled = true;
    const SocketPrinter printer{PlayedInterpreter({kReady})};
    PostScriptLimits limits = patient();
    limits.isCancelled = &isCancelled;
    const Result result = ask(printer.URI(), limits);
    EXPECT_EQ(result.status, nullptr);
    EXPECT_EQ(result.error.cause, Cause::cancelled);
}

/// Questions as real PPDs have them, and such as break in every way.
const OrbCSPostScriptQuestions& mixedQuestions() {
    static const std::vector<std::string> kYesNo = {"True", "False"};
    static const OrbCSPostScriptQuestions questions{
        "\x1B%-12345X@PJL JOB\n@PJL ENTER LANGUAGE=POSTSCRIPT\n",
        "\x1B%-12345X@PJL EOJ\n\x1B%-12345X",
        {{"Duplex",
          "currentpagedevice /Duplex 2 copy known {get << /Duplex true >> setpagedevice\n"
          "currentpagedevice /Duplex get {(True)} {(False)} ifelse exch\n"
          "<< /Duplex 3 -1 roll >> setpagedevice} {pop pop (False)} ifelse = flush",
          kYesNo},
         {"Error", "1 0 div", kYesNo},
         {"String", "(never closed", kYesNo},
         {"Procedure", "{ true", kYesNo},
         {"Stacks",
          "1 2 3 userdict begin 10 dict begin /print {pop} def /flush {} def (True) =", kYesNo},
         {"Exit", "exit", kYesNo},
         {"Stop", "stop", kYesNo},
         {"Definition", "/answer (True) def answer =", kYesNo},
         {"Forgotten", "answer =", kYesNo},
         {"Saved", "save (True) = flush restore", kYesNo},
         {"NotRestored", "save mark (True) print", kYesNo},
         {"Quoted", "(\"False\") =", kYesNo},
         {"Message", "(%%[ status: idle ]%%) = (False) = flush", kYesNo}}};
    return questions;
}

OrbCSInstalledOptions mixedAnswers() {
    return {{"Duplex", "True"},      {"Stacks", "True"},  {"Definition", "True"}, {"Saved", "True"},
            {"NotRestored", "True"}, {"Quoted", "False"}, {"Message", "False"}};
}

TEST(PostScriptInquiry, OneQuestionThatBreaksTakesNoOtherAlongInARealInterpreter) {
    ASSERT_EQ(PostScriptPrinter::missingPrograms(), "");
    const PostScriptPrinter printer("");
    const Result result = ask(printer.URI(), patient(), mixedQuestions());
    EXPECT_EQ(result.installed(), mixedAnswers()) << result.error.reason;
    EXPECT_THAT(
        result.reasons(),
        ElementsAre("Error: the question ends in an error of the printer's (undefinedresult)",
                    "String: the question ends in an error of the printer's (syntaxerror)",
                    "Procedure: the question ends in an error of the printer's (syntaxerror)",
                    "Exit: the question ends in an error of the printer's (invalidexit)",
                    "Stop: the question ends in an error of the printer's (stop)",
                    "Forgotten: the question ends in an error of the printer's (undefined)"));
    EXPECT_EQ(printer.connectionCount(), 1);
}

TEST(PostScriptInquiry, AQuestionEndsNoJobPrintsNoPageAndReadsNoOtherInARealInterpreter) {
    ASSERT_EQ(PostScriptPrinter::missingPrograms(), "");
    // Names that it makes: one that has them in it is not sent.
    const auto made = [](std::string_view name) {
        std::ostringstream digits;
        for (const char letter : name) {
            digits << std::hex << static_cast<int>(letter);
        }
        return "<" + digits.str() + "> cvx exec ";
    };
    OrbCSPostScriptQuestions questions;
    for (const std::string& code :
         {made("quit"), "(True) = " + made("showpage"), made("copypage"),
          made("currentfile") + "closefile", made("currentfile") + "99 string readline pop =",
          made("serverdict") + "begin 0 " + made("exitserver"), "true () " + made("startjob"),
          "errordict /undefined {" + made("quit") + "} put nothing",
          std::string("cleardictstack {1} loop"), std::string("(True) = % the end")}) {
        const std::string number = std::to_string(questions.questions.size());
        questions.questions.push_back({"Option" + number, code, {"True"}});
    }
    questions.questions.push_back({"Last", "(True) =", {"True"}});
    const PostScriptPrinter printer("");
    const Result result = ask(printer.URI(), patient(), questions);
    EXPECT_THAT(result.installed(), ElementsAre(Pair("Last", "True"), Pair("Option1", "True"),
                                                Pair("Option9", "True")));
    for (const std::string option : {"0", "2", "3", "4", "5", "6", "7"}) {
        EXPECT_THAT(result.reasons(),
                    testing::Contains("Option" + option +
                                      ": the question ends in an error of the printer's (stop)"));
    }
}

TEST(PostScriptInquiry, SaysWhichProductItIsInARealInterpreter) {
    ASSERT_EQ(PostScriptPrinter::missingPrograms(), "");
    OrbCSPostScriptQuestions questions = questionsOfOffice();
    questions.questions.push_back({"Last", "(True) =", {"True"}});
    const PostScriptPrinter stranger("");
    EXPECT_EQ(ask(stranger.URI(), patient(), questions).error.reason, "it is GPL Ghostscript");
    EXPECT_THAT(stranger.received(), testing::Not(HasSubstr("(0) <")));
    for (const char* setup : {"/product (Office 20) def", "/product {(Office) pop (Office 20)} def",
                              // Level 1 has it in another dictionary.
                              "statusdict /product (Office 20) put /where {pop false} def",
                              // No product at all.
                              "/product 20 def", "/product {stop} def",
                              "/where {pop false} def /statusdict null def"}) {
        const PostScriptPrinter printer(setup);
        EXPECT_THAT(ask(printer.URI(), patient(), questions).installed(),
                    ElementsAre(Pair("Last", "True")))
            << setup;
    }
}

TEST(PostScriptInquiry, TheOrderOfTheQuestionsDoesNotMatterInARealInterpreter) {
    ASSERT_EQ(PostScriptPrinter::missingPrograms(), "");
    OrbCSPostScriptQuestions reversed = mixedQuestions();
    std::reverse(reversed.questions.begin(), reversed.questions.end());
    const PostScriptPrinter printer("");
    EXPECT_EQ(ask(printer.URI(), patient(), reversed).installed(), mixedAnswers());
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
