#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core_interface/OrbPPDAttribute.h"
#include "core_interface/OrbPPDChoice.h"
#include "ppd/PPDTextIndex.h"

namespace TkPPDUpdating {

/// One main-keyword line of a parsed PPD. As an attribute of an option's keyword it is also the
/// choice that its option keyword names.
///
/// Made of views, but for a value of several lines; `text` and `value` without a character pointer
/// are nothing, in contrast to empty.
class PPDModelAttribute final : public OrbPPDAttribute, public OrbPPDChoice {
  public:
    PPDModelAttribute(PPDTextIndex::Line line, std::string_view keyword, std::string_view spec,
                      std::string_view text, std::string_view value,
                      std::optional<std::string> joinedValue)
        : line_(line),
          keyword_(keyword),
          spec_(spec),
          text_(text),
          value_(value),
          joinedValue_(std::move(joinedValue)) {}

    PPDTextIndex::Line line() const { return line_; }
    /// The main keyword without the asterisk.
    std::string_view keyword() const { return keyword_; }
    /// The option keyword; empty when there is none.
    std::string_view spec() const { return spec_; }

    std::optional<std::string_view> text() const override { return present(text_); }
    std::optional<std::string_view> value() const override {
        return joinedValue_ ? std::optional<std::string_view>(*joinedValue_) : present(value_);
    }

  private:
    static std::optional<std::string_view> present(std::string_view view) {
        return view.data() ? std::optional(view) : std::nullopt;
    }

    PPDTextIndex::Line line_;
    std::string_view keyword_;
    std::string_view spec_;
    std::string_view text_;
    std::string_view value_;
    std::optional<std::string> joinedValue_;
};

}  // namespace TkPPDUpdating
