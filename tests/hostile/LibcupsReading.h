#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TkPPDUpdating::Testing {

/// One thing that libcups knows of a PPD.
struct LibcupsFact {
    /// "option", "default", "choice", "attribute", "constraint", "size", "filter" or another name
    /// of a part of its structure.
    std::string kind;
    /// The option or main keyword.
    std::string keyword;
    /// The choice or option keyword.
    std::string optionKeyword;
    std::string text;
    /// The code of a choice, the value of an attribute.
    std::string value;

    auto operator<=>(const LibcupsFact&) const = default;  // NOLINT(modernize-use-nullptr)

    /// For messages.
    std::string shown() const;
};

/// What libcups makes of a PPD, in its order; nothing, and its error with the line in `error`, when
/// it does not open it. Texts are those of the language of the process.
std::optional<std::vector<LibcupsFact>> libcupsReading(std::string_view text, std::string& error);

}  // namespace TkPPDUpdating::Testing
