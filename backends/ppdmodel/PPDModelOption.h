#pragma once

#include <optional>
#include <string_view>

#include "backends/ppdmodel/PPDModelIndex.h"
#include "core_interface/OrbPPDOption.h"

namespace TkPPDUpdating {

/// An option: the attributes of its keyword that have an option keyword are its choices.
class PPDModelOption final : public OrbPPDOption {
  public:
    /// The index must outlive the option.
    PPDModelOption(std::string_view name, std::optional<std::string_view> defaultChoiceName,
                   const PPDModelIndex& index)
        : name_(name), defaultChoiceName_(defaultChoiceName), index_(&index) {}

    std::optional<std::string_view> defaultChoiceName() const override {
        return defaultChoiceName_;
    }

    const OrbPPDChoice* choiceForName(std::string_view choiceName) const override {
        return index_->first(name_, choiceName);
    }

  private:
    std::string_view name_;
    std::optional<std::string_view> defaultChoiceName_;
    const PPDModelIndex* index_;
};

}  // namespace TkPPDUpdating
