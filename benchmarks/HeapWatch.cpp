#include "benchmarks/HeapWatch.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace TkPPDUpdating::Benchmarks {

namespace {

struct Counts {
    bool isOn = false;
    long long held = 0;
    long long peak = 0;
    std::size_t allocations = 0;
};

Counts counts;

void* taken(std::size_t size) {
    void* const memory = std::malloc(size);
    if (!memory) {
        throw std::bad_alloc();
    }
    if (counts.isOn) {
        counts.held += static_cast<long long>(malloc_usable_size(memory));
        counts.peak = std::max(counts.peak, counts.held);
        ++counts.allocations;
    }
    return memory;
}

void given(void* memory) noexcept {
    if (counts.isOn && memory) {
        counts.held -= static_cast<long long>(malloc_usable_size(memory));
    }
    std::free(memory);
}

}  // namespace

HeapWatch::HeapWatch() {
    counts = {true};
}

HeapWatch::~HeapWatch() {
    counts.isOn = false;
}

std::size_t HeapWatch::peakBytes() const {
    return static_cast<std::size_t>(counts.peak);
}

std::size_t HeapWatch::allocations() const {
    return counts.allocations;
}

}  // namespace TkPPDUpdating::Benchmarks

void* operator new(std::size_t size) {
    return TkPPDUpdating::Benchmarks::taken(size);
}
void operator delete(void* memory) noexcept {
    TkPPDUpdating::Benchmarks::given(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    TkPPDUpdating::Benchmarks::given(memory);
}
