#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "backends/ppdmodel/PPDModelAttributes.h"
#include "core_interface/OrbPPDOption.h"

namespace TkPPDUpdating {

/// An option: the attributes of its keyword that have an option keyword are its choices.
class PPDModelOption final : public OrbPPDOption {
  public:
    /// The attributes must outlive the option.
    PPDModelOption(std::string name, std::optional<std::string_view> defaultChoiceName,
                   const PPDModelAttributes& attributes)
        : name_(std::move(name)), defaultChoiceName_(defaultChoiceName), attributes_(&attributes) {}

    std::optional<std::string_view> defaultChoiceName() const override {
        return defaultChoiceName_;
    }

    const OrbPPDChoice* choiceForName(std::string_view choiceName) const override {
        return attributes_->first(name_, choiceName);
    }

  private:
    std::string name_;
    std::optional<std::string_view> defaultChoiceName_;
    const PPDModelAttributes* attributes_;
};

}  // namespace TkPPDUpdating
