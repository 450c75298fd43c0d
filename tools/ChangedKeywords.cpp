#include "tools/ChangedKeywords.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <set>

namespace TkPPDUpdating {

namespace {

std::vector<std::string_view> sortedLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(text.size(), end + 1));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

}  // namespace

std::vector<std::string> changedKeywords(std::string_view before, std::string_view after) {
    const auto linesBefore = sortedLines(before);
    const auto linesAfter = sortedLines(after);
    std::vector<std::string_view> changed;
    std::set_symmetric_difference(linesBefore.begin(), linesBefore.end(), linesAfter.begin(),
                                  linesAfter.end(), std::back_inserter(changed));
    std::set<std::string> keywords;
    for (const std::string_view line : changed) {
        const std::size_t end = std::min(line.find_first_of(" \t:/\r"), line.size());
        if (line.starts_with('*') && !line.starts_with("*%") && end > 1) {
            keywords.emplace(line.substr(1, end - 1));
        }
    }
    return {keywords.begin(), keywords.end()};
}

}  // namespace TkPPDUpdating
