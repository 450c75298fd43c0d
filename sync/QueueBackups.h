#pragma once

#include <memory>
#include <string>
#include <utility>

#include "ppd/PPDText.h"
#include "text/FileDescriptor.h"

namespace TkPPDUpdating {

/// A folder in which the PPDs of queues are kept before they are replaced. QUEUE.ppd is the last
/// one of a queue; QUEUE.TIME.ppd (in UTC) are all of them, where that is wanted.
///
/// What is kept there may be installed again, with the programs that it names: the folder must
/// belong to the user or to root, and nobody else may write into it.
class QueueBackups {
  public:
    /// Opens the folder, and makes it, for its owner alone, when it is not there. What runs that
    /// were killed have left there unfinished goes. Null, with the reason (one phrase without the
    /// path) in `reason`, when it cannot be used.
    static std::unique_ptr<QueueBackups> open(const std::string& path, bool keepsAll,
                                              std::string& reason);

    /// The same for a folder that must be there, to read from.
    static std::unique_ptr<QueueBackups> openExisting(const std::string& path, std::string& reason);

    /// Brings in order what a run that was killed has left of a queue that now has the text: what
    /// was kept before is put back when that run had not yet installed anything, which is when it
    /// has kept what the queue still has.
    void settleInterruptedRun(const std::string& queueName, const std::string& text) const;

    /// A PPD that is kept. At the end of its life everything is as before, unless `keep` was
    /// called.
    class Entry {
      public:
        Entry(const QueueBackups& backups, const std::string& queueName);
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;
        ~Entry();

        /// Writes the text to the disk, beside the one that is kept now. False, with the reason in
        /// `reason`, when there is no room for it.
        bool write(const std::string& text, std::string& reason);
        /// Puts what was written in the place of the one that was kept, which is a matter of
        /// microseconds.
        bool place(std::string& reason);
        /// To be called once the PPD of the queue has, or may have, been replaced.
        void keep();

      private:
        bool writeFile(const std::string& text, std::string& name, FileDescriptor& file,
                       std::string& reason) const;
        bool writeFileWithTime(const std::string& text, std::string& reason);
        std::string nameForTime() const;
        bool setFormerAside();

        const QueueBackups& backups_;
        int folder_;
        std::string queueName_;
        /// That of what is kept, and the one that it has while another one takes its place.
        std::string lastName_;
        std::string formerName_;
        /// Those of what was written; empty for none.
        std::string newName_;
        std::string nameWithTime_;
        /// What was written, so that nobody takes it for abandoned.
        FileDescriptor file_;
        bool hasFormer_ = false;
        bool isPlaced_ = false;
        bool isKept_ = false;
    };

    /// The last PPD of a queue that was kept. Null, with the reason in `reason`, when there is none
    /// or it is not UTF-8.
    PPDText lastOf(const std::string& queueName, std::string& reason) const;

  private:
    explicit QueueBackups(FileDescriptor folder) : folder_(std::move(folder)) {}

    FileDescriptor folder_;
    bool keepsAll_ = false;
};

}  // namespace TkPPDUpdating
