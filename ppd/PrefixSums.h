#pragma once

#include <cstddef>
#include <vector>

namespace TkPPDUpdating {

/// The sizes of the blocks of a row, answering in logarithmic time how much stands before a block
/// and which block a position falls into (a Fenwick tree).
class PrefixSums {
  public:
    struct Place {
        std::size_t block = 0;
        std::size_t offset = 0;
    };

    /// Takes over the sizes of all blocks, of which there is at least one.
    void assign(const std::vector<std::size_t>& sizes);

    /// Adds to the size of a block; the difference may be a negative number, modulo the word.
    void add(std::size_t block, std::size_t difference);

    /// The sum of the sizes of all blocks before that one.
    std::size_t sumBefore(std::size_t block) const;

    /// The block that the position falls into. A position at or past the end falls into the last.
    Place placeOf(std::size_t position) const;

  private:
    std::size_t blockCount() const { return tree_.size() - 1; }

    /// Each element i, from 1, is the sum of as many sizes up to block i as its lowest bit says.
    std::vector<std::size_t> tree_ = {0};
};

}  // namespace TkPPDUpdating
