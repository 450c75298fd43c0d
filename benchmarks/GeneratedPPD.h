#pragma once

#include <cstddef>
#include <string>

#include "ppd/PPDText.h"

namespace TkPPDUpdating::Benchmarks {

/// A PPD such as the largest ones in the wild: many options with quoted values of several lines,
/// translations in four languages, thousands of constraints, and the vendor attributes that the
/// updaters look for. The same for the same size, on every machine.
PPDText generatedPPD(std::size_t leastBytes);

/// The keyword of the option in the middle of a generated PPD of that size.
std::string keywordOfMiddleOption(std::size_t leastBytes);

/// The size that the measurements are stated for.
inline constexpr std::size_t kLargePPD = 600'000;

}  // namespace TkPPDUpdating::Benchmarks
