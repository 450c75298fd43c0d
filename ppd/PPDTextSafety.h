#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// What a text that a printer reported is, and so where in a PPD it comes to stand.
enum class PrinterText {
    /// No more than a text of a status: the name of an accessory, a URL, a keyword.
    plain,
    /// A value without quotes: the highest resolution, a value of the pens.
    unquotedValue,
    /// One of several values without quotes, between commas: the name of a page type.
    pageTypeName,
    /// A translation text, which a colon would end: the name of a custom media type.
    mediaTypeName,
    /// A value in "key=value;" pairs: the media ID and the parent's media ID.
    mediaID,
    /// An option keyword that stands behind two full stops: the qualifier of a profile.
    profileQualifier,
    /// The absolute path of a profile, whose file name becomes a translation text.
    profilePath,
    /// A choice of the PPD, which it is compared with: the code name of the pens' configuration; an
    /// installable option and its choice.
    pensCodeName,
};

/// Why a text that a printer reported is refused, or nothing when it may be handed over.
///
/// Values of a status are written into the PPD as they are, so only texts that are harmless where
/// they come to stand may be in it, as the scheduler's library reads that place: libcups ends a
/// translation text at the first colon and takes the rest of the line for the choice's code, takes
/// "<0A>" in it for a line feed, and opens no PPD with an option keyword of more than 40
/// characters. All texts are valid UTF-8 without control characters (U+0000 to U+001F, U+007F to
/// U+009F), line or paragraph separators (U+2028, U+2029) and double quotes; what else is refused
/// depends on the kind:
///
/// | kind | refused besides |
/// |---|---|
/// | `unquotedValue` | `*` `<` `>` |
/// | `pageTypeName` | `*` `<` `>` `,` |
/// | `mediaTypeName` | `:` `<` `>` |
/// | `mediaID` | all but ASCII letters and digits, `.` `_` `-` `+`, a space that is not first or
///   last, and characters above U+009F that are no Unicode white space |
/// | `profileQualifier` | all but 1 to 38 of ASCII letters and digits, `.` `_` `+` `-` |
/// | `profilePath` | `<` `>` `*`, and `:` in the last component without its extension |
/// | `pensCodeName` | all but 1 to 40 of U+0021 to U+007E without `/` and `:` |
///
/// The empty text is no refused text. A refused text is not repaired: it is nothing, and with it
/// goes what cannot do without it: a page type's list, a media type, a profile. The reason is one
/// phrase that names the offending character and its byte offset and says what is left out; it
/// holds none of the text itself.
TKPPDUPDATING_PUBLIC std::optional<std::string> reasonPrinterTextIsRefused(PrinterText kind,
                                                                           std::string_view text);

/// The same for a text of no special kind: whether it can stand in one PPD line at all.
TKPPDUPDATING_PUBLIC std::optional<std::string> reasonTextCannotStandInPPDLine(
    std::string_view text);

}  // namespace TkPPDUpdating
