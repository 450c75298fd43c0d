#pragma once

#include <string_view>

namespace TkPPDUpdating {

/// Writes all bytes to an open file, in as many steps as it takes. False when they cannot be
/// written; errno then says why.
bool writeAll(int descriptor, std::string_view bytes);

}  // namespace TkPPDUpdating
