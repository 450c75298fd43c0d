#pragma once

#include <string_view>

namespace TkPPDUpdating {

/// Whether two PPD texts differ in nothing but the time at which the pages left were estimated
/// (`ZrEPRLastUpdate`). Each update sets it, also when the estimations are the same as before; a
/// PPD that is in use need not be replaced for that.
bool differInTimeOfEstimationsOnly(std::string_view before, std::string_view after);

}  // namespace TkPPDUpdating
