#include "sync/EstimationsTime.h"

#include <algorithm>

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kTimeLine = "*ZrEPRLastUpdate:";

/// Takes the first line, without its line feed, off the text.
std::string_view takeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    return line;
}

}  // namespace

bool differInTimeOfEstimationsOnly(std::string_view before, std::string_view after) {
    if (before.ends_with('\n') != after.ends_with('\n')) {
        return false;
    }
    bool differ = false;
    while (!before.empty() && !after.empty()) {
        const std::string_view was = takeLine(before);
        const std::string_view is = takeLine(after);
        if (was != is) {
            if (!was.starts_with(kTimeLine) || !is.starts_with(kTimeLine)) {
                return false;
            }
            differ = true;
        }
    }
    return differ && before.empty() && after.empty();
}

}  // namespace TkPPDUpdating
