#pragma once

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// The version of this library, "MAJOR.MINOR.PATCH". It lives as long as the process. While MAJOR
/// is 0, what is compiled for one MAJOR.MINOR works with no other.
TKPPDUPDATING_PUBLIC const char* libraryVersion() noexcept;

}  // namespace TkPPDUpdating
