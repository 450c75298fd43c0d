#pragma once

#include <cstddef>

namespace TkPPDUpdating::Benchmarks {

/// Counts what the program takes from the heap by `operator new` from its making on: one at a time,
/// for one thread. (Programs that link HeapWatch.cpp have its `operator new`.)
class HeapWatch {
  public:
    HeapWatch();
    HeapWatch(const HeapWatch&) = delete;
    HeapWatch& operator=(const HeapWatch&) = delete;
    ~HeapWatch();

    /// The most bytes that were held at once beyond those held at the beginning.
    std::size_t peakBytes() const;
    std::size_t allocations() const;
};

}  // namespace TkPPDUpdating::Benchmarks
