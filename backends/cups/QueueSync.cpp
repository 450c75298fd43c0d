#include "backends/cups/QueueSync.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "backends/cups/InstallationChecks.h"
#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCSDeviceStatus.h"
#include "ppd/UTF8.h"

namespace TkPPDUpdating {

namespace {

/// A file with a text, gone at the end of the scope: the text operation reads files.
class TextFile {
  public:
    explicit TextFile(const std::string& text) {
        std::error_code error;
        const auto folder = std::filesystem::temp_directory_path(error);
        path_ = ((error ? "/tmp" : folder) / "tkppdupdate-XXXXXX").string();
        const int file = mkstemp(path_.data());
        if (file < 0) {
            path_.clear();
            return;
        }
        std::size_t written = 0;
        while (written < text.size()) {
            const ssize_t count = write(file, text.data() + written, text.size() - written);
            if (count < 0 && errno != EINTR) {
                break;
            }
            written += count < 0 ? 0 : static_cast<std::size_t>(count);
        }
        isWhole_ = close(file) == 0 && written == text.size();
    }
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;
    ~TextFile() {
        if (!path_.empty()) {
            unlink(path_.c_str());
        }
    }

    bool isWhole() const { return isWhole_; }
    const std::string& path() const { return path_; }

  private:
    std::string path_;
    bool isWhole_ = false;
};

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
    bool end(QueueSyncResult result, std::string reason = {}) {
        outcome_.result = result;
        outcome_.reason = std::move(reason);
        return false;
    }

    bool fail(std::string reason) { return end(QueueSyncResult::failed, std::move(reason)); }

    bool goesOn() {
        const bool isCancelled = options_.isCancelled && options_.isCancelled->load();
        return !isCancelled || end(QueueSyncResult::abandoned, "interrupted");
    }

    bool readQueue() {
        std::string reason;
        const auto [queue, PPD] = scheduler_.queueAndPPDWithName(outcome_.queueName, reason);
        if (!queue) {
            return fail(reason);
        }
        queue_ = *queue;
        if (PPD.isRaw) {
            return end(QueueSyncResult::skipped, "it is a raw queue, which has no PPD");
        }
        if (!PPD.text) {
            return fail("its PPD cannot be read: " + reason);
        }
        outcome_.before = PPD.text;
        if (const auto offset = firstInvalidUTF8Byte(*PPD.text)) {
            return fail("its PPD is not valid UTF-8 at byte " + std::to_string(*offset));
        }
        before_ = PPDModelFile::fileWithText(PPD.text, &reason);
        return before_ || fail("its PPD cannot be parsed: " + reason);
    }

    bool askPrinter() {
        const PrinterTurn turn(printers_, options_.isCancelled);
        if (!turn.isTaken()) {
            return goesOn();
        }
        std::string reason;
        const bool isAnswered = OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(
                                    queue_.deviceURI, nullptr, &reason) != nullptr;
        // One that was not waited for is not to blame.
        return isAnswered || (goesOn() && fail("its printer gives no status: " + reason));
    }

    bool updateText() {
        const TextFile file(*outcome_.before);
        if (!file.isWhole()) {
            return fail("there is no room for a temporary file");
        }
        manager_ = options_.makeManager ? options_.makeManager()
                                        : std::make_unique<OrbPPDConcreteUpdatingManager>();
        try {
            outcome_.after =
                manager_->updatedPPDContentsForFile_deviceURI(file.path(), queue_.deviceURI);
        } catch (const std::out_of_range&) {
            return fail("its PPD has an attribute that ends before its value does");
        }
        if (!outcome_.after) {
            return fail("its PPD could not be updated");
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
            return fail("the updated PPD cannot be parsed: " + reason);
        }
        const auto refusal = InstallationChecks::reasonNotToInstall(
            *before_, *after, InstallationChecks::ownedOptions(*manager_, *before_));
        if (refusal) {
            return fail("the updated PPD is refused: " + *refusal);
        }
        return !options_.isDryRun || end(QueueSyncResult::wouldUpdate);
    }

    bool isUnchangedMeanwhile() {
        std::string reason;
        const auto [queue, PPD] = scheduler_.queueAndPPDWithName(outcome_.queueName, reason);
        if (!queue) {
            return fail("it can no longer be looked up: " + reason);
        }
        if (!PPD.text) {
            return fail("its PPD can no longer be read: " + reason);
        }
        const bool isSame = *queue == queue_ && *PPD.text == *outcome_.before;
        return isSame || fail("it was changed meanwhile; nothing was installed");
    }

    bool install() {
        std::string reason;
        return scheduler_.installPPD(outcome_.queueName, *outcome_.after, reason) ||
               isInstalledAllTheSame() || fail("the updated PPD was not installed: " + reason);
    }

    /// The scheduler may have done it although its answer was lost.
    bool isInstalledAllTheSame() const {
        std::string ignored;
        const SchedulerPPD PPD = scheduler_.PPDOfQueue(outcome_.queueName, ignored);
        return PPD.text && *PPD.text == *outcome_.after;
    }

    void readBack() {
        std::string reason;
        const SchedulerPPD PPD = scheduler_.PPDOfQueue(outcome_.queueName, reason);
        if (!PPD.text) {
            fail("the installed PPD cannot be read back: " + reason);
        } else if (*PPD.text != *outcome_.after) {
            fail("the installed PPD reads back as another");
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
    std::unique_ptr<OrbPPDConcreteUpdatingManager> manager_;
};

QueueSync::QueueSync(const QueueScheduler& scheduler, Options options)
    : scheduler_(scheduler),
      options_(std::move(options)),
      printers_(std::max<std::size_t>(options_.mostPrinters, 1)) {}

QueueSyncOutcome QueueSync::sync(const std::string& queueName) const {
    return Run(*this, queueName).outcome();
}

}  // namespace TkPPDUpdating
