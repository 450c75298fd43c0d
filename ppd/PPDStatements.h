#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// One statement of a PPD as the scheduler's library (libcups) reads it: a line with those that
/// continue its quoted value. All texts are views into the PPD.
struct PPDStatement {
    /// All its lines, a closing "*End" included, without the last line end.
    std::string_view lines;
    /// The main keyword without its asterisk; empty for a comment ("*% ...") and for a line that
    /// does not begin with an asterisk.
    std::string_view keyword;
    /// Empty when there is none.
    std::string_view optionKeyword;
    /// The translation text as it is written, up to the first colon; empty when there is none.
    std::string_view text;
    /// What follows the first colon behind keyword, option keyword and text, without blanks around
    /// it; when it ends with a quote, also without that and its first character, which is a quote
    /// as a rule; a quote alone stays. For a choice that is the code. Empty when there is none.
    std::string_view value;
    /// Whether the value stands between double quotes.
    bool isQuoted = false;
    /// The option whose UI is open here, and the innermost group; empty outside.
    std::string_view option;
    std::string_view group;  ///< Of `*OpenGroup`.
    /// Its place among the statements, from 0.
    std::size_t index = 0;

    /// Whether it is "*DefaultOPTION: choice".
    bool isDefault() const {
        return keyword.starts_with("Default") && optionKeyword.empty() && text.empty();
    }
    /// The option of such a statement; empty for any other.
    std::string_view optionOfDefault() const {
        return isDefault() ? keyword.substr(std::string_view("Default").size())
                           : std::string_view();
    }
};

/// Reads a PPD as libcups does, in one pass: LF, CRLF and CR end lines; a value with an open quote
/// goes on over the following ones; the first colon ends a translation text. Blank lines are no
/// statements. Never fails: what libcups would refuse is a statement all the same.
TKPPDUPDATING_PUBLIC std::vector<PPDStatement> PPDStatementsOfText(std::string_view text);

/// A translation text as libcups gives it: hexadecimal parts ("<C3A9>") are the bytes that they
/// stand for (PPD specification 4.3, section 3.5).
TKPPDUPDATING_PUBLIC std::string decodedPPDTranslation(std::string_view text);

}  // namespace TkPPDUpdating
