#include "backends/postscript/PostScriptInquiry.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "backends/addresses/NetworkAddresses.h"
#include "backends/postscript/PostScriptAnswers.h"
#include "backends/postscript/PostScriptConnection.h"
#include "backends/postscript/PostScriptJob.h"
#include "backends/schemes/NetworkPlace.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

using Clock = PostScriptConnection::Clock;
using End = PostScriptConnection::End;
using Cause = OrbCSError::Cause;

constexpr std::uint16_t kUsualPort = 9100;

/// What is said over one connection.
class Talk {
  public:
    Talk(const PostScriptLimits& limits, const OrbCSPostScriptQuestions& questions,
         PostScriptConnection& connection, Clock::time_point deadline)
        : limits_(limits),
          questions_(questions),
          connection_(connection),
          deadline_(deadline),
          mark_(PostScriptMark::random()),
          job_(questions, mark_) {}

    /// False when there is no sign of an interpreter.
    bool begin(OrbCSError& error) {
        const auto answer = ask(job_.beginning(), PostScriptJob::kReady);
        if (!answer) {
            error = {end_ == End::timeout     ? Cause::timeout
                     : end_ == End::cancelled ? Cause::cancelled
                                              : Cause::brokenAnswer,
                     end_ == End::timeout ? "it does not answer over PostScript: it is busy, or no "
                                            "PostScript printer"
                                          : reason()};
        }
        return answer.has_value();
    }

    /// False when it says that it is another printer. One that says nothing may be the right one.
    bool isToBeAsked(OrbCSError& error) {
        if (!questions_.reasonNotToAsk) {
            return true;
        }
        const auto answer = ask(job_.productQuestion(), PostScriptJob::kProduct);
        auto reason = answer && answer->isWhole && !answer->text.empty()
                          ? questions_.reasonNotToAsk(answer->text)
                          : std::nullopt;
        if (!reason) {
            return true;
        }
        error = {Cause::anotherPrinter, *std::move(reason)};
        return false;
    }

    void askAll() {
        for (std::size_t index = 0; index < questions_.questions.size(); ++index) {
            const OrbCSOptionQuestion& question = questions_.questions[index];
            auto reason = reasonOfNoAnswer(index, question);
            if (reason) {
                reasons_.push_back(question.option + ": " + *std::move(reason));
            }
        }
    }

    /// To be called however the talk went: a printer that was busy reads the job later.
    void finish() {
        constexpr auto kPatience = std::chrono::seconds(1);
        connection_.finish(job_.end(), Clock::now() + kPatience);
    }

    std::shared_ptr<const ReportedDeviceStatus> status() {
        ReportedDeviceStatus::Values values;
        OrbCSToldEntries told;
        if (!installed_.empty()) {
            told.emplace(kTkCSInstalledOptionsKey);
            values.emplace(kTkCSInstalledOptionsKey, std::move(installed_));
        }
        return std::make_shared<const ReportedDeviceStatus>(std::move(values), std::move(reasons_),
                                                            std::move(told));
    }

    bool isCancelled() const { return end_ == End::cancelled; }

  private:
    /// Nothing when the answer is a choice, which is then kept.
    std::optional<std::string> reasonOfNoAnswer(std::size_t index,
                                                const OrbCSOptionQuestion& question) {
        if (question.code.size() > limits_.questionBytes) {
            return "its question has more than " + std::to_string(limits_.questionBytes) + " bytes";
        }
        const auto name = PostScriptJob::operatorNoQuestionMayName(question.code);
        if (!name.empty()) {
            return "its question names \"" + std::string(name) + "\", so that it was not asked";
        }
        if (isOver()) {
            return reason() + ", so that it was not asked";
        }
        const auto answer = ask(job_.question(index), PostScriptJob::label(index));
        if (!answer) {
            return reason();
        }
        auto reason = reasonForNoChoice(*answer, question.choices);
        if (!reason) {
            installed_.insert_or_assign(question.option, answer->text);
        }
        return reason;
    }

    /// Whether there is no use in sending anything else.
    bool isOver() {
        if (end_ != End::timeout) {
            return end_ != End::none;
        }
        return isCut_ || Clock::now() >= deadline_;
    }

    std::optional<PostScriptAnswer> ask(std::string_view text, std::string_view label) {
        // What still comes for the question before is none of this one's.
        connection_.forget();
        const auto until = std::min(deadline_, Clock::now() + limits_.questionTime);
        end_ = connection_.send(text, limits_.answerBytes, until);
        isCut_ = end_ != End::none;
        while (end_ == End::none) {
            if (auto answer = postScriptAnswer(connection_.received(), mark_, label)) {
                return answer;
            }
            end_ = connection_.receive(limits_.answerBytes, until);
        }
        return std::nullopt;
    }

    std::string reason() const {
        switch (end_) {
            case End::timeout:
                return "the printer did not answer in time";
            case End::tooMuch:
                return "the printer answers more than " + std::to_string(limits_.answerBytes) +
                       " bytes";
            case End::cancelled:
                return "interrupted";
            default:
                return "the printer ended the connection";
        }
    }

    const PostScriptLimits& limits_;
    const OrbCSPostScriptQuestions& questions_;
    PostScriptConnection& connection_;
    Clock::time_point deadline_;
    PostScriptMark mark_;
    PostScriptJob job_;
    End end_ = End::none;
    /// Whether the printer did not take all of a question, so that the next would stand within it.
    bool isCut_ = false;
    OrbCSInstalledOptions installed_;
    std::vector<std::string> reasons_;
};

}  // namespace

std::shared_ptr<const ReportedDeviceStatus> PostScriptInquiry::statusOfPrinter(
    const std::string& deviceURI, OrbCSError& error) const {
    const auto place = NetworkPlace::placeOfURI(deviceURI);
    if (!place || place->hasUserInfo) {
        error = {Cause::malformedURI, "the URI names no printer (socket://HOST does)"};
        return nullptr;
    }
    const auto deadline = Clock::now() + limits_.time;
    const auto addresses = addressesOfHost(place->host, place->port.value_or(kUsualPort),
                                           std::min(deadline, Clock::now() + limits_.questionTime),
                                           limits_.isCancelled, error);
    for (const NetworkAddress& address : addresses) {
        PostScriptConnection connection(limits_.isCancelled);
        if (!connection.open(address, std::min(deadline, Clock::now() + limits_.questionTime),
                             error)) {
            continue;
        }
        Talk talk(limits_, questions_, connection, deadline);
        const bool isRight = talk.begin(error) && talk.isToBeAsked(error);
        if (isRight) {
            talk.askAll();
        }
        talk.finish();
        if (!isRight) {
            return nullptr;
        }
        if (talk.isCancelled()) {
            error = {Cause::cancelled, "interrupted"};
            return nullptr;
        }
        return talk.status();
    }
    return nullptr;
}

}  // namespace TkPPDUpdating
