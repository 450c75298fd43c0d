#pragma once

#include <string>
#include <vector>

namespace TkPPDUpdating {

/// A member of a recording that was ignored because an object in its place has none of that name.
struct RecordedIgnoredMember {
    /// As in an error: "CustomMediaTypes[2].nmae".
    std::string place;
    std::string name;  ///< Its name alone.
    /// The members that the object may have.
    std::vector<std::string> known;
};

}  // namespace TkPPDUpdating
