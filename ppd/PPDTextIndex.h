#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/TextBlock.h"

namespace TkPPDUpdating {

/// What there is to know of a PPD text before it is parsed, found out in one pass: where its lines
/// begin, which keyword each has, where quoted values of several lines stand, where asterisks stand
/// inside lines, and whether all is UTF-8. Immutable; shared by the parsed model and all updaters.
///
/// Lines end with a line feed; one empty last part is no line. The keyword of a line that begins
/// with "*" goes up to the first space, tab, "/" or ":" or to the end of the line.
class PPDTextIndex {
  public:
    using Line = std::uint32_t;
    using Key = std::uint32_t;

    /// Lines in a row that have the same keyword, byte for byte.
    struct Run {
        Line first = 0;
        Line end = 0;
        std::string_view keyword;
    };

    /// Reads the text, which must not be null. Raises `std::length_error` when it takes 4 GB.
    explicit PPDTextIndex(std::shared_ptr<const std::string> text);

    const std::shared_ptr<const std::string>& text() const { return text_; }
    Line size() const { return size_; }
    bool endsWithLineFeed() const { return text_->ends_with('\n'); }

    /// The line without its line feed.
    std::string_view line(Line line) const {
        return {text_->data() + starts_[line], starts_[line + 1] - starts_[line] - 1};
    }
    /// The line with its line feed, which the last one may lack.
    std::string_view lineWithLineFeed(Line line) const {
        return std::string_view(*text_).substr(starts_[line], starts_[line + 1] - starts_[line]);
    }
    /// Where the line begins in the text; for the number of lines, one more than where the last
    /// one ends.
    std::size_t start(Line line) const { return starts_[line]; }
    /// The line that the byte belongs to.
    Line lineAt(std::size_t byte) const;

    /// Calls `visit(Run)`, in line order, until it gives true, for every run whose keyword may be
    /// `keyword`, case ignored, or a language, a full stop and `keyword`. Of a keyword that holds
    /// what ends one, only the beginning counts. Gives whether `visit` did.
    template <typename Visit>
    bool visitRuns(std::string_view keyword, const Visit& visit) const {
        for (std::uint32_t run = firstRun(keyword); run != kNone; run = runs_[run].next) {
            if (visit(runAt(run))) {
                return true;
            }
        }
        return false;
    }

    /// The same for all runs of lines that begin with "*".
    template <typename Visit>
    void visitAllRuns(const Visit& visit) const {
        for (std::uint32_t run = 0; run + 1 < runs_.size(); ++run) {
            if (hasKeyword(runs_[run])) {
                visit(runAt(run));
            }
        }
    }

    /// The lines that are exactly "*End".
    std::span<const Line> endLines() const { return endLines_; }
    /// Where asterisks stand, but for those that begin a line.
    std::span<const std::uint32_t> innerAsterisks() const { return innerAsterisks_; }

    /// The offset of the first byte that is not part of valid UTF-8.
    const std::optional<std::size_t>& firstInvalidUTF8Byte() const { return invalidByte_; }

    /// The offset of the first NUL.
    const std::optional<std::size_t>& firstNULByte() const { return firstNULByte_; }

    /// Of a quoted value that takes several lines: the line whose first colon it follows, and the
    /// one where it closes (the number of lines when it never does).
    struct LongValue {
        Line opens = 0;
        Line closes = 0;
    };
    /// In line order; none begins in another.
    std::span<const LongValue> longValues() const { return longValues_; }
    /// Whether the last value never closes, so that lines behind the text would belong to it.
    bool endsInLongValue() const {
        return !longValues_.empty() && longValues_.back().closes == size_;
    }
    /// The long value that opens on the line, or goes on there; null when there is none.
    const LongValue* longValueAt(Line line) const;

    /// The part of a line or look-up before what ends a keyword.
    static std::string_view keywordPart(std::string_view text) {
        std::size_t length = 0;
        while (length < text.size() && !endsKeyword(text[length])) {
            ++length;
        }
        return text.substr(0, length);
    }

  private:
    static bool endsKeyword(char character) {
        static constexpr auto kEnds = [] {
            std::array<bool, 256> ends{};
            for (const char end : kKeywordEnds) {
                ends[static_cast<unsigned char>(end)] = true;
            }
            return ends;
        }();
        return kEnds[static_cast<unsigned char>(character)];
    }

    static constexpr std::uint32_t kNone = UINT32_MAX;

    struct StoredRun {
        Line first = 0;
        /// The next run of that key.
        std::uint32_t next = kNone;
    };
    /// The key stands here, so that a look-up touches no run but those that it is for.
    struct Slot {
        Key key = 0;
        std::uint32_t firstRun = kNone;
        std::uint32_t lastRun = kNone;
    };
    class Reader;

    static Key keyOfKeyword(std::string_view keyword);
    static Key keyOfName(std::string_view name);
    /// Whether it is one of lines that begin with "*"; not to be asked of the last run.
    bool hasKeyword(const StoredRun& run) const { return (*text_)[starts_[run.first]] == '*'; }
    std::uint32_t firstRun(std::string_view keyword) const;
    Run runAt(std::uint32_t run) const;
    void link(std::uint32_t run, Key key);
    void growTable();
    std::size_t slotOf(Key key) const;

    std::shared_ptr<const std::string> text_;
    Line size_ = 0;
    /// One more than there are lines.
    std::vector<std::uint32_t> starts_;
    /// The last one begins behind the last line.
    std::vector<StoredRun> runs_;
    std::vector<Slot> slots_;
    std::size_t keys_ = 0;
    std::vector<Line> endLines_;
    std::vector<std::uint32_t> innerAsterisks_;
    std::vector<LongValue> longValues_;
    std::optional<std::size_t> invalidByte_;
    std::optional<std::size_t> firstNULByte_;
};

}  // namespace TkPPDUpdating
