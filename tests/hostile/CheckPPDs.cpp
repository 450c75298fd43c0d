// Updates PPDs that nobody of this project wrote, with recordings of every kind, and tells what
// does not hold of the results.
//
//   check_ppds RECORDINGS RESULTS FILE...
//
// RECORDINGS is a folder of recordings. For each FILE, the PPD as it is updated and some of the
// results are left in the folder RESULTS for others to look at. A line that begins with FINDING
// for each thing that does not hold, and with REFUSED for each result that the guard rightly keeps
// from being written; the last line counts PPDs and runs.
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/ppdmodel/PPDModelFile.h"
#include "backends/recorded/RecordedDeviceStatus.h"
#include "core_interface/OrbCoreInterface.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "sync/PPDUpdate.h"
#include "sync/UpdateGuard.h"
#include "tests/hostile/EnrichedPPD.h"
#include "tests/hostile/UpdateInvariants.h"
#include "tests/support/CoreWithQueue.h"
#include "tests/support/FileContents.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;

using Status = std::shared_ptr<const OrbCSDeviceStatus>;
using ParsedPPD = std::shared_ptr<const PPDModelFile>;

/// The recordings by their names, sorted; one of a silent printer besides.
std::map<std::string, Status> recordingsIn(const fs::path& folder) {
    std::map<std::string, Status> recordings = {{"silent", nullptr}};
    for (const auto& entry : fs::directory_iterator(folder)) {
        std::string error;
        auto status = RecordedDeviceStatus::statusWithJSON(contentsOfFile(entry.path()), error);
        if (!status) {
            throw std::runtime_error(entry.path().string() + ": " + error);
        }
        recordings.emplace(entry.path().stem(), std::move(status));
    }
    return recordings;
}

/// Whether a constraint of "Duplex" stands in a comment. Where it is removed, the comment goes on
/// with the next line, which the guard refuses.
bool hasConstraintInComment(const std::string& text) {
    static const std::regex kForm("(^|\n)\\*%[^\n]*\\*UIConstraints:[^\n]*\\*Duplex[ \n]");
    return std::regex_search(text, kForm);
}

/// All runs over one PPD.
class CheckedPPD {
  public:
    CheckedPPD(std::string name, std::string text)
        : name_(std::move(name)),
          PPD_(PPDModelFile::fileWithText(makePPDText(text))),
          mayBeRefused_(hasConstraintInComment(text)),
          invariants_(std::move(text)) {}

    /// Updates it with the status; null when it is no PPD or the result is refused.
    PPDText update(const std::string& recording, const Status& status) {
        recording_ = recording;
        if (!PPD_) {
            find("it is no PPD");
            return nullptr;
        }
        const PPDText text = updatedText(PPD_, status);
        const bool passes = look(text);
        if (passes) {
            lookAtSecondRun(text, status);
        }
        lookAtSync(status);
        const auto values = manager_.PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
            status, "file:", PPD_.get());
        ++runs_;
        if (values.has_value() != (status != nullptr)) {
            find("values without a status, or none with one");
        }
        return passes ? text : nullptr;
    }

    /// Writes what stands in an updated PPD into it, as of the PPD of a queue. When that has
    /// attributes without values, the guard may refuse the result.
    void updateFromQueue(const PPDText& queue) {
        OrbCoreInterface::setCore(
            std::make_shared<const CoreWithQueue>(PPDModelFile::fileWithText(queue)));
        ++runs_;
        const PPDText text =
            manager_.updatedPPDContentsForContents_PPDFile_queueName(PPD_->text(), *PPD_, "q");
        if (recording_ == "all" || !refusalOf(text)) {
            recording_ += " on a queue";
            (void)look(text);
        }
        OrbCoreInterface::setCore(std::make_shared<const PPDModelCore>());
    }

    std::size_t runs() const { return runs_; }

  private:
    PPDText updatedText(const ParsedPPD& PPD, const Status& status) {
        ++runs_;
        return manager_.updatedPPDContentsForContents_PPDFile_deviceURI_context(
            PPD->text(), *PPD,
            "file:", OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(status, nullptr));
    }

    std::optional<std::string> refusalOf(const PPDText& text) const {
        return UpdateGuard::reasonNotToWrite(*PPD_->text(), *text,
                                             manager_.applicableUpdatersForPPDFile(PPD_.get()));
    }

    void tell(const char* kind, const std::string& what) const {
        std::cout << kind << " " << name_ << ", " << recording_ << ": " << what << "\n";
    }

    void find(const std::string& what) const { tell("FINDING", what); }

    /// Looks at a result, once. False when the guard refuses it, so that it would not be written.
    bool look(const PPDText& text) {
        if (const auto refusal = refusalOf(text)) {
            tell(mayBeRefused_ ? "REFUSED" : "FINDING", "the guard refuses it: " + *refusal);
            return false;
        }
        if (!seen_.insert(*text).second) {
            return true;
        }
        for (const std::string& finding : invariants_.findingsIn(*text)) {
            find(finding);
        }
        return true;
    }

    void lookAtSecondRun(const PPDText& text, const Status& status) {
        const auto parsed = PPDModelFile::fileWithText(makePPDText(*text));
        if (!parsed) {
            find("the result is no PPD");
        } else if (*updatedText(parsed, status) != *text) {
            find("a second run changes it");
        }
    }

    /// What is written into a file or installed on a queue.
    void lookAtSync(const Status& status) {
        PPDUpdate update(std::make_unique<OrbPPDConcreteUpdatingManager>(), PPD_);
        if (status) {
            update.setStatus(status, PPDUpdate::Rule::whatWasNotToldStays);
        }
        ++runs_;
        (void)look(update.updatedText("file:"));
    }

    std::string name_;
    ParsedPPD PPD_;
    bool mayBeRefused_;
    UpdateInvariants invariants_;
    OrbPPDConcreteUpdatingManager manager_;
    std::string recording_;
    std::set<std::string> seen_;
    std::size_t runs_ = 0;
};

void write(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

/// Checks the PPD; how many runs of an operation that took.
std::size_t check(const fs::path& file, const std::map<std::string, Status>& recordings,
                  const fs::path& results) {
    const std::string text = enrichedPPD(contentsOfFile(file));
    const std::string name = file.stem();
    CheckedPPD checked(name, text);
    write(results / (name + ".before"), text);
    for (const auto& [recording, status] : recordings) {
        const PPDText updated = checked.update(recording, status);
        if (updated) {
            checked.updateFromQueue(updated);
        }
        if (updated && (recording == "all" || recording == "none")) {
            write(results / (name + "." + recording), *updated);
        }
    }
    return checked.runs();
}

}  // namespace
}  // namespace TkPPDUpdating::Testing

int main(int argumentCount, char** arguments) {
    using namespace TkPPDUpdating;
    using namespace TkPPDUpdating::Testing;
    const std::vector<std::string> words(arguments + 1, arguments + argumentCount);
    if (words.size() < 3) {
        std::cerr << "usage: check_ppds RECORDINGS RESULTS FILE...\n";
        return 2;
    }
    OrbCoreInterface::setCore(std::make_shared<const PPDModelCore>());
    OrbCoreInterface::setEnvironment(
        std::make_shared<const FakeEnvironment>(std::map<std::string, std::string>{
            {"ZrCurrentLocaleIdentifier", "en_US"}, {"ZrEPRLastUpdateTime", "252532800"}}));
    const auto recordings = recordingsIn(words[0]);
    std::size_t runs = 0;
    for (std::size_t index = 2; index < words.size(); ++index) {
        runs += check(words[index], recordings, words[1]);
    }
    std::cout << "PPDS " << words.size() - 2 << " RUNS " << runs << "\n";
    return 0;
}
