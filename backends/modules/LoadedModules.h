#pragma once

#include <filesystem>
#include <string>

#include "backends/modules/TkPPDUpdatingModule.h"

namespace TkPPDUpdating {

/// Loads "NAME.so", a module of this project, from the folder of modules, which lies at a fixed way
/// from the file that this code runs from, the tool's or a shared library's: neither the
/// environment nor the working directory has a part in it. Null, with the reason (one phrase) in
/// `error`, when it cannot be loaded or is not of this very version. The module lives as long as
/// the process.
const Module* ownModule(const std::string& name, std::string& error);

/// Loads a module that somebody else has built. Null, with the reason (one phrase without the path)
/// in `error`, when it cannot be loaded, is no module or one of another MAJOR.MINOR version, or
/// when others than root and the user could have put code there (`reasonNotToTrust`); of such a
/// file no code is run. The module lives as long as the process; loading it again gives the same
/// one.
const Module* addedModule(const std::string& path, std::string& error);

/// Where modules are that are loaded without being named, "TkPPDUpdating/updaters" beside the
/// folders of this project's own; nothing need be there. Empty when this code's place is not known.
std::filesystem::path folderOfAddedModules();

}  // namespace TkPPDUpdating
