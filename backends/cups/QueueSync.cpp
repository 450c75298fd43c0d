#include "backends/cups/QueueSync.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCSDeviceStatus.h"
#include "ppd/UTF8.h"
#include "sync/QueueSyncCauses.h"
#include "sync/UpdateGuard.h"

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
class QueueSync::Run {
  public:
    Run(const QueueSync& sync, const std::string& queueName)
        : scheduler_(sync.scheduler_), options_(sync.options_), printers_(sync.printers_) {
        outcome_.queueName = queueName;
    }

    QueueSyncOutcome outcome() {
        if (goesOn() && readQueue() && goesOn() && askPrinter() && goesOn() && updateText() &&
            checkResult() && goesOn() && isUnchangedMeanwhile() && goesOn() && install()) {
            readBack();
        }
        return std::move(outcome_);
    }

  private:
    bool end(QueueSyncResult result) {
        outcome_.result = result;
        return false;
    }

    bool end(const QueueSyncCause& cause, std::string reason) {
        outcome_.cause = &cause;
        outcome_.reason = std::move(reason);
        return end(cause.result);
    }

    bool end(const std::string& what, const QueueFailure& failure) {
        return end(*failure.cause, what + failure.reason);
    }

    bool skip(std::string reason) {
        outcome_.reason = std::move(reason);
        return end(QueueSyncResult::skipped);
    }

    bool goesOn() {
        const bool isCancelled = options_.isCancelled && options_.isCancelled->load();
        return !isCancelled || end(queueSyncCause("interrupted"), "interrupted");
    }

    bool readQueue() {
        QueueFailure failure;
        const auto [queue, PPD] = scheduler_.queueAndPPDWithName(outcome_.queueName, failure);
        if (!queue) {
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
        if (!update_->hasUpdaters()) {
            return skip("nothing in its PPD follows the printer");
        }
        return !invalid || end(queueSyncCause("not-utf8"),
                               "its PPD is not valid UTF-8 at byte " + std::to_string(*invalid));
    }

    bool askPrinter() {
        if (!update_->needsStatus()) {
            return true;
        }
        const PrinterTurn turn(printers_, options_.isCancelled);
        if (!turn.isTaken()) {
            return goesOn();
        }
        OrbCSError error;
        auto status = OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(queue_.deviceURI,
                                                                              nullptr, &error);
        if (!status) {
            // One that was not waited for is not to blame.
            return goesOn() && end(queueSyncCauseForError(error.cause),
                                   "its printer gives no status: " + error.reason);
        }
        update_->setStatus(std::move(status), options_.rule);
        outcome_.keptEntries = update_->keptEntries();
        return true;
    }

    bool updateText() {
        try {
            outcome_.after = update_->updatedText(queue_.deviceURI);
        } catch (const std::out_of_range&) {
            return end(queueSyncCause("no-result"),
                       "its PPD has an attribute that ends before its value does");
        }
        if (*outcome_.after == *outcome_.before) {
            outcome_.after = nullptr;
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

    bool isUnchangedMeanwhile() {
        QueueFailure failure;
        const auto [queue, PPD] = scheduler_.queueAndPPDWithName(outcome_.queueName, failure);
        if (!queue) {
            return end("it can no longer be looked up: ", failure);
        }
        const bool isSame = *queue == queue_ && PPD.text && *PPD.text == *outcome_.before;
        if (isSame || PPD.text || PPD.isRaw) {
            return isSame || end(queueSyncCause("changed-meanwhile"),
                                 "it was changed meanwhile; nothing was installed");
        }
        return end("its PPD can no longer be read: ", failure);
    }

    bool install() {
        QueueFailure failure;
        return scheduler_.installPPD(outcome_.queueName, *outcome_.after, failure) ||
               isInstalledAllTheSame() || end("the updated PPD was not installed: ", failure);
    }

    /// The scheduler may have done it although its answer was lost.
    bool isInstalledAllTheSame() const {
        QueueFailure ignored;
        const SchedulerPPD PPD = scheduler_.PPDOfQueue(outcome_.queueName, ignored);
        return PPD.text && *PPD.text == *outcome_.after;
    }

    void readBack() {
        QueueFailure failure;
        const SchedulerPPD PPD = scheduler_.PPDOfQueue(outcome_.queueName, failure);
        if (!PPD.text) {
            end("the installed PPD cannot be read back: ", failure);
        } else if (*PPD.text != *outcome_.after) {
            end(queueSyncCause("changed-meanwhile"), "the installed PPD reads back as another");
        } else {
            end(QueueSyncResult::updated);
        }
    }

    const QueueScheduler& scheduler_;
    const Options& options_;
    PrinterTurns& printers_;
    QueueSyncOutcome outcome_;
    SchedulerQueue queue_;
    std::shared_ptr<const PPDModelFile> before_;
    std::optional<PPDUpdate> update_;
};

QueueSync::QueueSync(const QueueScheduler& scheduler, Options options)
    : scheduler_(scheduler),
      options_(std::move(options)),
      printers_(std::max<std::size_t>(options_.mostPrinters, 1)) {}

QueueSyncOutcome QueueSync::sync(const std::string& queueName) const {
    return Run(*this, queueName).outcome();
}

}  // namespace TkPPDUpdating
