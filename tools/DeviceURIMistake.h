#pragma once

#include <string>

#include "tools/Backends.h"

namespace TkPPDUpdating {

/// Ends the command, with a `Failure` of exit status 1 that says what to write instead, when the
/// device URI that a user gave is a mistake (`Backends::mistakeInDeviceURI`): whoever mistypes a
/// URI has no silent printer. No printer is asked.
void refuseMistakenDeviceURI(const Backends& backends, const std::string& deviceURI);

}  // namespace TkPPDUpdating
