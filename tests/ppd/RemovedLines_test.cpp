#include "ppd/RemovedLines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <vector>

namespace TkPPDUpdating::Testing {
namespace {

using Line = RemovedLines::Line;

/// A plain list that says of each line whether it is gone.
class PlainList {
  public:
    explicit PlainList(Line lineCount) : isGone_(lineCount) {}

    Line size() const { return static_cast<Line>(isGone_.size()); }
    bool contains(Line line) const { return isGone_[line]; }
    Line add(Line first, Line end) {
        Line added = 0;
        for (Line line = first; line < end; ++line) {
            added += isGone_[line] ? 0 : 1;
            isGone_[line] = true;
        }
        return added;
    }
    Line countBefore(Line line) const {
        return static_cast<Line>(std::count(isGone_.begin(), isGone_.begin() + line, true));
    }
    Line next(Line line, bool isGone) const {
        while (line < size() && isGone_[line] != isGone) {
            ++line;
        }
        return line;
    }
    Line lineAt(Line index) const {
        for (Line line = 0; line < size(); ++line) {
            if (!isGone_[line] && index-- == 0) {
                return line;
            }
        }
        return size();
    }

  private:
    std::vector<bool> isGone_;
};

void expectTheSame(const RemovedLines& lines, const PlainList& expected) {
    // Not each line of a long list.
    for (Line line = 0; line<expected.size(); line += expected.size()> 100 ? 13 : 1) {
        ASSERT_EQ(lines.contains(line), expected.contains(line)) << line;
        ASSERT_EQ(lines.countBefore(line), expected.countBefore(line)) << line;
        ASSERT_EQ(lines.next(line, false), expected.next(line, false)) << line;
        ASSERT_EQ(lines.next(line, true), expected.next(line, true)) << line;
        ASSERT_EQ(lines.lineAt(line), expected.lineAt(line)) << line;
    }
    ASSERT_EQ(lines.lineAt(expected.size()), expected.size());
}

// Sizes around those of a word and of a counted block.
TEST(RemovedLines, TellsWhatAPlainListTells) {
    std::mt19937 random(7);
    for (const Line count : {1U, 63U, 64U, 65U, 300U, 1023U, 1024U, 1025U, 2500U}) {
        RemovedLines lines(count);
        PlainList expected(count);
        expectTheSame(lines, expected);
        for (int step = 0; step < 4; ++step) {
            const auto first = static_cast<Line>(random() % count);
            const auto length = static_cast<Line>(random() % (count / 3 + 2));
            const Line end = std::min(count, first + length);
            ASSERT_EQ(lines.add(first, end), expected.add(first, end));
            expectTheSame(lines, expected);
        }
        ASSERT_EQ(lines.add(0, count), expected.add(0, count));
        expectTheSame(lines, expected);
    }
}

TEST(RemovedLines, TakesTensOfMillionsOfLines) {
    constexpr Line kCount = (1U << 26U) + 1;
    RemovedLines lines(kCount);
    EXPECT_EQ(lines.add(kCount - 1, kCount), 1U);
    EXPECT_TRUE(lines.contains(kCount - 1));
    EXPECT_EQ(lines.countBefore(kCount - 1), 0U);
    EXPECT_EQ(lines.next(0, true), kCount - 1);
    EXPECT_EQ(lines.lineAt(kCount - 2), kCount - 2);
}

TEST(RemovedLines, ACopyIsOnItsOwn) {
    RemovedLines lines(100);
    lines.add(10, 20);
    RemovedLines copy(lines);
    copy.add(20, 30);
    EXPECT_FALSE(lines.contains(25));
    EXPECT_EQ(lines.countBefore(99), 10U);
    EXPECT_EQ(copy.countBefore(99), 20U);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
