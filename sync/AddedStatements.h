#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "ppd/PPDStatements.h"
#include "sync/OwnedLines.h"

namespace TkPPDUpdating {

/// The bytes of a line, without its end (PPD specification 4.3, section 3.6).
inline constexpr std::size_t kLongestPPDLine = 255;

/// Why a statement that an updater owns may not come into a PPD all the same: it names a program,
/// or the scheduler's library would not read it as the one statement that it is meant to be.
/// Nothing when it may.
std::optional<std::string> reasonNotToAdd(const PPDStatement& statement, const OwnedLines& owned);

/// The statement for a reason: its keyword and option keyword, as far as they can be shown.
std::string nameOfStatement(const PPDStatement& statement);

}  // namespace TkPPDUpdating
