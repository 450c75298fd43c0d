#pragma once

#include <optional>
#include <string_view>

namespace TkPPDUpdating {

/// Whether the line is the attribute, by the rule of
/// `OrbPPDProcessor::scanLine_forAttributeWithKeyword_spec_value`, which calls it.
bool isAttributeLine(std::string_view line, std::string_view keyword,
                     std::optional<std::string_view> spec, std::optional<std::string_view> value);

/// The same for what stands behind the "*" of a line, or behind the language of a translation.
bool isAttribute(std::string_view text, std::string_view keyword,
                 std::optional<std::string_view> spec, std::optional<std::string_view> value);

}  // namespace TkPPDUpdating
