#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/PPDLineKeys.h"
#include "ppd/PPDText.h"
#include "ppd/PPDTextIndex.h"
#include "ppd/RemovedLines.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// The lines of a PPD text, as an editable list.
///
/// It stands on the index of the text, which it shares, and keeps what was changed: the lines that
/// are gone, and those that were inserted, by the line of the index that they stand before. What
/// is handed on as a new text takes these changes along, so that nobody pays for the lines that
/// stay. When following the changes has cost more than reading the whole text anew would have, it
/// does that, and there are no changes any more.
class TKPPDUPDATING_PUBLIC OrbPPDLines {
  public:
    /// A line of the index beneath, until the next insertion or call of `translations`.
    using LineID = PPDTextIndex::Line;

    /// The lines of the text, which must not be null. One empty last part is dropped.
    explicit OrbPPDLines(const PPDText& text);

    std::size_t size() const { return size_; }  ///< How many lines there are now.

    /// The line at `index`; valid until the next operation. Raises `std::out_of_range` past the
    /// last line.
    std::string_view at(std::size_t index) const;

    /// Inserts a copy of `line` before the line at `index`, or at the end when that is the size.
    /// Raises `std::out_of_range`, and changes nothing, beyond that. (A line feed in it makes lines
    /// of their own in the next text only.)
    void insert(std::size_t index, std::string_view line) {
        insert(index, std::initializer_list<std::string_view>{line});
    }
    /// The same for a line that is made of `parts`, one behind the other.
    void insert(std::size_t index, std::initializer_list<std::string_view> parts);

    /// Removes `count` lines from `index` on. Raises `std::out_of_range`, and changes nothing, when
    /// there are not that many.
    void erase(std::size_t index, std::size_t count);

    /// The text with its changes: the lines with a line feed between each two of them, and one at
    /// the end when `endsWithLineFeed`.
    PPDText text() const;

    /// Whether `text` ends with a line feed.
    bool endsWithLineFeed() const { return endsWithLineFeed_; }
    void setEndsWithLineFeed(bool ends) { endsWithLineFeed_ = ends; }  ///< For `text`.

    /// The index of the first line that
    /// `OrbPPDProcessor::scanLine_forAttributeWithKeyword_spec_value` accepts, or nothing.
    std::optional<std::size_t> indexOfAttribute(std::string_view keyword,
                                                std::optional<std::string_view> spec,
                                                std::optional<std::string_view> value) const;

    /// The index of the first line after the one at `index` that is exactly "*End", or nothing.
    std::optional<std::size_t> indexOfEndAfter(std::size_t index) const;

    /// The index of the first line, from `from` on, that begins with `beginning`, compared exactly;
    /// nothing when there is none. `beginning` begins with "*" and a whole keyword and what ends
    /// it; with a line feed in it, it goes on with the next line.
    std::optional<std::size_t> indexOfLineBeginning(std::string_view beginning,
                                                    std::size_t from) const;

    /// The lines, in line order, whose keyword is a language, a full stop and `keyword`, with that
    /// spec (case ignored). Nothing when that cannot be told, because one of them was inserted into
    /// a list with a line feed in a line.
    std::optional<std::vector<LineID>> translations(std::string_view keyword,
                                                    std::optional<std::string_view> spec);
    /// The language of such a line: what stands before the keyword and its full stop.
    static std::string_view languageOfTranslation(std::string_view line, std::string_view keyword);
    /// The index of a line that is not gone.
    std::size_t indexOf(LineID line) const;

    /// Removes lines that are there, in line order.
    void erase(std::span<const LineID> lines);

    /// The index beneath, with lines that may be gone, and which those are.
    const PPDTextIndex& base() const { return *index_; }
    bool isGone(LineID line) const { return changes_->removed.contains(line); }  ///< Of `base`.

    /// Calls `visit(index, line)` for every line that is not one of the index beneath, from the
    /// last to the first, so that it may be erased.
    template <typename Visit>
    void visitInserted(const Visit& visit) {
        for (std::size_t gap = changes_->gaps.size(); gap-- > 0;) {
            const std::size_t start = changes_->gaps[gap].start;
            for (std::size_t offset = changes_->gaps[gap].lines->size(); offset-- > 0;) {
                visit(start + offset, (*changes_->gaps[gap].lines)[offset]);
            }
        }
    }

  private:
    using Texts = std::vector<std::string_view>;

    /// A text that is told by a list of lines.
    class ChangedText;

    /// Inserted lines. Shared with other lists until it is changed.
    struct Gap {
        /// The line that they stand before.
        LineID before = 0;
        /// The index of the first.
        std::size_t start = 0;
        std::shared_ptr<Texts> lines;
    };

    /// What inserted lines are views into.
    struct Storage {
        std::shared_ptr<char[]> bytes;  // NOLINT(modernize-avoid-c-arrays)
        std::size_t room = 0;
        std::size_t used = 0;
    };

    /// What differs from the index. Shared with other lists until it is changed.
    struct Changes {
        explicit Changes(LineID lineCount) : removed(lineCount) {}

        RemovedLines removed;
        /// In line order, none of them empty.
        std::vector<Gap> gaps;
        /// The last one is filled up while no other list shares it.
        std::vector<Storage> storage;
        /// Whether a line with a full stop in its keyword was inserted.
        bool mayHaveTranslation = false;
    };

    /// Where a line is or goes: in a gap, or between it and the one before it.
    struct Place {
        std::size_t gap = 0;
        bool isInGap = false;
        std::size_t offset = 0;
        /// How many lines of the index that are not gone stand before it, when it is in no gap.
        LineID kept = 0;
    };

    void throwUnlessThere(std::size_t index, std::size_t count) const;
    Place placeOf(std::size_t index, bool isForInsertion) const;
    void moveGapsFrom(std::size_t gap, std::size_t difference);
    Changes& ownChanges();
    static std::string_view storedCopy(Changes& changes,
                                       std::initializer_list<std::string_view> parts);
    static Texts& ownLines(Gap& gap);
    std::size_t insertedCount(std::size_t gapCount) const;
    std::string bytes() const;
    void standOn(const PPDText& text);
    void settle(bool mustBe);
    static PPDText textOfLines(OrbPPDLines lines);
    const PPDLineKeys* keysFor(std::string_view keyword,
                               std::optional<std::string_view> spec) const;
    template <typename Visit>
    void visitKept(std::string_view keyword, std::optional<std::string_view> spec,
                   const Visit& visit) const;
    template <typename Accepts>
    std::optional<std::size_t> first(std::string_view keyword, std::optional<std::string_view> spec,
                                     const Accepts& accepts) const;

    std::shared_ptr<const PPDTextIndex> index_;
    std::shared_ptr<Changes> changes_;
    std::size_t size_ = 0;
    bool endsWithLineFeed_ = false;
    bool hasLineFeedInLine_ = false;

    /// Made when reading the lines of a keyword has cost more.
    mutable std::array<std::shared_ptr<const PPDLineKeys>, 2> keys_;
    /// Lines that were read and were not what was looked for: of the index, and because of the
    /// changes.
    mutable std::size_t readInVain_ = 0;
    mutable std::size_t changesRead_ = 0;
};

}  // namespace TkPPDUpdating
