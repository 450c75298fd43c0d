#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core_interface/TkCore.h"
#include "ppd/PPDText.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

class PPDModelFile;

/// The core library of this project: parses PPDs with `PPDModelFile` and finds the PPDs of queues.
class TKPPDUPDATING_PUBLIC PPDModelCore : public TkCore {
  public:
    /// Gives the PPD text of a queue whose name has been checked: the scheduler's answer where a
    /// backend for it is built in. A null text when the answer is that the queue has none, nothing
    /// when there is no answer; both with the reason.
    using QueuePPDSource =
        std::function<std::optional<PPDText>(const std::string& queueName, std::string& reason)>;

    /// Looks for the PPDs of queues in the server root: `ppd/NAME.ppd` under the directory in the
    /// environment variable `CUPS_SERVERROOT`, /etc/cups when that is not set. `source`, when
    /// given, is asked first, and the server root counts only when it does not answer: a queue of
    /// that name there may be another machine's, or one that is gone.
    explicit PPDModelCore(QueuePPDSource source = nullptr);

    std::shared_ptr<const OrbPPDFile> PPDFileWithContentsOfFile(
        const std::string& path) const override;
    std::shared_ptr<const OrbPPDFile> PPDFileWithContents(const PPDText& contents,
                                                          const std::string& path) const override;
    std::shared_ptr<const OrbPPDFile> PPDFileForQueueWithName(
        const std::string& queueName) const override;
    std::shared_ptr<const OrbCustomMediaType> customMediaTypeWithPPDParameters(
        const OrbDictionary& parameters) const override;
    std::shared_ptr<const OrbICCProfile> profileWithPPDParameters(
        const OrbDictionary& parameters) const override;
    std::shared_ptr<const OrbCUPSICCProfileSpecifier> specifierVer2WithProfileID(
        std::uint64_t profileID) const override;

    /// As `PPDFileForQueueWithName`; the reason for null goes to `reason`: one phrase that names
    /// the file or the scheduler's answer.
    std::shared_ptr<const PPDModelFile> queuePPDFile(const std::string& queueName,
                                                     std::string& reason) const;

  private:
    QueuePPDSource source_;
};

}  // namespace TkPPDUpdating
