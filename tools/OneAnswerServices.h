#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "core_interface/TkCommunicationServices.h"

namespace TkPPDUpdating {

/// Asks each device at most once in the life of the tool and keeps the answer, with the reason when
/// there is no status.
///
/// The updating context keeps only a status that it got: without this, each updater of a run would
/// ask a printer that is switched off anew and wait for it to time out. A request with a limit of
/// time of its own (`kTkCSTimeLimitKey`) is passed on each time: that a device did not answer so
/// soon is no answer for those who wait longer. So is one with a PPD's own questions
/// (`kTkCSSNMPQuestionsKey`), which others do not have. Safe for several threads.
class OneAnswerServices : public TkCommunicationServices {
  public:
    /// What a device answered.
    struct Answer {
        std::shared_ptr<const OrbCSDeviceStatus> status;
        /// Why there is no status.
        OrbCSError error;
    };

    explicit OneAnswerServices(std::shared_ptr<const TkCommunicationServices> services);

    std::shared_ptr<const OrbCSDeviceStatus> deviceStatusWithURI_parameters_error(
        std::optional<std::string_view> deviceURI, const OrbDictionary* parameters,
        OrbCSError* error) const override;

    /// The answer of the device if it has been asked, else nothing.
    std::optional<Answer> answerOfDevice(std::string_view deviceURI) const;

  private:
    struct Request {
        std::once_flag once;
        Answer answer;
    };

    std::shared_ptr<const TkCommunicationServices> services_;
    mutable std::mutex mutex_;
    mutable std::map<std::string, std::shared_ptr<Request>, std::less<>> requests_;
};

}  // namespace TkPPDUpdating
