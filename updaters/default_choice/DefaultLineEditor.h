#pragma once

#include <string>
#include <string_view>

#include "ppd/PPDText.h"

namespace TkPPDUpdating {

/// Sets default lines of one PPD text, which it copies at most once, before the first change.
///
/// All searching is literal and case-sensitive and takes the first occurrence.
class DefaultLineEditor {
  public:
    /// A null text stays null: nothing can be set in it.
    explicit DefaultLineEditor(PPDText contents) : contents_(std::move(contents)) {}

    /// Makes the option's first default line read "*DefaultOPTION: CHOICE". False when that is not
    /// possible; no choice can be set from then on, and there is no text as a result.
    bool setDefaultChoice(std::string_view optionName, std::string_view choiceName);

    /// The text: the one given when nothing was changed, null after a failure. Call it once, last.
    PPDText takeContents();

  private:
    std::string_view text() const;
    void replace(std::size_t from, std::size_t to, std::string_view line);
    bool fail();

    PPDText contents_;
    std::string edited_;
    bool isEdited_ = false;
};

}  // namespace TkPPDUpdating
