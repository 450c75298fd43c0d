#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "core_interface/OrbCSDeviceStatus.h"

namespace TkPPDUpdating {

/// A status in which the value under one key is another.
class StatusWithValue : public OrbCSDeviceStatus {
  public:
    /// `status` is not null. `key` lives as long as the process.
    StatusWithValue(std::shared_ptr<const OrbCSDeviceStatus> status, std::string_view key,
                    OrbCSStatusValue value)
        : status_(std::move(status)), key_(key), value_(std::move(value)) {}

    const OrbCSStatusValue* statusValueForKey_error(std::string_view key,
                                                    std::string* error) const override {
        return key == key_ ? &value_ : status_->statusValueForKey_error(key, error);
    }

  private:
    std::shared_ptr<const OrbCSDeviceStatus> status_;
    std::string_view key_;
    OrbCSStatusValue value_;
};

}  // namespace TkPPDUpdating
