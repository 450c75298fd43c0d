#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// Reads JSON (RFC 8259, UTF-8) that nobody vouches for. Of members of one name in an object the
/// last counts.
///
/// Nothing, and the reason in `error`, when the text is not JSON, nests deeper than 32 levels, or
/// holds a number beyond the range of a double: one phrase with line and column (in bytes, from 1)
/// of the place where it was noticed. `firstLine` is the number of the text's first line, where it
/// is a part of a file.
std::optional<nlohmann::json> JSONWithText(std::string_view text, std::string& error,
                                           std::size_t firstLine = 1);

}  // namespace TkPPDUpdating
