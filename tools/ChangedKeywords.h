#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TkPPDUpdating {

/// The main keywords of the lines that only one of two PPD texts has, sorted, each once, without
/// the asterisk: what an update changed, in a few words.
std::vector<std::string> changedKeywords(std::string_view before, std::string_view after);

}  // namespace TkPPDUpdating
