#include "text/SeededTextHash.h"

#include <unistd.h>

#include <cstring>

namespace TkPPDUpdating {

namespace {

using Seeds = SeededTextHash::Seeds;

Seeds randomSeeds() {
    // Arbitrary odd numbers of mixed bits; they stay when the system has no entropy to give.
    Seeds seeds{0x9E6D62D06F7A9B1DU, 0xC2A8D1F0735B4E67U};
    Seeds entropy{};
    if (::getentropy(entropy.data(), sizeof entropy) == 0) {
        seeds[0] ^= entropy[0];
        seeds[1] ^= entropy[1];
    }
    return seeds;
}

Seeds& seedsOfThisCopy() {
    static Seeds seeds = randomSeeds();
    return seeds;
}

/// Both halves of the 128-bit product: every bit of the input reaches every part of the result.
std::uint64_t mixed(std::uint64_t left, std::uint64_t right) {
    __extension__ typedef unsigned __int128 Product;  // NOLINT(modernize-use-using)
    const Product product = static_cast<Product>(left) * right;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
}

}  // namespace

const SeededTextHash::Seeds& SeededTextHash::seeds() {
    return seedsOfThisCopy();
}

void SeededTextHash::setSeeds(const Seeds& seeds) {
    // Only once: other threads may read them when a module is asked for again.
    if (seedsOfThisCopy() != seeds) {
        seedsOfThisCopy() = seeds;
    }
}

std::uint64_t SeededTextHash::of(std::string_view text, std::uint64_t context) {
    const Seeds& seeds = seedsOfThisCopy();
    std::uint64_t hash = mixed(context ^ seeds[0], seeds[1] ^ text.size());
    while (!text.empty()) {
        std::uint64_t word = 0;
        const std::size_t length = text.size() < sizeof word ? text.size() : sizeof word;
        std::memcpy(&word, text.data(), length);
        hash = mixed(hash ^ word, seeds[1]);
        text.remove_prefix(length);
    }
    return hash;
}

std::uint64_t SeededTextHash::ofWords(std::uint64_t first, std::uint64_t second) {
    const Seeds& seeds = seedsOfThisCopy();
    return mixed(first ^ seeds[0], second ^ seeds[1]);
}

std::uint64_t SeededTextHash::carriedOn(std::uint64_t hash, std::uint64_t word) {
    const Seeds& seeds = seedsOfThisCopy();
    return mixed(hash ^ word ^ seeds[0], seeds[1]);
}

}  // namespace TkPPDUpdating
