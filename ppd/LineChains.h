#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TkPPDUpdating {

/// A hash table from keys to the first lines of chains that costs a few bytes a line: open
/// addressing, no node for each key, and slots so small that most of those of a PPD stay in the
/// processor's cache. Chains of different keys may be the same chain; whoever follows one looks at
/// the lines.
class LineChains {
  public:
    using LineID = std::uint32_t;
    static constexpr LineID kNoLine = UINT32_MAX;

    /// An empty table with room for so many keys.
    explicit LineChains(std::size_t expectedKeys);

    /// The first line of the key's chain; no line when that is empty or there is none.
    LineID first(std::uint64_t key);

    /// The same to be set; the chain is added empty when there is none. Valid until the next one is
    /// added.
    LineID& findOrAdd(std::uint64_t key);

  private:
    struct Slot {
        std::uint32_t key = kNoKey;
        LineID first = kNoLine;
    };

    static constexpr std::uint32_t kNoKey = 0;

    static std::uint32_t shortened(std::uint64_t key);
    Slot& slotOf(std::uint32_t key);
    void grow();

    std::vector<Slot> slots_;
    std::size_t usedSlots_ = 0;
};

}  // namespace TkPPDUpdating
