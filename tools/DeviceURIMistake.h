#pragma once

#include <optional>
#include <string>

#include "tools/Backends.h"

namespace TkPPDUpdating {

/// What is wrong with a device URI that a user gave (`Backends::mistakeInDeviceURI`), and what to
/// write instead: one phrase without the URI. Nothing when it is no mistake. No printer is asked.
std::optional<std::string> phraseForMistakenDeviceURI(const Backends& backends,
                                                      const std::string& deviceURI);

/// The same for a printer that is asked over PostScript.
std::optional<std::string> phraseForMistakenSocketURI(const std::string& deviceURI);

/// Ends the command, with a `Failure` of exit status 1 that says what to write instead, when the
/// device URI that a user gave is a mistake (`Backends::mistakeInDeviceURI`): whoever mistypes a
/// URI has no silent printer. No printer is asked.
void refuseMistakenDeviceURI(const Backends& backends, const std::string& deviceURI);

}  // namespace TkPPDUpdating
