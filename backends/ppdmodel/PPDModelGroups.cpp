#include "backends/ppdmodel/PPDModelGroups.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace TkPPDUpdating {

std::vector<PPDModelGroups::Entry> PPDModelGroups::entries() const {
    constexpr std::array<std::string_view, 4> kKeywords = {"OpenGroup", "OpenSubGroup",
                                                           "CloseGroup", "CloseSubGroup"};
    std::vector<const PPDModelAttribute*> borders;
    for (const std::string_view keyword : kKeywords) {
        const auto all = attributes_.all(keyword);
        borders.insert(borders.end(), all.begin(), all.end());
    }
    std::sort(borders.begin(), borders.end(),
              [](const auto* left, const auto* right) { return left->line() < right->line(); });
    std::vector<Entry> entries;
    std::vector<std::string_view> open;
    for (const auto* const border : borders) {
        if (border->keyword().starts_with("Open")) {
            const std::string_view value = border->value().value_or("");
            open.push_back(value.substr(0, value.find('/')));
        } else if (!open.empty()) {
            open.pop_back();
        }
        entries.emplace_back(border->line(), open.empty() ? std::string_view() : open.back());
    }
    return entries;
}

std::string_view PPDModelGroups::nameAt(PPDTextIndex::Line line) const {
    const std::lock_guard lock(mutex_);
    if (!entries_) {
        entries_ = entries();
    }
    const auto next = std::upper_bound(
        entries_->begin(), entries_->end(), line,
        [](PPDTextIndex::Line each, const Entry& entry) { return each < entry.first; });
    return next == entries_->begin() ? std::string_view() : std::prev(next)->second;
}

}  // namespace TkPPDUpdating
