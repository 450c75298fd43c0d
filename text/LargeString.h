#pragma once

#include <cstddef>
#include <string>

namespace TkPPDUpdating {

/// An empty string with room for so many bytes. A page of memory costs more when it is written to
/// first than the writing does, so where the room is large, Linux is asked to take pages of 2 MB
/// for it (madvise(2), MADV_HUGEPAGE), which it does by itself where transparent huge pages are
/// "always" on, and never where they are not to be used. Raises what `std::string::reserve` raises.
std::string stringWithRoom(std::size_t bytes);

}  // namespace TkPPDUpdating
