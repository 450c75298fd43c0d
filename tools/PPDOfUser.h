#pragma once

#include <memory>
#include <string>

#include "backends/ppdmodel/PPDModelFile.h"
#include "ppd/PPDText.h"

namespace TkPPDUpdating {

/// The text of a PPD file that a user named. Never null: raises a `Failure` about the file, with
/// the cause and what can be done, when it cannot be read.
PPDText textOfUsersPPD(const std::string& path);

/// Raises the `Failure` about a PPD file that cannot be read for that reason, with what can be
/// done: a look into the file tells what it is.
[[noreturn]] void throwUnreadablePPD(const std::string& path, const std::string& reason);

/// A text that was read from such a file, parsed. Never null: raises a `Failure` that tells what is
/// wrong with it (another encoding, compressed, broken off, no PPD) and what can be done.
std::shared_ptr<const PPDModelFile> PPDOfUser(const std::string& path, const PPDText& text);

}  // namespace TkPPDUpdating
