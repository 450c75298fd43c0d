#include "ppd/PrefixSums.h"

#include <bit>

namespace TkPPDUpdating {

namespace {

std::size_t lowestBit(std::size_t number) {
    return number & (~number + 1);
}

}  // namespace

void PrefixSums::assign(const std::vector<std::size_t>& sizes) {
    tree_.assign(sizes.size() + 1, 0);
    for (std::size_t i = 1; i < tree_.size(); ++i) {
        tree_[i] += sizes[i - 1];
        const std::size_t next = i + lowestBit(i);
        if (next < tree_.size()) {
            tree_[next] += tree_[i];
        }
    }
}

void PrefixSums::add(std::size_t block, std::size_t difference) {
    for (std::size_t i = block + 1; i < tree_.size(); i += lowestBit(i)) {
        tree_[i] += difference;
    }
}

std::size_t PrefixSums::sumBefore(std::size_t block) const {
    std::size_t sum = 0;
    for (std::size_t i = block; i > 0; i -= lowestBit(i)) {
        sum += tree_[i];
    }
    return sum;
}

PrefixSums::Place PrefixSums::placeOf(std::size_t position) const {
    Place place{0, position};
    for (std::size_t step = std::bit_floor(blockCount()); step > 0; step /= 2) {
        const std::size_t next = place.block + step;
        // The last block also takes what lies past it.
        if (next < blockCount() && tree_[next] <= place.offset) {
            place.offset -= tree_[next];
            place.block = next;
        }
    }
    return place;
}

}  // namespace TkPPDUpdating
