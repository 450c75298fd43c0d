#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "resources/PropertyList.h"

namespace TkPPDUpdating {

/// Reads XML property lists: an element "plist" of version 1.0 around one value (dict, array,
/// string, integer, real, true, false, date, data), as XML 1.0 in UTF-8.
///
/// Strict, and safe with hostile input: what is not well formed or not a property list is refused;
/// a document type is passed over only when it names "plist" and declares nothing itself, so that
/// there are no entities but the five of XML and numeric references, and nothing outside the text
/// is ever looked at; nesting is bounded. Comments are passed over, processing instructions are
/// refused. A key that a dictionary has twice is an error.
///
/// On failure nothing is given, and `*reason`, when `reason` is not null, says why in one phrase:
/// for a text "line N: " (from 1) and the cause, for a file also why it cannot be read.
class PropertyListReader {
  public:
    PropertyListReader() = delete;

    /// The value that stands in the text.
    static std::optional<PropertyList> propertyListWithText(std::string_view text,
                                                            std::string* reason = nullptr);

    /// The value that stands in the regular file at `path`.
    static std::optional<PropertyList> propertyListWithContentsOfFile(
        const std::string& path, std::string* reason = nullptr);
};

}  // namespace TkPPDUpdating
