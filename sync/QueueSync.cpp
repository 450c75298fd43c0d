#include "sync/QueueSync.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/OrbCSOptionQuestions.h"
#include "core_interface/TkCSKeys.h"
#include "manager/MissingResourceWatch.h"
#include "ppd/PPDStatements.h"
#include "sync/EstimationsTime.h"
#include "sync/InstallableOptions.h"
#include "sync/InstalledOptionAnswers.h"
#include "sync/InstalledOptionQuestions.h"
#include "sync/QueueInstallation.h"
#include "sync/QueueSyncCauses.h"
#include "sync/UpdateGuard.h"
#include "text/UTF8.h"

namespace TkPPDUpdating {

namespace {

/// The text with a question mark for every byte that is not UTF-8, so that it can be parsed all the
/// same: keywords are ASCII in every encoding of a PPD.
PPDText readableText(const std::string& text) {
    std::string readable;
    readable.reserve(text.size());
    for (std::string_view rest = text; !rest.empty();) {
        const auto character = UTF8CharacterAtStart(rest);
        const std::size_t length = character ? character->length : 1;
        readable += character ? rest.substr(0, length) : std::string_view("?");
        rest.remove_prefix(length);
    }
    return makePPDText(std::move(readable));
}

}  // namespace

/// The synchronisation of one queue, step by step. A step gives false when it has ended it.
class QueueSync::Work::Steps {
  public:
    Steps(const QueueSync& sync, const std::string& queueName)
        : scheduler_(sync.scheduler_),
          options_(sync.options_),
          printers_(sync.printers_),
          turns_(sync.turns_) {
        outcome_.queueName = queueName;
    }

    std::optional<QueueSyncOutcome> proceed() {
        isWaiting_ = false;
        const bool isReady = installation_ ? goesOn()
                                           : goesOn() && readQueue() && goesOn() && askPrinter() &&
                                                 goesOn() && updateText() && checkResult() &&
                                                 goesOn() && prepareInstallation();
        const bool isBusy = isWaiting_ || (isReady && !install());
        return isBusy ? std::nullopt : std::optional(std::move(outcome_));
    }

    Clock::time_point nextTime() const { return nextTime_; }

  private:
    bool end(QueueSyncResult result) {
        if (result == QueueSyncResult::updated || result == QueueSyncResult::wouldUpdate) {
            const auto& notes = update_->notes();
            outcome_.notes.insert(outcome_.notes.begin(), notes.begin(), notes.end());
        }
        outcome_.result = result;
        return false;
    }

    bool end(const QueueSyncCause& cause, std::string reason) {
        outcome_.cause = &cause;
        outcome_.reason = std::move(reason);
        return end(cause.result);
    }

    bool end(const std::string& what, const QueueFailure& failure) {
        return failure.isOf(queueSyncCause("interrupted"))
                   ? endAsCancelled()
                   : end(*failure.cause, what + failure.reason);
    }

    bool skip(std::string reason) {
        outcome_.reason = std::move(reason);
        return end(QueueSyncResult::skipped);
    }

    bool goesOn() {
        const bool isCancelled = options_.isCancelled && options_.isCancelled->load();
        return !isCancelled || endAsCancelled();
    }

    bool endAsCancelled() {
        return options_.isTimeOver && *options_.isTimeOver
                   ? end(queueSyncCause("time-limit"), "the time limit of the run was over")
                   : end(queueSyncCause("interrupted"), "interrupted");
    }

    bool readQueue() {
        QueueFailure failure;
        std::optional<SchedulerQueue> queue;
        SchedulerPPD PPD;
        const bool isWhole = scheduler_.talkAbout(
            outcome_.queueName,
            [&](QueueTalk& talk) {
                queue = talk.queue(failure);
                if (queue && queue->kind == SchedulerQueue::Kind::own) {
                    PPD = talk.PPD(failure);
                }
            },
            QueueScheduler::Patience::untilCancelled, failure);
        if (!isWhole || !queue) {
            return end("", failure);
        }
        queue_ = *queue;
        outcome_.deviceURI = queue_.deviceURI;
        if (queue_.kind != SchedulerQueue::Kind::own) {
            return skip(queue_.kind == SchedulerQueue::Kind::printerClass
                            ? "it is a class, which has no PPD"
                            : "it is a queue of another machine");
        }
        if (PPD.isRaw) {
            return skip("it is a raw queue, which has no PPD");
        }
        if (!PPD.text) {
            return end("its PPD cannot be read: ", failure);
        }
        outcome_.before = PPD.text;
        if (options_.backups) {
            options_.backups->settleInterruptedRun(outcome_.queueName, *PPD.text);
        }
        return readPPD();
    }

    /// A PPD that does not follow its printer is none of our business, whatever else is to be said
    /// of it.
    bool readPPD() {
        std::string reason;
        const auto invalid = firstInvalidUTF8Byte(*outcome_.before);
        before_ = PPDModelFile::fileWithText(
            invalid ? readableText(*outcome_.before) : outcome_.before, &reason);
        if (!before_) {
            return end(queueSyncCause("bad-ppd"), "its PPD cannot be parsed: " + reason);
        }
        update_.emplace(options_.makeManager ? options_.makeManager()
                                             : std::make_unique<OrbPPDConcreteUpdatingManager>(),
                        before_);
        findQuestions();
        if (!update_->hasUpdaters()) {
            return skip("nothing in its PPD follows the printer");
        }
        return !invalid || end(queueSyncCause("not-utf8"),
                               "its PPD is not valid UTF-8 at byte " + std::to_string(*invalid));
    }

    /// What the PPD asks the printer about installable options. They are left alone when nobody can
    /// tell what is installed.
    void findQuestions() {
        if (!update_->readsInstalledOptions()) {
            return;
        }
        const std::string& place = placeOfPrinter();
        std::string reason;
        if (options_.postScriptPrinters && DeviceStatusSchemes::schemeOfURI(place) == "socket") {
            questions_ = postScriptQuestionsOfPPD(
                *before_, reason,
                printers_.judgeOfProduct(outcome_.queueName, queue_.deviceURI, *before_));
        }
        if (!QueuePrinters::SNMPPlace(place).empty()) {
            objectQuestions_ = SNMPQuestionsOfPPD(*before_);
        }
        if (!questions_ && !objectQuestions_ && !update_->followsAccessories() &&
            !PPDUpdate::mayTellInstalledOptions(place)) {
            update_->leaveInstallableOptions();
        }
    }

    /// Whether the printer is asked more than the questions of the PPD. Where the user names a
    /// place that takes these, there is nothing else to be asked.
    bool isStatusWanted() const {
        if (questions_ && printers_.isNamed(outcome_.queueName)) {
            return false;
        }
        const bool hasQuestions = questions_ || objectQuestions_;
        return update_->needsOtherStatus() || !hasQuestions ||
               (!questions_ && update_->followsAccessories());
    }

    bool askPrinter() {
        if (!update_->needsStatus()) {
            return true;
        }
        const PrinterTurn turn(turns_, options_.isCancelled);
        if (!turn.isTaken()) {
            return goesOn();
        }
        QueuePrinterAnswer answer;
        outcome_.answers.clear();
        if (isStatusWanted()) {
            answer = printers_.ask(outcome_.queueName, queue_.deviceURI, *before_);
            outcome_.statusURI = answer.URI;
        }
        if (isOfAnotherPrinter(answer)) {
            return end("", answer.failure);
        }
        std::unique_lock<std::mutex> turnAtPrinter;
        if (questions_) {
            turnAtPrinter = printers_.turnAt(placeOfPrinter());
            if (!goesOn() || !isIdle()) {
                return false;
            }
        }
        askQuestions(answer);
        if (!answer.status) {
            // One that was not waited for is not to blame.
            return goesOn() && end("", answer.failure);
        }
        outcome_.status = answer.status;
        update_->setStatus(std::move(answer.status), options_.rule);
        outcome_.keptEntries = update_->keptEntries();
        const auto& more = update_->answersOfAccessories();
        outcome_.answers.insert(outcome_.answers.end(), more.begin(), more.end());
        return true;
    }

    static bool isOfAnotherPrinter(const QueuePrinterAnswer& answer) {
        return answer.failure.isOf(queueSyncCause("another-printer"));
    }

    /// Whether the queue's own job would not be held up by a question. One that is printing may be
    /// waited for.
    bool isIdle() {
        QueueFailure failure;
        std::optional<SchedulerQueue> queue;
        const bool isWhole = scheduler_.talkAbout(
            outcome_.queueName, [&](QueueTalk& talk) { queue = talk.queue(failure); },
            QueueScheduler::Patience::untilCancelled, failure);
        if (!isWhole || !queue) {
            return end("", failure);
        }
        if (queue->state == SchedulerQueue::State::printing) {
            isWaiting_ = !isWaitOver();
            return false;
        }
        return true;
    }

    /// Adds what is installed to the answer. What is asked over PostScript, where the jobs go
    /// unless the user names another place, comes before what is asked over SNMP. Where another
    /// printer answers, the queue is to stay as it is, whatever else is answered.
    void askQuestions(QueuePrinterAnswer& answer) {
        if (objectQuestions_) {
            const OrbDictionary parameters = {
                {std::string(kTkCSSNMPQuestionsKey), objectQuestions_}};
            const auto asked =
                printers_.askOverSNMP(outcome_.queueName, queue_.deviceURI, *before_, parameters);
            take("SNMP", optionsAsked(objectQuestions_->questions), asked, answer);
        }
        if (questions_ && !isOfAnotherPrinter(answer)) {
            const QueuePrinterAnswer asked = answerOverPostScript();
            if (asked.status && printers_.isNamed(outcome_.queueName)) {
                outcome_.statusURI = asked.URI;
            }
            if (isOfAnotherPrinter(asked)) {
                answer = asked;
            } else {
                take("PostScript", optionsAsked(questions_->questions), asked, answer);
            }
        }
    }

    const std::string& placeOfPrinter() const {
        return printers_.placeOfQueue(outcome_.queueName, queue_.deviceURI);
    }

    QueuePrinterAnswer answerOverPostScript() const {
        const OrbDictionary parameters = {{std::string(kTkCSPostScriptQuestionsKey), questions_}};
        OrbCSError error;
        auto status = options_.postScriptPrinters->deviceStatusWithURI_parameters_error(
            placeOfPrinter(), &parameters, &error);
        const bool isSilent = !status;
        return {std::move(status), placeOfPrinter(),
                isSilent ? QueueFailure{&queueSyncCauseForError(error.cause), error.reason}
                         : QueueFailure()};
    }

    template <typename Questions>
    static std::vector<std::string> optionsAsked(const Questions& questions) {
        std::vector<std::string> options;
        options.reserve(questions.size());
        for (const auto& question : questions) {
            options.push_back(question.option);
        }
        return options;
    }

    /// Takes the installed options out of what was answered to the questions of the PPD.
    void take(std::string_view way, const std::vector<std::string>& optionsAsked,
              const QueuePrinterAnswer& asked, QueuePrinterAnswer& answer) {
        const auto options = installableOptionsOf(PPDStatementsOfText(*before_->text()));
        const auto answers =
            answersOfStatus(options, optionsAsked, way, asked.status.get(), asked.failure.reason);
        outcome_.answers.insert(outcome_.answers.end(), answers.begin(), answers.end());
        if (asked.status) {
            const auto* const installed = installedOptionsOf(*asked.status);
            answer.status = statusWithInstalledOptions(
                answer.status ? std::move(answer.status) : statusThatTellsNothing(),
                installed ? *installed : OrbCSInstalledOptions());
        } else if (!answer.status && !answer.failure.cause) {
            answer.failure = {asked.failure.cause, "its printer does not tell what is installed: " +
                                                       asked.failure.reason};
        }
    }

    static std::shared_ptr<const OrbCSDeviceStatus> statusThatTellsNothing() {
        return std::make_shared<const ReportedDeviceStatus>(
            ReportedDeviceStatus::Values(), std::vector<std::string>(), OrbCSToldEntries());
    }

    bool updateText() {
        try {
            ExplainedPPDUpdate update = MissingResourceWatch::resultOf([this] {
                return options_.isExplained
                           ? update_->explainedText(queue_.deviceURI)
                           : ExplainedPPDUpdate{update_->updatedText(queue_.deviceURI), {}};
            });
            outcome_.after = std::move(update.text);
            outcome_.steps = std::move(update.steps);
        } catch (const std::out_of_range&) {
            return end(queueSyncCause("no-result"),
                       "its PPD has an attribute that ends before its value does");
        } catch (const MissingResourceError& error) {
            return end(queueSyncCause("no-result"), error.what());
        }
        if (*outcome_.after == *outcome_.before ||
            differInTimeOfEstimationsOnly(*outcome_.before, *outcome_.after)) {
            outcome_.after = nullptr;
            outcome_.steps.clear();
            return end(QueueSyncResult::unchanged);
        }
        return true;
    }

    bool checkResult() {
        std::string reason;
        const auto after = PPDModelFile::fileWithText(outcome_.after, &reason);
        if (!after) {
            return end(queueSyncCause("refused-result"),
                       "the updated PPD cannot be parsed: " + reason);
        }
        const auto refusal = UpdateGuard::reasonNotToWrite(
            *outcome_.before, *outcome_.after,
            update_->manager().applicableUpdatersForPPDFile(before_.get()));
        if (refusal) {
            return end(queueSyncCause("refused-result"), "the updated PPD is refused: " + *refusal);
        }
        return !options_.isDryRun || end(QueueSyncResult::wouldUpdate);
    }

    bool prepareInstallation() {
        QueueInstallation::Wish wish{queue_, outcome_.before, outcome_.after};
        if (options_.backups) {
            backup_.emplace(*options_.backups, outcome_.queueName);
            wish.beforeInstalling = [this]() -> std::optional<QueueFailure> {
                std::string reason;
                return backup_->place(reason) ? std::nullopt : std::optional(noBackup(reason));
            };
            std::string reason;
            if (!backup_->write(*outcome_.before, reason)) {
                return end("", noBackup(reason));
            }
        }
        installation_.emplace(scheduler_, std::move(wish));
        return true;
    }

    static QueueFailure noBackup(const std::string& reason) {
        return {&queueSyncCause("no-backup"),
                "its PPD cannot be kept, so nothing was installed: " + reason};
    }

    /// False when the queue is printing and may be waited for.
    bool install() {
        const auto how = attempt();
        outcome_.notes = installation_->notes();
        if (how == QueueInstallation::End::busy) {
            return isWaitOver();
        }
        if (how == QueueInstallation::End::installed) {
            end(QueueSyncResult::updated);
        } else {
            end("", installation_->failure());
        }
        if (installation_->mayBeInstalled()) {
            seeToReplacement();
        }
        return true;
    }

    /// Whatever ends the attempt, out of memory included: what may have been replaced is kept.
    QueueInstallation::End attempt() {
        try {
            return installation_->attempt();
        } catch (...) {
            if (backup_ && installation_->mayBeInstalled()) {
                backup_->keep();
            }
            throw;
        }
    }

    void seeToReplacement() {
        if (backup_) {
            backup_->keep();
        }
        if (options_.installed) {
            options_.installed(outcome_);
        }
    }

    bool isWaitOver() {
        const auto now = Clock::now();
        if (!deadline_) {
            deadline_ = now + options_.wait;
        }
        if (now >= *deadline_) {
            end(queueSyncCause("printing"), options_.wait.count() == 0
                                                ? "it is printing"
                                                : "it is printing and did not stop in time");
            return true;
        }
        nextTime_ = std::min(now + options_.pause, *deadline_);
        return false;
    }

    const QueueScheduler& scheduler_;
    const Options& options_;
    const QueuePrinters& printers_;
    PrinterTurns& turns_;
    QueueSyncOutcome outcome_;
    SchedulerQueue queue_;
    std::shared_ptr<const PPDModelFile> before_;
    std::optional<PPDUpdate> update_;
    /// Null when the printer is not asked over PostScript, or SNMP.
    std::shared_ptr<const OrbCSPostScriptQuestions> questions_;
    std::shared_ptr<const OrbCSSNMPQuestions> objectQuestions_;
    /// Whether the queue is printing and its printer not yet asked.
    bool isWaiting_ = false;
    std::optional<QueueBackups::Entry> backup_;
    std::optional<QueueInstallation> installation_;
    std::optional<Clock::time_point> deadline_;
    Clock::time_point nextTime_;
};

QueueSync::QueueSync(const QueueScheduler& scheduler, Options options)
    : scheduler_(scheduler),
      options_(std::move(options)),
      printers_({.statusURIs = options_.statusURIs, .isCancelled = options_.isCancelled}),
      turns_(std::max<std::size_t>(options_.mostPrinters, 1)) {}

QueueSync::Work::Work(const QueueSync& sync, const std::string& queueName)
    : steps_(std::make_unique<Steps>(sync, queueName)) {}

QueueSync::Work::~Work() = default;

std::optional<QueueSyncOutcome> QueueSync::Work::proceed() {
    return steps_->proceed();
}

QueueSync::Clock::time_point QueueSync::Work::nextTime() const {
    return steps_->nextTime();
}

std::unique_ptr<QueueSync::Work> QueueSync::begin(const std::string& queueName) const {
    return std::make_unique<Work>(*this, queueName);
}

QueueSyncOutcome QueueSync::sync(const std::string& queueName) const {
    constexpr auto kPause = std::chrono::milliseconds(50);
    Work work(*this, queueName);
    for (;;) {
        if (auto outcome = work.proceed()) {
            return *std::move(outcome);
        }
        while (Clock::now() < work.nextTime() && !isCancelled()) {
            std::this_thread::sleep_for(
                std::min<Clock::duration>(kPause, work.nextTime() - Clock::now()));
        }
    }
}

}  // namespace TkPPDUpdating
