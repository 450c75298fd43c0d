#include "ppd/LineChains.h"

#include <algorithm>
#include <utility>

namespace TkPPDUpdating {

namespace {

constexpr std::size_t kFewestSlots = 16;

/// At most so many keys stand in a table of that size: three quarters.
std::size_t roomIn(std::size_t slots) {
    return slots - slots / 4;
}

}  // namespace

LineChains::LineChains(std::size_t expectedKeys)
    : slots_(std::max(kFewestSlots, expectedKeys + expectedKeys / 2)) {}

std::uint32_t LineChains::shortened(std::uint64_t key) {
    // The upper bits of the product depend on all bits of the key (Fibonacci hashing).
    constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15U;
    const auto mixed = static_cast<std::uint32_t>((key * kMultiplier) >> 32U);
    return mixed == kNoKey ? 1 : mixed;
}

LineChains::Slot& LineChains::slotOf(std::uint32_t key) {
    // The keys spread over all their bits, so that their share of the range is a place.
    auto at = static_cast<std::size_t>((std::uint64_t{key} * slots_.size()) >> 32U);
    while (slots_[at].key != key && slots_[at].key != kNoKey) {
        at = at + 1 == slots_.size() ? 0 : at + 1;
    }
    return slots_[at];
}

LineChains::LineID LineChains::first(std::uint64_t key) {
    return slotOf(shortened(key)).first;
}

LineChains::LineID& LineChains::findOrAdd(std::uint64_t key) {
    const std::uint32_t shortKey = shortened(key);
    Slot* slot = &slotOf(shortKey);
    if (slot->key == kNoKey) {
        if (usedSlots_ == roomIn(slots_.size())) {
            grow();
            slot = &slotOf(shortKey);
        }
        slot->key = shortKey;
        ++usedSlots_;
    }
    return slot->first;
}

void LineChains::grow() {
    const auto isInUse = [](const Slot& slot) { return slot.first != kNoLine; };
    const auto inUse =
        static_cast<std::size_t>(std::count_if(slots_.begin(), slots_.end(), isInUse));
    // Chains that have become empty leave their room.
    const std::size_t size = inUse > slots_.size() / 2 ? slots_.size() * 2 : slots_.size();
    const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(size));
    for (const Slot& slot : old) {
        if (isInUse(slot)) {
            slotOf(slot.key) = slot;
        }
    }
    usedSlots_ = inUse;
}

}  // namespace TkPPDUpdating
