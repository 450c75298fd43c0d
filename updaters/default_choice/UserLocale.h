#pragma once

#include <string>

#include "core_interface/OrbProcess.h"

namespace TkPPDUpdating {

/// The identifier of the user's locale, such as "en_US": the first of LC_ALL, LC_PAPER and LANG
/// that is not empty (the order of POSIX locale variables, for the paper category), without codeset
/// and modifier. "en_US_POSIX" for the locales "C" and "POSIX" and when there is none.
std::string userLocaleIdentifier(const OrbEnvironment& environment);

}  // namespace TkPPDUpdating
