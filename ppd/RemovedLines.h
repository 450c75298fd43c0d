#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TkPPDUpdating {

/// Which of the lines of a text are gone: a bit each, and a count for every thousand.
class RemovedLines {
  public:
    using Line = std::uint32_t;

    /// Takes up no room while no line is gone.
    explicit RemovedLines(Line lineCount) : lineCount_(lineCount) {}

    bool contains(Line line) const {
        return !words_.empty() && ((words_[line / kWord] >> (line % kWord)) & 1U) != 0;
    }
    /// How many lines from `first` up to `end` were there and are gone now.
    Line add(Line first, Line end);
    /// How many lines before that one are gone.
    Line countBefore(Line line) const;
    /// The first line from `line` on that is not gone (`isGone` false) or is (true); the number of
    /// lines when there is none.
    Line next(Line line, bool isGone) const;
    /// The line before which so many lines stand that are not gone; the number of lines when there
    /// is none.
    Line lineAt(Line index) const;

  private:
    static constexpr Line kWord = 64;
    static constexpr Line kBlock = 1024;

    Line lineCount_;
    std::vector<std::uint64_t> words_;
    /// How many are gone in each block.
    std::vector<std::uint16_t> counts_;
};

}  // namespace TkPPDUpdating
