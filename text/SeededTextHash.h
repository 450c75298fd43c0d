#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Hashes texts with a seed of the process, so that nobody can write a PPD whose names all fall
/// into one slot of a table. Values differ from run to run: never store or show them.
class SeededTextHash {
  public:
    using Seeds = std::array<std::uint64_t, 2>;  ///< Any numbers.

    /// Those of this copy of the library. In one process there may be several, a program's and a
    /// module's, and texts with tables of hashes pass between them: each has to have the same
    /// (`backends/modules/TkPPDUpdatingModule.h`).
    static const Seeds& seeds();

    /// Before this copy has hashed anything.
    TKPPDUPDATING_PUBLIC static void setSeeds(const Seeds& seeds);

    /// The hash of `text` in the context of an earlier hash (of a keyword, for its option keyword).
    static std::uint64_t of(std::string_view text, std::uint64_t context = 0);

    /// The hash of two words.
    static std::uint64_t ofWords(std::uint64_t first, std::uint64_t second);

    /// An earlier hash carried on by one more word.
    static std::uint64_t carriedOn(std::uint64_t hash, std::uint64_t word);

    std::size_t operator()(std::string_view text) const { return of(text); }  ///< For tables.
};

}  // namespace TkPPDUpdating
