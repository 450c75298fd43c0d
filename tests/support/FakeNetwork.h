#pragma once

#include <any>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "core_interface/TkCSKeys.h"
#include "core_interface/TkCommunicationServices.h"

namespace TkPPDUpdating::Testing {

/// A network in which only some places answer.
class FakeNetwork : public TkCommunicationServices {
  public:
    struct Place {
        std::shared_ptr<const OrbCSDeviceStatus> status;
        OrbCSError error;
        /// Answers only when the whole time is over.
        bool isSlow = false;
    };

    std::shared_ptr<const OrbCSDeviceStatus> deviceStatusWithURI_parameters_error(
        std::optional<std::string_view> deviceURI, const OrbDictionary* parameters,
        OrbCSError* error) const override {
        const auto* limit = parameters ? &parameters->find(kTkCSTimeLimitKey)->second : nullptr;
        const auto time =
            limit ? std::any_cast<std::chrono::milliseconds>(*limit) : std::chrono::milliseconds(0);
        {
            const std::lock_guard lock(mutex_);
            asked.emplace_back(*deviceURI);
            limits.push_back(time);
        }
        const auto place = places.find(*deviceURI);
        if (place == places.end()) {
            *error = {OrbCSError::Cause::noConnection, "nobody listens"};
            return nullptr;
        }
        if (place->second.isSlow) {
            std::this_thread::sleep_for(time);
        }
        *error = place->second.error;
        return place->second.status;
    }

    std::map<std::string, Place, std::less<>> places;
    mutable std::vector<std::string> asked;
    mutable std::vector<std::chrono::milliseconds> limits;

  private:
    mutable std::mutex mutex_;
};

}  // namespace TkPPDUpdating::Testing
