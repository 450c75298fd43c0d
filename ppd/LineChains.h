#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TkPPDUpdating {

/// A hash table from keys to chains of lines that costs a few bytes a line: open addressing, no
/// node for each key. Chains of different keys may be the same chain; whoever follows one looks at
/// the lines.
class LineChains {
  public:
    using LineID = std::uint32_t;
    static constexpr LineID kNoLine = UINT32_MAX;

    /// The first and the last line of a key; an empty chain has neither.
    struct Chain {
        LineID first = kNoLine;
        LineID last = kNoLine;
    };

    /// An empty table with room for so many keys.
    explicit LineChains(std::size_t expectedKeys);

    /// The chain of the key, or null. Valid until a chain is added.
    Chain* find(std::uint64_t key);

    /// The chain of the key, added empty when there is none. Valid until the next one is added.
    Chain& findOrAdd(std::uint64_t key);

  private:
    struct Slot {
        std::uint32_t key = kNoKey;
        Chain chain;
    };

    static constexpr std::uint32_t kNoKey = 0;

    static std::uint32_t shortened(std::uint64_t key);
    Slot& slotOf(std::uint32_t key);
    void grow();

    std::vector<Slot> slots_;
    std::size_t usedSlots_ = 0;
};

}  // namespace TkPPDUpdating
