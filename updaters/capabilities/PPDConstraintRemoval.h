#pragma once

#include <string>
#include <string_view>

#include "ppd/PPDText.h"

namespace TkPPDUpdating {

/// `text` without the constraints that name an option, in one pass; `text` itself when it holds
/// none. `text` must not be null. `optionKeyword` stands without the asterisk ("Duplex") and holds
/// neither line feed nor colon, as no keyword does.
///
/// 1. From every `*% KEYWORD <-> `, wherever it stands, the text goes up to and with the next line
///    feed. What stood before it on its line then goes on with the next line, in which such a
///    comment is found again. The last line stays when it has no line feed.
/// 2. In what is left, from every `*UIConstraints:` (PPD specification 4.3: UIConstraints),
///    wherever it stands, the text goes up to and with the next line feed, when that stretch names
///    the option as a whole keyword: `*KEYWORD` followed by a space or the line feed. (So
///    `*DuplexUnit` stays, and so does a line that ends in the keyword and a carriage return.) An
///    asterisk right before the stretch may form `*UIConstraints:` with what follows it; more than
///    that one character is not looked at again.
PPDText PPDTextByRemovingConstraints(const PPDText& text, std::string_view optionKeyword);

}  // namespace TkPPDUpdating
