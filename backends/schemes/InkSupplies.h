#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace TkPPDUpdating {

/// The dyes of one supply: one as a rule, several in a cartridge of joined colours.
using InkDyes = std::vector<std::string>;

/// An ink or toner supply as a printer tells of it, over whatever protocol.
struct InkSupply {
    /// What its colour stands for (`dyesOfInkColour`); empty when it has none that can be used.
    InkDyes ofColour;
    /// Gives what its own name stands for; empty when it has none that can be used. Called only
    /// where the name is needed.
    std::function<InkDyes()> ofName;
    /// Whether it is not empty; nothing when that is not known.
    std::optional<bool> isSufficient;
};

/// Whether a supply of that level is not empty (RFC 3805, prtMarkerSuppliesLevel: -1 no
/// restriction, -2 unknown, -3 some is left); nothing when the level is missing or does not tell.
std::optional<bool> isInkSufficient(std::optional<std::int64_t> level);

/// The dyes of each supply, in their order: those of its colour, else those of its name. Supplies
/// of one dye (photo and matte black) have their own names instead, if these differ, and that dye
/// if all are named alike.
///
/// Nothing, and the supply's place in `nameless`, when one has neither, or shares its dye and has
/// no name: the lists of a PPD belong together place by place.
std::optional<std::vector<InkDyes>> dyesOfInkSupplies(const std::vector<InkSupply>& supplies,
                                                      std::size_t& nameless);

/// The dyes of all supplies, joined with commas.
std::string listOfInkDyes(const std::vector<InkDyes>& dyes);

/// 1 or 0 for each of the dyes of the supplies, joined with commas: whether it is sufficient.
/// Nothing when that is not known of all.
std::optional<std::string> listOfInkSufficiency(const std::vector<InkSupply>& supplies,
                                                const std::vector<InkDyes>& dyes);

}  // namespace TkPPDUpdating
