#pragma once

#include <cstdint>

namespace TkPPDUpdating {

/// Dots per inch from a whole number of dots per centimetre, which somebody rounded: of the numbers
/// that it may have been made from, the multiple of 50 when there is one, as resolutions nearly
/// always are (236 was 600, not 599), else the nearest (80 is 203). For numbers from 1 to
/// 1,000,000.
constexpr std::int64_t dotsPerInchFromCentimetre(std::int64_t dotsPerCentimetre) {
    // An inch is 2.54 cm; n was made from (n - 1/2) * 2.54 to (n + 1/2) * 2.54.
    constexpr std::int64_t kHalfAnInch = 127;
    constexpr std::int64_t kHundred = 100;
    constexpr std::int64_t kStep = 50;
    const std::int64_t greatest = (2 * dotsPerCentimetre + 1) * kHalfAnInch / kHundred;
    const std::int64_t least =
        ((2 * dotsPerCentimetre - 1) * kHalfAnInch + kHundred - 1) / kHundred;
    const std::int64_t multiple = greatest / kStep * kStep;
    const std::int64_t nearest = (2 * dotsPerCentimetre * kHalfAnInch + kHundred / 2) / kHundred;
    return multiple >= least && multiple > 0 ? multiple : nearest;
}

}  // namespace TkPPDUpdating
