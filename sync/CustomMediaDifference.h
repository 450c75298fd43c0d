#pragma once

#include <cstddef>
#include <vector>

#include "sync/CustomMediaBlock.h"

namespace TkPPDUpdating {

/// How many things came, went, or stayed and became another.
struct DifferenceCounts {
    std::size_t added = 0;
    std::size_t removed = 0;
    std::size_t changed = 0;
};

/// The same of custom media types: those that stay (`sameMediaTypes`) changed when their ID, name,
/// parent or profile did. Their choices do not count.
DifferenceCounts differenceOfMediaTypes(const std::vector<CustomMediaEntry>& before,
                                        const std::vector<CustomMediaEntry>& after);

}  // namespace TkPPDUpdating
