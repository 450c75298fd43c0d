#pragma once

#include <string>
#include <string_view>

namespace TkPPDUpdating::Testing {

/// A PPD of another maker with what the samples have and it has not, so that most updaters apply:
/// the attributes, options and closing lines that they look for. Line ends are those of the PPD.
std::string enrichedPPD(std::string_view text);

}  // namespace TkPPDUpdating::Testing
