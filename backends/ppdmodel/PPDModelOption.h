#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "backends/ppdmodel/PPDModelAttributes.h"
#include "backends/ppdmodel/PPDModelGroups.h"
#include "core_interface/OrbPPDGroupedOption.h"
#include "core_interface/OrbPPDOption.h"

namespace TkPPDUpdating {

/// An option: the attributes of its keyword that have an option keyword are its choices.
class PPDModelOption final : public OrbPPDOption, public OrbPPDGroupedOption {
  public:
    /// `opening` is the line that opens the option. Groups and attributes must outlive it.
    PPDModelOption(std::string name, std::optional<std::string_view> defaultChoiceName,
                   PPDTextIndex::Line opening, const PPDModelGroups& groups,
                   const PPDModelAttributes& attributes)
        : name_(std::move(name)),
          defaultChoiceName_(defaultChoiceName),
          opening_(opening),
          groups_(&groups),
          attributes_(&attributes) {}

    std::optional<std::string_view> defaultChoiceName() const override {
        return defaultChoiceName_;
    }

    const OrbPPDChoice* choiceForName(std::string_view choiceName) const override {
        return attributes_->first(name_, choiceName);
    }

    std::string_view groupName() const override { return groups_->nameAt(opening_); }

  private:
    std::string name_;
    std::optional<std::string_view> defaultChoiceName_;
    PPDTextIndex::Line opening_;
    const PPDModelGroups* groups_;
    const PPDModelAttributes* attributes_;
};

}  // namespace TkPPDUpdating
