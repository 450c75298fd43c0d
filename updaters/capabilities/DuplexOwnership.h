#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>

#include "ppd/PPDStatements.h"

namespace TkPPDUpdating {

/// Whether a statement of the text before is one that goes with the duplex unit: of the two-sided
/// printing group, which goes as a whole, or a constraint of "Duplex" or the comment above it.
/// `after` is the text that it may have gone from. The span before outlives the function.
std::function<bool(const PPDStatement&)> statementsOfDuplex(std::span<const PPDStatement> before,
                                                            std::span<const PPDStatement> after);

/// Whether each line of a statement matches the POSIX extended expression; always false when there
/// is none or it does not compile.
std::function<bool(const PPDStatement&)> statementsThatMatch(
    const std::optional<std::string>& expression);

/// Whether a statement is one of a block of PPD text, in the same option and group: libcups takes a
/// choice that stands elsewhere for an attribute. `block` is asked for when the first statement
/// is.
std::function<bool(const PPDStatement&)> statementsOfBlock(
    std::function<std::optional<std::string>()> block);

/// The value of the attribute "cupsVersion", as a look-up in the text gives it.
std::optional<std::string> CUPSVersionOfStatements(std::span<const PPDStatement> statements);

}  // namespace TkPPDUpdating
