#pragma once

#include <optional>
#include <string_view>

#include "core_interface/OrbPPDAttribute.h"
#include "core_interface/OrbPPDChoice.h"

namespace TkPPDUpdating {

/// One main-keyword line of a parsed PPD. As an attribute of an option's keyword it is also the
/// choice that its option keyword names.
///
/// Made of views; `text` and `value` without a character pointer are nothing, in contrast to empty.
class PPDModelAttribute final : public OrbPPDAttribute, public OrbPPDChoice {
  public:
    PPDModelAttribute(std::string_view keyword, std::string_view spec, std::string_view text,
                      std::string_view value)
        : keyword_(keyword), spec_(spec), text_(text), value_(value) {}

    /// The main keyword without the asterisk.
    std::string_view keyword() const { return keyword_; }
    /// The option keyword; empty when there is none.
    std::string_view spec() const { return spec_; }

    std::optional<std::string_view> text() const override { return present(text_); }
    std::optional<std::string_view> value() const override { return present(value_); }

    /// The next attribute, in file order, of the same keyword; null after the last.
    const PPDModelAttribute* nextWithKeyword() const { return nextWithKeyword_; }
    /// The next attribute, in file order, of the same keyword and option keyword.
    const PPDModelAttribute* nextWithSpec() const { return nextWithSpec_; }

  private:
    friend class PPDModelIndex;

    static std::optional<std::string_view> present(std::string_view view) {
        return view.data() ? std::optional(view) : std::nullopt;
    }

    std::string_view keyword_;
    std::string_view spec_;
    std::string_view text_;
    std::string_view value_;
    const PPDModelAttribute* nextWithKeyword_ = nullptr;
    const PPDModelAttribute* nextWithSpec_ = nullptr;
};

}  // namespace TkPPDUpdating
