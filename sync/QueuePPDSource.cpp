#include "sync/QueuePPDSource.h"

#include <optional>
#include <string>
#include <utility>

namespace TkPPDUpdating {

PPDModelCore::QueuePPDSource queuePPDSource(std::shared_ptr<const QueueScheduler> scheduler) {
    return [scheduler = std::move(scheduler)](const std::string& queueName,
                                              std::string& reason) -> std::optional<PPDText> {
        QueueFailure failure;
        SchedulerPPD PPD;
        const bool isWhole = scheduler->talkAbout(
            queueName, [&](QueueTalk& queue) { PPD = queue.PPD(failure); },
            QueueScheduler::Patience::untilCancelled, failure);
        reason = failure.reason;
        return isWhole && (PPD.text || PPD.isRaw) ? std::optional(std::move(PPD.text))
                                                  : std::nullopt;
    };
}

}  // namespace TkPPDUpdating
