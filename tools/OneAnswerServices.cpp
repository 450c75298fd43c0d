#include "tools/OneAnswerServices.h"

#include <utility>

#include "core_interface/OrbCSOptionQuestions.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

OneAnswerServices::OneAnswerServices(std::shared_ptr<const TkCommunicationServices> services)
    : services_(std::move(services)) {}

std::shared_ptr<const OrbCSDeviceStatus> OneAnswerServices::deviceStatusWithURI_parameters_error(
    std::optional<std::string_view> deviceURI, const OrbDictionary* parameters,
    OrbCSError* error) const {
    const bool isOfItsOwn = parameters && (parameters->contains(kTkCSTimeLimitKey) ||
                                           parameters->contains(kTkCSSNMPQuestionsKey));
    if (!deviceURI || isOfItsOwn) {
        return services_->deviceStatusWithURI_parameters_error(deviceURI, parameters, error);
    }
    std::shared_ptr<Request> request;
    {
        const std::lock_guard lock(mutex_);
        auto& slot = requests_[std::string(*deviceURI)];
        if (!slot) {
            slot = std::make_shared<Request>();
        }
        request = slot;
    }
    // Outside the lock: one slow printer must not hold up the others.
    std::call_once(request->once, [&] {
        Answer& answer = request->answer;
        answer.status =
            services_->deviceStatusWithURI_parameters_error(deviceURI, parameters, &answer.error);
    });
    if (error && !request->answer.status) {
        *error = request->answer.error;
    }
    return request->answer.status;
}

std::optional<OneAnswerServices::Answer> OneAnswerServices::answerOfDevice(
    std::string_view deviceURI) const {
    const std::lock_guard lock(mutex_);
    const auto request = requests_.find(deviceURI);
    return request == requests_.end() ? std::nullopt : std::optional(request->second->answer);
}

}  // namespace TkPPDUpdating
