#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCSStatusValue.h"

namespace TkPPDUpdating {

/// What makes a custom media type the same one from one run to the next: its media ID, and where
/// that finds none, its name as a PPD has it.
struct MediaTypeIdentity {
    /// Empty without one.
    std::string mediaID;
    std::string name;
};

/// A custom media type as an earlier run wrote it into a PPD.
struct CustomMediaEntry {
    /// The choice of "MediaType", such as "custom1".
    std::string choice;
    MediaTypeIdentity identity;
    std::string parentMediaID;
    /// The choice of "ZrICCProfileId2" of its profile; empty without one.
    std::string profileQualifier;
    /// The path of its profile; empty without one.
    std::string profilePath;

    /// The number of the choice when that is "custom" and a number from 1, else 0.
    std::size_t number() const;
};

/// The custom media types of a PPD, in the order of the (last) line "*ZrMediaTypeCategory custom",
/// each choice once. Unlike `OrbPPDCustomMediaUpdater::customMediaTypeWithCodeName_PPDfile`, it
/// also gives those without a parent's media ID, which a network printer does not tell.
std::vector<CustomMediaEntry> customMediaBlock(const PPDModelFile& PPD);

/// For each type of `earlier` the index of the same one in `later`, by media ID, then by name; each
/// of these at most once.
std::vector<std::optional<std::size_t>> sameMediaTypes(std::span<const MediaTypeIdentity> earlier,
                                                       std::span<const MediaTypeIdentity> later);

/// The types of `reported` in the order in which the updater, which numbers them from 1, gives
/// those that are in the block the choices that they have there, as far as the count goes; the
/// others fill the gaps in their order. Null entries are left out.
OrbCustomMediaTypes inEarlierPlaces(const std::vector<CustomMediaEntry>& block,
                                    OrbCustomMediaTypes reported);

/// `reported`, and behind them the types of the block that are not among them, for an answer that
/// tells some of the printer's types. Nothing when one of those cannot be written again.
std::optional<OrbCustomMediaTypes> completedMediaTypes(const std::vector<CustomMediaEntry>& block,
                                                       OrbCustomMediaTypes reported);

}  // namespace TkPPDUpdating
