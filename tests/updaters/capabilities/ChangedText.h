#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "ppd/OrbPPDLines.h"
#include "ppd/PPDText.h"

namespace TkPPDUpdating::Testing {

/// A text that stands on another one, as an updater hands it on: some lines are gone, some were
/// inserted, and its end may be another. `number(most)` says how many and where, `line()` what is
/// inserted.
template <typename Number, typename Line>
PPDText changedText(std::string text, const Number& number, const Line& line) {
    OrbPPDLines lines(makePPDText(std::move(text)));
    for (std::size_t gone = number(3); gone > 0 && lines.size() > 0; --gone) {
        lines.erase(number(lines.size() - 1), 1);
    }
    for (std::size_t inserted = number(3); inserted > 0; --inserted) {
        lines.insert(number(lines.size()), line());
    }
    if (number(3) == 0) {
        lines.setEndsWithLineFeed(!lines.endsWithLineFeed());
    }
    return lines.text();
}

}  // namespace TkPPDUpdating::Testing
