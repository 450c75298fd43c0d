#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbProcess.h"

namespace TkPPDUpdating {

/// The languages of the user's messages as PPDs name them, the best first ("de_AT", "de"): from the
/// first of LC_ALL, LC_MESSAGES and LANG that is not empty (POSIX locale variables), without
/// codeset and modifier. English for the locales "C" and "POSIX" and when there is none.
std::vector<std::string> userLanguages(const OrbEnvironment& environment);

/// A translation text as people read it: hexadecimal parts ("<C3A9>", PPD specification 4.3,
/// section 3.5) decoded. Bytes that are then no UTF-8 are taken for ISO Latin 1. It may hold
/// control characters.
std::string decodedPPDText(std::string_view text);

/// The texts of a PPD in the user's language: from the lines of that language ("*de.Translation
/// MediaType/Medientyp", "*de.MediaType Plain/Normalpapier", CUPS PPD extensions, cupsLanguages)
/// where there are any, else the PPD's own, decoded.
class PPDLocalizedTexts {
  public:
    /// `PPD` is not owned and must outlive the object. `languages` as `userLanguages` gives them.
    PPDLocalizedTexts(const PPDModelFile& PPD, std::vector<std::string> languages)
        : PPD_(PPD), languages_(std::move(languages)) {}

    /// The text of an option; its keyword when the PPD has none.
    std::string textOfOption(std::string_view option) const;

    /// The text of an option's choice; its keyword when the PPD has none.
    std::string textOfChoice(std::string_view option, std::string_view choice) const;

    /// The text that a translation line gives a main keyword or group; nothing when none does.
    std::optional<std::string> translationOf(std::string_view keyword) const;

  private:
    std::optional<std::string> textInLanguages(std::string_view keyword, std::string_view spec,
                                               const std::vector<std::string>& languages) const;

    const PPDModelFile& PPD_;
    std::vector<std::string> languages_;
};

}  // namespace TkPPDUpdating
