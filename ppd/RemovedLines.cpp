#include "ppd/RemovedLines.h"

#include <algorithm>
#include <bit>

namespace TkPPDUpdating {

RemovedLines::Line RemovedLines::add(Line first, Line end) {
    if (words_.empty()) {
        words_.resize(lineCount_ / kWord + 1);
        counts_.resize(lineCount_ / kBlock + 1);
    }
    Line added = 0;
    for (Line line = first; line < end;) {
        const Line last = std::min(end, (line / kWord + 1) * kWord);
        const Line length = last - line;
        const std::uint64_t mask =
            (length == kWord ? ~std::uint64_t{0} : (std::uint64_t{1} << length) - 1)
            << (line % kWord);
        std::uint64_t& word = words_[line / kWord];
        const auto fresh = static_cast<Line>(std::popcount(mask & ~word));
        word |= mask;
        counts_[line / kBlock] = static_cast<std::uint16_t>(counts_[line / kBlock] + fresh);
        added += fresh;
        line = last;
    }
    return added;
}

RemovedLines::Line RemovedLines::countBefore(Line line) const {
    Line count = 0;
    if (words_.empty()) {
        return count;
    }
    for (Line block = 0; block < line / kBlock; ++block) {
        count += counts_[block];
    }
    if (counts_[line / kBlock] > 0) {
        for (Line word = line / kBlock * (kBlock / kWord); word < line / kWord; ++word) {
            count += static_cast<Line>(std::popcount(words_[word]));
        }
        const std::uint64_t below = (std::uint64_t{1} << (line % kWord)) - 1;
        count += static_cast<Line>(std::popcount(words_[line / kWord] & below));
    }
    return count;
}

RemovedLines::Line RemovedLines::next(Line line, bool isGone) const {
    if (words_.empty()) {
        return isGone ? lineCount_ : line;
    }
    for (; line < lineCount_; line = (line / kWord + 1) * kWord) {
        const std::uint64_t word = words_[line / kWord];
        const std::uint64_t rest = (isGone ? word : ~word) >> (line % kWord);
        if (rest != 0) {
            return std::min(line + static_cast<Line>(std::countr_zero(rest)), lineCount_);
        }
    }
    return lineCount_;
}

RemovedLines::Line RemovedLines::lineAt(Line index) const {
    if (words_.empty()) {
        return std::min(index, lineCount_);
    }
    Line line = 0;
    for (const Line removed : counts_) {
        const Line there = kBlock - removed;
        if (index < there) {
            break;
        }
        index -= there;
        line += kBlock;
    }
    for (; line < lineCount_; line += kWord) {
        std::uint64_t there = ~words_[line / kWord];
        const auto count = static_cast<Line>(std::popcount(there));
        if (index < count) {
            for (; index > 0; --index) {
                there &= there - 1;
            }
            return std::min(line + static_cast<Line>(std::countr_zero(there)), lineCount_);
        }
        index -= count;
    }
    return lineCount_;
}

}  // namespace TkPPDUpdating
