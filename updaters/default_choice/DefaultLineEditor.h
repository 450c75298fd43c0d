#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ppd/OrbPPDLines.h"
#include "ppd/PPDText.h"

namespace TkPPDUpdating {

/// Sets default lines of one PPD text. Only the lines in question are looked at.
///
/// All searching is literal and case-sensitive and takes the first occurrence.
class DefaultLineEditor {
  public:
    /// A null text stays null: nothing can be set in it.
    explicit DefaultLineEditor(PPDText contents);

    /// Makes the option's first default line read "*DefaultOPTION: CHOICE". False when that is not
    /// possible; no choice can be set from then on, and there is no text as a result.
    bool setDefaultChoice(std::string_view optionName, std::string_view choiceName);

    /// The same, but when it is not possible, the text stays as it is and others can be set.
    bool setDefaultChoiceIfPossible(std::string_view optionName, std::string_view choiceName);

    /// The text: the one given when nothing was changed, null after a failure. Call it once, last.
    PPDText takeContents();

  private:
    bool fail();

    PPDText contents_;
    std::optional<OrbPPDLines> lines_;
    /// What is looked for or inserted; kept because it has the room.
    std::string text_;
    bool isEdited_ = false;
};

}  // namespace TkPPDUpdating
