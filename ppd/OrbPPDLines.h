#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/LineChains.h"
#include "ppd/PPDText.h"
#include "ppd/PrefixSums.h"
#include "ppd/SeparatorIndex.h"

namespace TkPPDUpdating {

/// The lines of a PPD text, as an editable list with an index of its attributes.
///
/// Lines are views into the shared text until they are edited; inserted lines are kept in storage
/// of the list. Inserting, removing and finding cost far less than a pass over the lines: the list
/// is kept in blocks of bounded size whose places are found in logarithmic time, and once several
/// look-ups have been made, a hash of keyword and option keyword leads to the first line that can
/// match.
class OrbPPDLines {
  public:
    /// Splits the text, which must not be null, at line feeds; one empty last part is dropped.
    explicit OrbPPDLines(PPDText text);

    std::size_t size() const { return size_; }

    /// The line at `index`; valid as long as the list. Raises `std::out_of_range` past the last
    /// line.
    std::string_view at(std::size_t index) const;

    /// Inserts a copy of `line` (which holds no line feed) before the line at `index`, or at the
    /// end when that is the size. Raises `std::out_of_range`, and changes nothing, beyond that.
    void insert(std::size_t index, std::string_view line);

    /// Removes `count` lines from `index` on. Raises `std::out_of_range`, and changes nothing, when
    /// there are not that many.
    void erase(std::size_t index, std::size_t count);

    /// The lines with a line feed between each two of them. The views keep their old text.
    PPDText joined() const;

    /// The index of the first line that
    /// `OrbPPDProcessor::scanLine_forAttributeWithKeyword_spec_value` accepts, or nothing.
    std::optional<std::size_t> indexOfAttribute(std::string_view keyword,
                                                std::optional<std::string_view> spec,
                                                std::optional<std::string_view> value) const;

    /// The index of the first line after the one at `index` that is exactly "*End", or nothing.
    std::optional<std::size_t> indexOfEndAfter(std::size_t index) const;

  private:
    using LineID = LineChains::LineID;
    using Place = PrefixSums::Place;
    using Key = std::uint64_t;
    static constexpr LineID kNoLine = LineChains::kNoLine;

    /// A run of neighbouring lines; `position` is its own index among the blocks.
    struct Block {
        std::size_t position = 0;
        std::vector<LineID> lines;
        /// How many of the lines are "*End".
        std::size_t endLines = 0;
    };

    struct Line {
        std::string_view text;
        Block* block = nullptr;
        /// The neighbours, in line order, with the same key; kept while there is an index. Before
        /// the first one stands the last, so that the index need not keep it.
        LineID previousOfKey = kNoLine;
        LineID nextOfKey = kNoLine;
    };

    static std::optional<Key> keyOfLine(std::string_view line);
    static std::optional<Key> keyOfLookUp(std::string_view keyword,
                                          std::optional<std::string_view> spec);

    std::string_view storedCopy(std::string_view line);
    LineID addLine(std::string_view line, Block& block);
    std::size_t indexOf(LineID line) const;
    bool comesBefore(LineID left, LineID right) const;
    void splitBlock(std::size_t position);
    void renumberBlocksFrom(std::size_t position);
    void sumBlocks();
    void removeEmptyBlocks();

    void buildIndex() const;
    void buildSeparatorIndex() const;
    template <typename Accepts>
    std::optional<std::size_t> firstInIndexes(std::string_view keyword,
                                              std::optional<std::string_view> spec,
                                              const Accepts& accepts) const;
    void linkAfter(LineID& first, LineID previous, LineID line) const;
    void addToIndex(LineID line) const;
    void removeFromIndexes(LineID line) const;

    template <typename Accepts>
    std::optional<std::size_t> first(const Accepts& accepts) const;

    PPDText text_;
    std::deque<std::string> stored_;
    std::size_t size_ = 0;
    std::vector<std::unique_ptr<Block>> blocks_;
    PrefixSums blockSizes_;
    PrefixSums endLineCounts_;
    /// By ID, some of which are free. Mutable for the chains of the index.
    mutable std::deque<Line> lines_;
    std::vector<LineID> freeIDs_;
    mutable std::optional<LineChains> index_;
    mutable unsigned lookUpsWithoutIndex_ = 0;
    mutable std::optional<SeparatorIndex> separatorIndex_;
    /// By the look-ups that the separator index would have told.
    mutable std::size_t linesReadInVain_ = 0;
    mutable std::size_t insertedSinceLookUp_ = 0;
};

}  // namespace TkPPDUpdating
