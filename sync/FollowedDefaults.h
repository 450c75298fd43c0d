#pragma once

#include <string>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "ppd/PPDText.h"

namespace TkPPDUpdating {

/// An updated PPD in which defaults mean what they meant before.
struct FollowedDefaults {
    /// The given text where no default had to follow.
    PPDText text;
    /// What is to be told: one phrase for each default whose media type or profile is gone.
    std::vector<std::string> notes;
};

/// The updater numbers custom media types anew, so that "custom1" may be another type than before,
/// or none, while "*DefaultMediaType: custom1" stays. Where the default of "MediaType" was a custom
/// type of `before`, it becomes the choice that the same type has in `after`; where that of
/// "ZrICCProfileId2" was the profile of one and is no choice any longer, it becomes the profile
/// that the type has now. Where the type or profile is gone, the default becomes the first choice
/// of the driver's own. The value of the default's line is all that is changed.
///
/// `after`, which is not null, is given back as it is when it cannot be parsed.
FollowedDefaults defaultsFollowingMediaTypes(const PPDModelFile& before, PPDText after);

}  // namespace TkPPDUpdating
